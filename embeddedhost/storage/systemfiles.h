#ifndef EMBEDDEDHOST_SYSTEMFILES_H
#define EMBEDDEDHOST_SYSTEMFILES_H

#include <QByteArray>
#include <QString>

/// What each system does in a way of its own. There is one implementation for Linux and one that
/// needs the toolkit only, with weaker guarantees against other programs; the build picks one.
namespace embeddedhost {

/// No file of a library is larger, in bytes (256 MiB).
constexpr qint64 kMaxFileSize = qint64(256) * 1024 * 1024;

/// What was found under a file's name.
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

/// Reads a regular file of no more than kMaxFileSize. What else may be found there, a pipe or a
/// device, is neither opened nor waited for. When `folder`, which is canonical, is given, only
/// links to files within it are followed; what lies behind a link to a folder is not there.
FileContent ReadRegularFile(QString const& path, QString const& folder);

} // namespace embeddedhost

#endif
