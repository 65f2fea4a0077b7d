#include "storage/jsonfile.h"

#include "storage/filedigest.h"

namespace embeddedhost {

QString DescribeFault(FileContent const& file)
{
    if (!file.exists)
        return QStringLiteral("there is no such file.");
    return file.fault.isEmpty() ? QString() : file.fault + QLatin1Char('.');
}

JsonFile ReadJsonFile(QString const& path, QString const& folder)
{
    FileContent const file = ReadRegularFile(path, folder);
    JsonFile json;
    json.fault = DescribeFault(file);
    if (json.fault.isEmpty())
        json = {ParseJson(file.bytes), GetDigest(file.bytes), file.realPath};
    return json;
}

} // namespace embeddedhost
