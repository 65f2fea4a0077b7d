#include "storage/parsedfile.h"

#include "storage/filedigest.h"

namespace embeddedhost {

QString DescribeFault(FileContent const& file)
{
    if (!file.exists)
        return QStringLiteral("there is no such file.");
    return file.fault.isEmpty() ? QString() : file.fault + QLatin1Char('.');
}

ParsedFile ParseFile(QString const& path, QString const& folder, ObjectFormat const& format)
{
    FileContent const content = ReadRegularFile(path, folder);
    ParsedFile file;
    file.fault = DescribeFault(content);
    if (file.fault.isEmpty())
        file = {format.Parse(content.bytes), GetDigest(content.bytes)};
    return file;
}

} // namespace embeddedhost
