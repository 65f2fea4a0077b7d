#include "storage/heldfolder.h"

#include "storage/descriptor.h"
#include "storage/filedigest.h"

#include <QThread>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dirent.h>
#include <sys/stat.h>

namespace embeddedhost {

namespace {

/// How often to look whether a file is still being written, in milliseconds.
constexpr int kWriterPause = 5;

FileResult Failed()
{
    QString const reason = GetSystemError();
    switch (errno) {
    case EEXIST:
        return {eFileError::kExists, reason};
    case ENOENT:
        return {eFileError::kMissing, reason};
    // renameat2 answers EINVAL where the file system lacks the flag, and ENOSYS where the kernel
    // lacks the call.
    case ENOSYS:
    case EINVAL:
    case EOPNOTSUPP:
        return {eFileError::kUnsupported, reason};
    case ENAMETOOLONG:
    case EILSEQ:
        return {eFileError::kBadName, reason};
    case EXDEV:
        return {eFileError::kOtherFileSystem, reason};
    default:
        return {eFileError::kOther, reason};
    }
}

/// Why a folder was not opened, after errno.
QString DescribeFolder(QString const& folder)
{
    switch (errno) {
    case ENOENT:
        return QStringLiteral("the folder %1 is gone").arg(folder);
    case ELOOP:
    case ENOTDIR:
        return QStringLiteral("a link or a file has taken the place of the folder %1").arg(folder);
    default:
        return QStringLiteral("the folder %1 cannot be opened: %2").arg(folder, GetSystemError());
    }
}

bool WriteAll(Descriptor const& file, QByteArray const& content)
{
    for (int done = 0; done < content.size();) {
        ssize_t const count =
            write(file.Get(), content.constData() + done, std::size_t(content.size() - done));
        if (count < 0 && errno != EINTR)
            return false;
        done += int(qMax(count, ssize_t(0)));
    }
    return true;
}

/// The owner as far as permissions allow.
bool TakeAttributes(Descriptor const& file, QString const& like)
{
    struct stat model;
    struct stat status;
    if (like.isEmpty() || stat(Encode(like), &model) != 0)
        return true;
    if (fstat(file.Get(), &status) != 0)
        return false;
    if (model.st_uid != status.st_uid || model.st_gid != status.st_gid) {
        if (fchown(file.Get(), model.st_uid, model.st_gid) != 0)
            (void)!fchown(file.Get(), uid_t(-1), model.st_gid);
    }
    return fchmod(file.Get(), model.st_mode & 07777) == 0;
}

/// Detects programs that have the file open for writing. It takes a read lease, which the system
/// grants only if there is no writer, and which blocks programs that open the file for writing
/// until this object is destroyed or the system's time limit for leases has passed (45 seconds by
/// default). Without leases, as for files of other users, writers go
/// unnoticed.
class WriterWatch
{
public:
    explicit WriterWatch(Descriptor const& file)
        : m_File(file)
    {
        // Sent to the lease holder on a conflicting open. The default, SIGIO, would end the
        // process.
        fcntl(m_File.Get(), F_SETSIG, SIGURG);
    }

    ~WriterWatch()
    {
        if (m_HasLease)
            fcntl(m_File.Get(), F_SETLEASE, F_UNLCK);
    }

    WriterWatch(WriterWatch const&) = delete;
    WriterWatch& operator=(WriterWatch const&) = delete;

