#include "storage/heldfolder.h"

#include "storage/filedigest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

// The folder is not held open here: it is only a path, which is checked in Open.
namespace embeddedhost {

namespace {

FileResult Failed(QString const& reason)
{
    return {eFileError::kOther, reason};
}

QString Join(CHeldFolder const& folder, QString const& name)
{
    return folder.GetPath() + QLatin1Char('/') + name;
}

bool IsLink(QString const& path)
{
    return QFileInfo(path).isSymLink();
}

#ifdef Q_OS_WIN
// Windows cannot flush a file that was opened for reading only.
constexpr QIODevice::OpenMode kSyncMode = QIODevice::ReadWrite | QIODevice::ExistingOnly;

bool SyncFile(QFile const& file)
{
    return _commit(file.handle()) == 0;
}
#else
constexpr QIODevice::OpenMode kSyncMode = QIODevice::ReadOnly;

bool SyncFile(QFile const& file)
{
    return fsync(file.handle()) == 0;
}
#endif

} // namespace

CHeldFolder::CHeldFolder(QString const& path, int descriptor)
    : m_Path(path)
    , m_Descriptor(descriptor)
{}

CHeldFolder::~CHeldFolder() = default;

std::unique_ptr<CHeldFolder> CHeldFolder::Open(QString const& root, QString const& path,
                                               bool makesPath, QString* fault)
{
    if (!QFileInfo(root).isDir()) {
        *fault = QStringLiteral("the folder %1 is gone").arg(root);
        return nullptr;
    }
    // No existing folder on the way may have become a link.
    QString known = root;
    QStringList const names = path.mid(root.size()).split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (QString const& name : names) {
        if (QFileInfo::exists(known + QLatin1Char('/') + name) || IsLink(known + '/' + name))
            known += QLatin1Char('/') + name;
        else
            break;
    }
    if (QFileInfo(known).canonicalFilePath() != known || !QFileInfo(known).isDir()) {
        *fault = QStringLiteral("a link or a file has taken the place of the folder %1").arg(known);
        return nullptr;
    }
    if (known != path && !(makesPath && QDir().mkpath(path))) {
        *fault = makesPath ? QStringLiteral("the folder %1 cannot be made").arg(path)
                           : QStringLiteral("the folder %1 is gone").arg(path);
        return nullptr;
    }
    return std::unique_ptr<CHeldFolder>(new CHeldFolder(path, -1));
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
    return QDir(m_Path).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

FileContent CHeldFolder::Read(QString const& name) const
{
    QString const path = Join(*this, name);
    if (IsLink(path))
        return {true, QByteArray(), QStringLiteral("it is not a regular file")};
    return ReadRegularFile(path, QString());
}

FileResult CHeldFolder::Create(QString const& name, QByteArray const& content,
                               QString const& like) const
{
    QFile file(Join(*this, name));
    if (file.exists())
        return {eFileError::kExists, QStringLiteral("there is such a file already")};
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return Failed(file.errorString());
    bool const isWritten = file.write(content) == content.size() && file.flush();
    QString const reason = file.errorString();
    file.close();
    if (!isWritten || file.error() != QFileDevice::NoError) {
        file.remove();
        return Failed(reason);
    }
    if (QFileInfo::exists(like))
        file.setPermissions(QFile::permissions(like));
    return FileResult();
}

void CHeldFolder::StartSync(QString const&) const {}

FileResult CHeldFolder::Sync(QString const& name) const
{
    QFile file(Join(*this, name));
    if (!file.open(kSyncMode))
        return Failed(file.errorString());
    return SyncFile(file) ? FileResult() : Failed(QStringLiteral("it cannot be put on the disk"));
}

FileResult CHeldFolder::Remove(QString const& name) const
{
    QFile file(Join(*this, name));
    return file.remove() ? FileResult() : Failed(file.errorString());
}

eRemoval CHeldFolder::RemoveUnchanged(QString const& name, QList<QByteArray> const& digests,
                                      int* /*patience*/) const
{
    // Other writers cannot be detected portably.
    FileContent const content = Read(name);
    bool const isRemoved = content.exists && content.fault.isEmpty()
                           && digests.contains(GetDigest(content.bytes)) && Remove(name).IsDone();
    return isRemoved ? eRemoval::kRemoved : eRemoval::kKept;
}

FileResult CHeldFolder::Rename(QString const& name, CHeldFolder const& target,
                               QString const& targetName) const
{
    QFile file(Join(*this, name));
    QString const targetPath = Join(target, targetName);
    if (QFileInfo::exists(targetPath) || IsLink(targetPath))
        return {eFileError::kExists, QStringLiteral("there is such a file already")};
    if (!file.exists())
        return {eFileError::kMissing, QStringLiteral("there is no such file")};
    return file.rename(targetPath) ? FileResult() : Failed(file.errorString());
}

FileResult CHeldFolder::Replace(QString const& name, CHeldFolder const& target,
                                QString const& targetName) const
{
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(Join(*this, name).toStdU16String()),
                            std::filesystem::path(Join(target, targetName).toStdU16String()),
                            error);
    if (!error)
        return FileResult();
    bool const isOther = error == std::errc::cross_device_link;
    return {isOther ? eFileError::kOtherFileSystem : eFileError::kOther,
            QString::fromStdString(error.message())};
}

FileResult CHeldFolder::Exchange(QString const&, CHeldFolder const&, QString const&) const
{
    return {eFileError::kUnsupported, QStringLiteral("files cannot be exchanged")};
}

} // namespace embeddedhost
