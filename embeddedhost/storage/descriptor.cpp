#include "storage/descriptor.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <sys/stat.h>

namespace embeddedhost {

namespace {

FileContent Unreadable(QString const& fault)
{
    return {true, QByteArray(), fault};
}

FileContent NotRead()
{
    return Unreadable(QStringLiteral("it cannot be read: %1").arg(GetSystemError()));
}

FileContent TooLarge()
{
    return Unreadable(QStringLiteral("it is larger than %1 MiB").arg(kMaxFileSize >> 20));
}

} // namespace

QString GetSystemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

QByteArray GetDescriptorPath(Descriptor const& file)
{
    return "/proc/self/fd/" + QByteArray::number(file.Get());
}

QString GetRealPath(Descriptor const& file)
{
    char path[PATH_MAX];
    ssize_t const length = readlink(GetDescriptorPath(file).constData(), path, sizeof(path));
    return length > 0 ? QFile::decodeName(QByteArray(path, int(length))) : QString();
}

QByteArray ReadAll(Descriptor const& file, qint64 expectedSize)
{
    QByteArray bytes(int(qBound(qint64(0), expectedSize, kMaxFileSize)) + 1, Qt::Uninitialized);
    int length = 0;
    while (length <= kMaxFileSize) {
        ssize_t const count =
            read(file.Get(), bytes.data() + length, std::size_t(bytes.size() - length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return QByteArray();
        if (count == 0)
            break;
        length += int(count);
        // It has grown since it was asked for its size.
        if (length == bytes.size())
            bytes.resize(int(qMin(qint64(length) * 2, kMaxFileSize + 1)));
    }
    bytes.resize(length);
    return bytes;
}

FileContent ReadFileAt(Descriptor const& place)
{
    if (!place.IsOpen()) {
        bool const isMissing =
            errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENAMETOOLONG;
        return isMissing ? FileContent() : NotRead();
    }
    struct stat status;
    if (fstat(place.Get(), &status) != 0)
        return NotRead();
    if (!S_ISREG(status.st_mode))
        return Unreadable(QStringLiteral("it is not a regular file"));
    if (status.st_size > kMaxFileSize)
        return TooLarge();
    Descriptor const file(open(GetDescriptorPath(place).constData(), kReadFlags));
    if (!file.IsOpen())
        return NotRead();
    QByteArray const bytes = ReadAll(file, status.st_size);
    if (bytes.isNull())
        return NotRead();
    if (bytes.size() > kMaxFileSize)
        return TooLarge();
    return {true, bytes, QString(), GetRealPath(file)};
}

} // namespace embeddedhost