    bool AreGone()
    {
        // While a program waits to open the file for writing, the lease is no longer reported as
        // F_RDLCK.
        if (m_HasLease)
            return fcntl(m_File.Get(), F_GETLEASE) == F_RDLCK;
        m_HasLease = fcntl(m_File.Get(), F_SETLEASE, F_RDLCK) == 0;
        // Only these two errors mean that there is a writer; the others mean that there are no
        // leases.
        return m_HasLease || (errno != EAGAIN && errno != EBUSY);
    }

private:
    Descriptor const& m_File;
    bool m_HasLease = false;
};

FileResult RenameWith(unsigned flags, int folder, QString const& name, int targetFolder,
                      QString const& targetName)
{
    bool const isDone =
        renameat2(folder, Encode(name), targetFolder, Encode(targetName), flags) == 0;
    return isDone ? FileResult() : Failed();
}

} // namespace

CHeldFolder::CHeldFolder(QString const& path, int descriptor)
    : m_Path(path)
    , m_Descriptor(descriptor)
{}

CHeldFolder::~CHeldFolder()
{
    close(m_Descriptor);
}

std::unique_ptr<CHeldFolder> CHeldFolder::Open(QString const& root, QString const& path,
                                               bool makesPath, QString* fault)
{
    auto folder = std::make_unique<Descriptor>(open(Encode(root), kFolderFlags));
    if (!folder->IsOpen()) {
        *fault = DescribeFolder(root);
        return nullptr;
    }
    // The path of the descriptor: one of the parents may have been replaced by a link.
    if (GetRealPath(*folder) != root) {
        *fault = QStringLiteral("the folder %1 is somewhere else now").arg(root);
        return nullptr;
    }
    // One folder at a time: O_NOFOLLOW refuses a link only in the last part of a path.
    QStringList const names = path.mid(root.size()).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (QString const& name : names) {
        if (makesPath && mkdirat(folder->Get(), Encode(name), 0777) != 0 && errno != EEXIST) {
            *fault = DescribeFolder(name);
            return nullptr;
        }
        auto below =
            std::make_unique<Descriptor>(openat(folder->Get(), Encode(name), kFolderFlags));
        if (!below->IsOpen()) {
            *fault = DescribeFolder(name);
            return nullptr;
        }
        folder = std::move(below);
    }
    return std::unique_ptr<CHeldFolder>(new CHeldFolder(path, folder->Release()));
}

QString const& CHeldFolder::GetPath() const
{
    return m_Path;
}

int CHeldFolder::GetDescriptor() const
{
    return m_Descriptor;
}

QStringList CHeldFolder::GetNames() const
{
    QStringList names;
    // A separate descriptor, since the reading position is a part of it.
    int const descriptor = openat(m_Descriptor, ".", kFolderFlags);
    DIR* const folder = descriptor >= 0 ? fdopendir(descriptor) : nullptr;
    if (!folder) {
        Descriptor const unused(descriptor);
        return names;
    }
    while (dirent const* const entry = readdir(folder)) {
        if (entry->d_type != DT_DIR)
            names << QFile::decodeName(entry->d_name);
    }
    closedir(folder);
    return names;
}

FileContent CHeldFolder::Read(QString const& name) const
{
    return ReadFileAt(
        Descriptor(openat(m_Descriptor, Encode(name), O_PATH | O_NOFOLLOW | O_CLOEXEC)));
}

FileResult CHeldFolder::Create(QString const& name, QByteArray const& content,
                               QString const& like) const
{
    // Unnamed until it is complete, where the file system supports that.
    Descriptor unnamed(openat(m_Descriptor, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666));
    if (unnamed.IsOpen()) {
        // By its path in /proc, since linkat needs a capability to link a bare descriptor.
        bool const isMade = WriteAll(unnamed, content) && TakeAttributes(unnamed, like)
                            && linkat(AT_FDCWD, GetDescriptorPath(unnamed).constData(),
                                      m_Descriptor, Encode(name), AT_SYMLINK_FOLLOW)
                                   == 0
                            && close(unnamed.Release()) == 0;
        return isMade ? FileResult() : Failed();
    }
    Descriptor file(openat(m_Descriptor, Encode(name),
                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file.IsOpen())
        return Failed();
    if (WriteAll(file, content) && TakeAttributes(file, like) && close(file.Release()) == 0)
        return FileResult();
    FileResult const failure = Failed();
    unlinkat(m_Descriptor, Encode(name), 0);
    return failure;
}

void CHeldFolder::StartSync(QString const& name) const
{
    Descriptor const file(openat(m_Descriptor, Encode(name), kReadFlags | O_NOFOLLOW));
    if (file.IsOpen())
        sync_file_range(file.Get(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

FileResult CHeldFolder::Sync(QString const& name) const
{
    Descriptor const file(openat(m_Descriptor, Encode(name), kReadFlags | O_NOFOLLOW));
    return file.IsOpen() && fdatasync(file.Get()) == 0 ? FileResult() : Failed();
}

FileResult CHeldFolder::Remove(QString const& name) const
{
    return unlinkat(m_Descriptor, Encode(name), 0) == 0 ? FileResult() : Failed();
}

eRemoval CHeldFolder::RemoveUnchanged(QString const& name, QList<QByteArray> const& digests,
                                      int* patience) const
{
    // As a path only, until it is known to be a regular file: opening a pipe or a device has
    // effects.
    Descriptor const place(openat(m_Descriptor, Encode(name), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status;
    if (!place.IsOpen() || fstat(place.Get(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > kMaxFileSize)
        return eRemoval::kKept;
    Descriptor const file(open(GetDescriptorPath(place).constData(), kReadFlags));
    if (!file.IsOpen())
        return eRemoval::kKept;
    WriterWatch writers(file);
    while (!writers.AreGone() && *patience > 0) {
        QThread::msleep(kWriterPause);
        *patience -= kWriterPause;
    }
    if (!writers.AreGone())
        return eRemoval::kBeingWritten;
    QByteArray const bytes = ReadAll(file, status.st_size);
    if (bytes.isNull() || !digests.contains(GetDigest(bytes)))
        return eRemoval::kKept;
    // Another program may have begun to write while the file was read.
    if (!writers.AreGone())
        return eRemoval::kBeingWritten;
    return unlinkat(m_Descriptor, Encode(name), 0) == 0 ? eRemoval::kRemoved : eRemoval::kKept;
}

FileResult CHeldFolder::Rename(QString const& name, CHeldFolder const& target,
                               QString const& targetName) const
{
    FileResult const result =
        RenameWith(RENAME_NOREPLACE, m_Descriptor, name, target.m_Descriptor, targetName);
    if (result.error != eFileError::kUnsupported)
        return result;
    // link() fails, too, if the name exists.
    bool const isLinked =
        linkat(m_Descriptor, Encode(name), target.m_Descriptor, Encode(targetName), 0) == 0;
    return isLinked && unlinkat(m_Descriptor, Encode(name), 0) == 0 ? FileResult() : Failed();
}

FileResult CHeldFolder::Replace(QString const& name, CHeldFolder const& target,
                                QString const& targetName) const
{
    return RenameWith(0, m_Descriptor, name, target.m_Descriptor, targetName);
}

FileResult CHeldFolder::Exchange(QString const& name, CHeldFolder const& target,
                                 QString const& targetName) const
{
    return RenameWith(RENAME_EXCHANGE, m_Descriptor, name, target.m_Descriptor, targetName);
}

} // namespace embeddedhost
