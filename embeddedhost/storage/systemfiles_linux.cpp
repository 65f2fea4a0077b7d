#include "storage/systemfiles.h"

#include "storage/folderscan.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace embeddedhost {

namespace {

/// Closes a descriptor.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_Number(number)
    {
    }

    ~Descriptor()
    {
        if (m_Number >= 0)
            close(m_Number);
    }

    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    bool IsOpen() const
    {
        return m_Number >= 0;
    }

    int Get() const
    {
        return m_Number;
    }

private:
    int const m_Number;
};

QString GetSystemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

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
    return Unreadable(QStringLiteral("it is larger than %1 MiB").arg(kMaxFileSize / (1024 * 1024)));
}

QByteArray GetDescriptorPath(Descriptor const& file)
{
    return "/proc/self/fd/" + QByteArray::number(file.Get());
}

/// Where an open file lies; empty when the system does not tell.
QString GetRealPath(Descriptor const& file)
{
    QByteArray path(PATH_MAX, '\0');
    ssize_t const length = readlink(GetDescriptorPath(file).constData(), path.data(), PATH_MAX);
    return length > 0 ? QFile::decodeName(path.left(int(length))) : QString();
}

/// Up to the end of the file, or one byte more than is allowed. Null, with errno, when it fails.
QByteArray ReadAll(Descriptor const& file, qint64 expectedSize)
{
    QByteArray bytes(int(expectedSize) + 1, Qt::Uninitialized);
    int length = 0;
    while (length <= kMaxFileSize) {
        ssize_t const count = read(file.Get(), bytes.data() + length,
                                   std::size_t(bytes.size() - length));
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

} // namespace

FileContent ReadRegularFile(QString const& path, QString const& folder)
{
    // A place only: looking at what it is has no effect on a pipe or a device.
    Descriptor const place(open(QFile::encodeName(path).constData(), O_PATH | O_CLOEXEC));
    if (!place.IsOpen())
        return errno == ENOENT || errno == ENOTDIR || errno == ELOOP ? FileContent() : NotRead();
    struct stat status;
    if (fstat(place.Get(), &status) != 0)
        return NotRead();
    if (!S_ISREG(status.st_mode))
        return Unreadable(QStringLiteral("it is not a regular file"));
    if (status.st_size > kMaxFileSize)
        return TooLarge();

    Descriptor const file(open(GetDescriptorPath(place).constData(),
                               O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.IsOpen())
        return NotRead();
    QByteArray const bytes = ReadAll(file, status.st_size);
    if (bytes.isNull())
        return NotRead();
    if (bytes.size() > kMaxFileSize)
        return TooLarge();
    QString const realPath = GetRealPath(file);
    if (!folder.isEmpty() && !IsWithin(folder, realPath))
        return Unreadable(QStringLiteral("it leads out of the library folder"));
    return {true, bytes, QString(), realPath};
}

} // namespace embeddedhost
