#ifndef EMBEDDEDHOST_JSONFILE_H
#define EMBEDDEDHOST_JSONFILE_H

#include <QString>

#include <nlohmann/json.hpp>

namespace embeddedhost {

/// A JSON file as it was read, or why it could not be.
struct JsonFile
{
    nlohmann::ordered_json content;
    /// Empty when the file was read. Begins with line and column where the text is not JSON.
    QString error;
};

JsonFile ReadJsonFile(QString const& path);

} // namespace embeddedhost

#endif
