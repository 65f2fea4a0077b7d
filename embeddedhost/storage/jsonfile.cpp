#include "storage/jsonfile.h"

#include "storage/filedigest.h"
#include "storage/systemfiles.h"

namespace embeddedhost {

JsonFile ReadJsonFile(QString const& path, QString const& folder)
{
    FileContent const file = ReadRegularFile(path, folder);
    JsonFile json;
    if (!file.exists)
        json.fault = QStringLiteral("there is no such file.");
    else if (!file.fault.isEmpty())
        json.fault = file.fault + QLatin1Char('.');
    else
        json = {ParseJson(file.bytes), GetDigest(file.bytes), file.realPath};
    return json;
}

} // namespace embeddedhost
