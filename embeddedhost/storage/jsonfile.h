#ifndef EMBEDDEDHOST_JSONFILE_H
#define EMBEDDEDHOST_JSONFILE_H

#include "storage/jsonparser.h"
#include "storage/systemfiles.h"

#include <QByteArray>
#include <QString>

namespace embeddedhost {

/// A JSON file as it was read, or why it could not be.
struct JsonFile : ParsedJson
{
    /// The digest of the text.
    QByteArray digest = QByteArray();
    /// Where the file lies when all links are resolved.
    QString realPath = QString();
};

/// Why the file has no text to read, a sentence; empty when it has.
QString DescribeFault(FileContent const& file);

/// Reads a regular file that really lies in the folder, which is canonical.
JsonFile ReadJsonFile(QString const& path, QString const& folder);

} // namespace embeddedhost

#endif
