#ifndef EMBEDDEDHOST_SYSTEMFILES_H
#define EMBEDDEDHOST_SYSTEMFILES_H

#include <QByteArray>
#include <QString>

/// File operations that depend on the system. There is one implementation for Linux and one that
/// needs the toolkit only, with weaker guarantees against other programs; the build picks one.
namespace embeddedhost {

/// No file of a library is larger, in bytes (256 MiB).
constexpr qint64 kMaxFileSize = qint64(256) * 1024 * 1024;

/// The file found under a name.
struct FileContent
{
    /// Something is there, be it a file or not. A link that leads nowhere is not there.
    bool exists = false;
    QByteArray bytes = QByteArray();
    /// Why it was not read, a sentence without the file name and the full stop: "it is not a
    /// regular file". Empty when it was read, or is not there.
    QString fault = QString();
    /// Where the file lies when all links are resolved; empty when it was not read.
    QString realPath = QString();
};

/// Reads a regular file of no more than kMaxFileSize bytes. Pipes and devices are neither opened
/// nor waited for. If `folder`, a canonical path, is given, only links to files within it are
/// followed; files behind a link to a folder do not exist.
FileContent ReadRegularFile(QString const& path, QString const& folder);

/// Detects that a file was touched; a missing file has no size.
struct FileStamp
{
    qint64 size = -1;
    /// In the units of the system.
    qint64 modified = 0;

    bool operator==(FileStamp const& other) const
    {
        return size == other.size && modified == other.modified;
    }
};

/// The stamp of a file, or of the target of a link.
FileStamp GetFileStamp(QString const& path);

} // namespace embeddedhost

#endif
