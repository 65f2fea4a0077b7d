#ifndef EMBEDDEDHOST_DESCRIPTOR_H
#define EMBEDDEDHOST_DESCRIPTOR_H

#include "storage/systemfiles.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>
#include <utility>

/// Files by their descriptors, for the implementation for Linux.
namespace embeddedhost {

/// Closes a descriptor.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_Number(number)
    {}

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

    /// Releases ownership: the caller has to close the descriptor.
    int Release()
    {
        return std::exchange(m_Number, -1);
    }

private:
    int m_Number;
};

/// A path as the system takes it.
class Encode
{
public:
    explicit Encode(QString const& path)
        : m_Path(QFile::encodeName(path))
    {}

    operator char const*() const
    {
        return m_Path.constData();
    }

private:
    QByteArray const m_Path;
};

/// For reading regular files. They do not block, in case the file has just been replaced by a
/// pipe or a device.
constexpr int kReadFlags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// The text of errno.
QString GetSystemError();

/// The name under which an open file can be opened once more.
QByteArray GetDescriptorPath(Descriptor const& file);
/// The path of an open file; empty if the system does not provide it.
QString GetRealPath(Descriptor const& file);

/// Reads up to the end of the file, or up to one byte beyond the limit. Null, with errno, when it
/// fails.
QByteArray ReadAll(Descriptor const& file, qint64 expectedSize);
/// Reads the file that `place` was opened for with O_PATH; if it is not open, the reason is
/// taken from errno.
FileContent ReadFileAt(Descriptor const& place);

} // namespace embeddedhost

#endif
