#include "storage/descriptor.h"
#include "storage/folderscan.h"

#include <QFileInfo>

#include <sys/stat.h>

namespace embeddedhost {

FileContent ReadRegularFile(QString const& path, QString const& folder)
{
    // Opened as a path only: asking for its type then has no effect on a pipe or a device.
    Descriptor const place(open(Encode(path), O_PATH | O_CLOEXEC));
    FileContent const content = ReadFileAt(place);
    if (!content.exists || folder.isEmpty() || content.realPath == path)
        return content;
    if (!IsRealFolder(QFileInfo(path).path()))
        return FileContent();
    if (content.fault.isEmpty() && !IsWithin(folder, content.realPath))
        return {true, QByteArray(), QStringLiteral("it leads out of the library folder")};
    return content;
}

FileStamp GetFileStamp(QString const& path)
{
    struct stat status;
    if (stat(Encode(path), &status) != 0)
        return FileStamp();
    return {status.st_size, status.st_mtim.tv_sec * qint64(1000000000) + status.st_mtim.tv_nsec};
}

} // namespace embeddedhost
