#ifndef EMBEDDEDHOST_HELDFOLDER_H
#define EMBEDDEDHOST_HELDFOLDER_H

#include "storage/systemfiles.h"

#include <QList>
#include <QStringList>

#include <memory>

namespace embeddedhost {

enum class eFileError
{
    kNone,
    kExists,
    kMissing,
    /// The system, or the file system, has no such operation.
    kUnsupported,
    /// No file can have the name: it is too long, or has characters that are not allowed.
    kBadName,
    /// The two folders lie on different file systems.
    kOtherFileSystem,
    kOther
};

/// The result of an operation on a file.
struct FileResult
{
    eFileError error = eFileError::kNone;
    /// The system's text: "No space left on device". Empty without an error.
    QString reason = QString();

    bool IsDone() const
    {
        return error == eFileError::kNone;
    }
};

/// The result of removing a file, which is done only if it has not changed.
enum class eRemoval
{
    kRemoved,
    /// Not removed, because it has another content, is not a regular file, or for lack of
    /// permission.
    kKept,
    /// Not removed, because another program has it open for writing.
    kBeingWritten
};

/// A folder that is held open. Its files are reached by their names in it, and never through a
/// link, even if the folder is moved meanwhile and another one takes its place.
class CHeldFolder
{
public:
    /// Opens `path`, which is `root` or a folder below it, both canonical. With `makesPath`
    /// missing folders below the root are made, but never the root itself. Null, with the reason as
    /// a sentence without the full stop, when it is missing, or a link has taken the place of one
    /// of the folders.
    static std::unique_ptr<CHeldFolder> Open(QString const& root, QString const& path,
                                             bool makesPath, QString* fault);
    ~CHeldFolder();
    CHeldFolder(CHeldFolder const&) = delete;
    CHeldFolder& operator=(CHeldFolder const&) = delete;

    /// The path it was opened with.
    QString const& GetPath() const;
    /// For operations that only one system has; -1 where folders cannot be held.
    int GetDescriptor() const;
    /// The names of all entries except folders, in no particular order. Empty if they cannot be
    /// read.
    QStringList GetNames() const;

    FileContent Read(QString const& name) const;

    /// A new file with the content, which is not on the disk yet. It gets the owner and the
    /// permissions of the file `like`, unless that is empty or not there. There may be a file even
    /// when it fails, but a whole one.
    FileResult Create(QString const& name, QByteArray const& content, QString const& like) const;
    /// Starts writing the file to the disk, so that syncing many takes little more time than one.
    void StartSync(QString const& name) const;
    /// Returns when the content of the file is on the disk.
    FileResult Sync(QString const& name) const;
    FileResult Remove(QString const& name) const;
    /// Removes the file if it has one of these digests and no other program has it open for
    /// writing. Waits for such a program no longer than `patience`, in milliseconds; the time
    /// waited is subtracted from it.
    eRemoval RemoveUnchanged(QString const& name, QList<QByteArray> const& digests,
                             int* patience) const;

    /// Fails when the target exists.
    FileResult Rename(QString const& name, CHeldFolder const& target,
                      QString const& targetName) const;
    /// Puts the file in place of the target, which is lost.
    FileResult Replace(QString const& name, CHeldFolder const& target,
                       QString const& targetName) const;
    /// The two files change places in one step.
    FileResult Exchange(QString const& name, CHeldFolder const& target,
                        QString const& targetName) const;

private:
    CHeldFolder(QString const& path, int descriptor);

    QString const m_Path;
    int const m_Descriptor;
};

} // namespace embeddedhost

#endif
