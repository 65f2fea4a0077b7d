#ifndef EMBEDDEDHOST_JSONFILE_H
#define EMBEDDEDHOST_JSONFILE_H

#include <QByteArray>
#include <QString>

#include <nlohmann/json.hpp>

namespace embeddedhost {

/// A JSON file as it was read, or why it could not be.
struct JsonFile
{
    nlohmann::ordered_json content;
    /// Where the text is not JSON, "line 3, column 7"; empty when that is not known.
    QString faultPlace;
    /// A sentence; empty when the file was read.
    QString fault;
    /// Of the text that was read.
    QByteArray digest = QByteArray();
};

JsonFile ReadJsonFile(QString const& path);

} // namespace embeddedhost

#endif
