#include "storage/systemfiles.h"

#include "storage/folderscan.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace embeddedhost {

namespace {

FileContent Unreadable(QString const& fault)
{
    return {true, QByteArray(), fault};
}

} // namespace

FileContent ReadRegularFile(QString const& path, QString const& folder)
{
    QFileInfo const info(path);
    if (!info.exists() || (!folder.isEmpty() && !IsRealFolder(info.path())))
        return FileContent();
    if (!info.isFile())
        return Unreadable(QStringLiteral("it is not a regular file"));
    QString const realPath = info.canonicalFilePath();
    if (!folder.isEmpty() && !IsWithin(folder, realPath))
        return Unreadable(QStringLiteral("it leads out of the library folder"));

    QFile file(realPath);
    if (!file.open(QIODevice::ReadOnly))
        return Unreadable(QStringLiteral("it cannot be read: %1").arg(file.errorString()));
    QByteArray const bytes = file.read(kMaxFileSize + 1);
    if (file.error() != QFileDevice::NoError)
        return Unreadable(QStringLiteral("it cannot be read: %1").arg(file.errorString()));
    if (bytes.size() > kMaxFileSize)
        return Unreadable(
            QStringLiteral("it is larger than %1 MiB").arg(kMaxFileSize / (1024 * 1024)));
    return {true, bytes, QString(), realPath};
}

FileStamp GetFileStamp(QString const& path)
{
    QFileInfo const info(path);
    if (!info.exists())
        return FileStamp();
    return {info.size(), info.lastModified().toMSecsSinceEpoch()};
}

} // namespace embeddedhost
