#ifndef EMBEDDEDHOST_JSONFILE_H
#define EMBEDDEDHOST_JSONFILE_H

#include "storage/jsonparser.h"

#include <QByteArray>
#include <QString>

namespace embeddedhost {

/// A JSON file as it was read, or why it could not be.
struct JsonFile : ParsedJson
{
    /// Of the text that was read.
    QByteArray digest = QByteArray();
    /// Where the file lies when all links are resolved.
    QString realPath = QString();
};

/// Reads a regular file that really lies in the folder, which is canonical.
JsonFile ReadJsonFile(QString const& path, QString const& folder);

} // namespace embeddedhost

#endif
