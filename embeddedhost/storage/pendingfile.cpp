#include "storage/pendingfile.h"

#include "model/libraryedits.h"
#include "model/libraryitem.h"
#include "storage/filedigest.h"
#include "storage/fileplacer.h"
#include "storage/folderscan.h"
#include "storage/objectformat.h"
#include "storage/stagingfolders.h"

#include <QFileInfo>

namespace embeddedhost {

namespace {

QString const kOvertaken =
    QStringLiteral("it was changed or removed by another program since it was read. Take what is "
                   "on disk, or overwrite it");

QString DescribePlacing(PlacingResult const& placed)
{
    switch (placed.outcome) {
    case ePlacing::kOvertaken:
        return kOvertaken;
    case ePlacing::kBeingWritten:
        return QStringLiteral("another program is writing it; save again when it has finished");
    default:
        break;
    }
    if (placed.failure.error == eFileError::kOtherFileSystem)
        return QStringLiteral("its folder lies on another file system than the data source's");
    return placed.failure.reason;
}

} // namespace

CPendingFile::CPendingFile(CLibrary const& library, LibraryFile& file)
    : m_Library(library)
    , m_File(file)
    , m_IsRemoval(file.entries.empty() && !file.isArray)
{}

bool CPendingFile::Prepare(CStagingFolders& stagings)
{
    FileContent const onDisk = ReadRegularFile(m_File.path, m_Library.GetFolder());
    if (!onDisk.fault.isEmpty())
        return Fail(onDisk.fault);
    // Another program has removed it already.
    if (m_IsRemoval && !onDisk.exists)
        return true;
    // An early look, before anything is written; the placer compares again when it exchanges the
    // files.
    if ((onDisk.exists ? GetDigest(onDisk.bytes) : QByteArray()) != m_File.digest)
        return Fail(kOvertaken);
    m_OldContent = onDisk.bytes;
    m_RealPath = onDisk.exists ? onDisk.realPath : m_File.path;
    bool const isLink = QFileInfo(m_File.path).isSymLink();
    if (isLink && !onDisk.exists)
        return Fail(QStringLiteral("a link that leads nowhere is in its place; remove it"));
    // Other programs may use the target under its own name.
    if (isLink && m_IsRemoval)
        return Fail(QStringLiteral("its last object is gone, but it is a link; remove it by hand"));
    if (!m_IsRemoval && onDisk.exists && !QFileInfo(m_RealPath).isWritable())
        return Fail(QStringLiteral("it may not be written to; see its permissions"));
    return FindPlace(stagings) && (m_IsRemoval || WriteNewVersion());
}

bool CPendingFile::FindPlace(CStagingFolders& stagings)
{
    QString fault;
    m_Root = stagings.FindRoot(m_RealPath, &fault);
    // The folder first, because making the staging folder would make a missing one again.
    if (m_Root.isEmpty() || !OpenFolder(!m_IsRemoval, &fault))
        return Fail(fault);
    m_Staging = stagings.Get(m_Root, &fault);
    return m_Staging || Fail(fault);
}

bool CPendingFile::WriteNewVersion()
{
    QByteArray const content = GetFormat(m_File.path).Write(m_File, m_OldContent);
    m_Digest = GetDigest(content);
    m_NewName = m_Staging->MakeNewName();
    QString const like = m_File.digest.isEmpty() ? QString() : m_RealPath;
    FileResult const made = m_Staging->GetFolder().Create(m_NewName, content, like);
    if (made.IsDone())
        return true;
    m_Staging->GetFolder().Remove(m_NewName);
    return Fail(made.reason);
}

void CPendingFile::StartSync()
{
    if (!m_NewName.isEmpty())
        m_Staging->GetFolder().StartSync(m_NewName);
}

bool CPendingFile::Sync()
{
    if (m_NewName.isEmpty())
        return true;
    FileResult const synced = m_Staging->GetFolder().Sync(m_NewName);
    if (synced.IsDone())
        return true;
    m_Staging->GetFolder().Remove(m_NewName);
    return Fail(synced.reason);
}

bool CPendingFile::PutInPlace(int* patience)
{
    PlacingResult const placed = Place(patience);
    if (placed.outcome == ePlacing::kDone) {
        MarkSaved();
        return true;
    }
    if (!m_NewName.isEmpty())
        m_Staging->GetFolder().Remove(m_NewName);
    return Fail(DescribePlacing(placed));
}

QString const& CPendingFile::GetFailure() const
{
    return m_Failure;
}

std::unique_ptr<CHeldFolder> CPendingFile::OpenFolder(bool makesIt, QString* fault) const
{
    return CHeldFolder::Open(m_Root, QFileInfo(m_RealPath).path(), makesIt, fault);
}

PlacingResult CPendingFile::Place(int* patience)
{
    if (!m_Staging)
        return {ePlacing::kDone};
    // Opened again: a link may have replaced the folder since.
    QString fault;
    std::unique_ptr<CHeldFolder> const folder = OpenFolder(false, &fault);
    if (!folder)
        return {ePlacing::kFailed, {eFileError::kOther, fault}};
    if (m_File.digest.isEmpty())
        return PlaceNew(*folder, patience);
    return Replace(*folder, patience);
}

PlacingResult CPendingFile::PlaceNew(CHeldFolder const& folder, int* patience)
{
    CHeldFolder const& staging = m_Staging->GetFolder();
    PlacingResult const placed =
        CFilePlacer(staging, folder, QFileInfo(m_RealPath).fileName(), patience)
            .PlaceNew(m_NewName);
    if (placed.failure.error != eFileError::kBadName)
        return placed;

    // The name was made from the item's, and this file system takes fewer characters: use a plain
    // one.
    QString const path = FindFreePath(m_Library, m_File.source, "item");
    QString fault;
    std::unique_ptr<CHeldFolder> const other =
        CHeldFolder::Open(m_Root, QFileInfo(path).path(), false, &fault);
    if (!other)
        return placed;
    PlacingResult const placedThere =
        CFilePlacer(staging, *other, QFileInfo(path).fileName(), patience).PlaceNew(m_NewName);
    if (placedThere.outcome == ePlacing::kDone)
        m_File.path = path;
    return placedThere;
}

PlacingResult CPendingFile::Replace(CHeldFolder const& folder, int* patience)
{
    QString const name = QFileInfo(m_RealPath).fileName();
    CHeldFolder const& staging = m_Staging->GetFolder();
    QString const staged = m_Staging->MakeStagedName(name, m_File.digest, m_Digest);
    CFilePlacer const placer(staging, folder, name, patience);
    if (m_IsRemoval)
        return placer.Remove(staged, m_File.digest);
    // The staged name has both digests. If this process is killed during the exchange, the next
    // save can tell from it whether the file belongs to another program.
    FileResult const renamed = staging.Rename(m_NewName, staging, staged);
    if (!renamed.IsDone())
        return {ePlacing::kFailed, renamed};
    return placer.Replace(staged, m_File.digest, m_Digest);
}

void CPendingFile::MarkSaved()
{
    m_File.digest = m_Digest;
    m_File.hasOtherEntries = false;
    for (LibraryFile::Entry const& entry : m_File.entries) {
        if (entry.item)
            entry.item->MarkSaved();
    }
}

bool CPendingFile::Fail(QString const& reason)
{
    m_Failure = QStringLiteral("%1 was not saved: %2.")
                    .arg(GetShownPath(m_Library.GetFolder(), m_File.path), reason);
    return false;
}

} // namespace embeddedhost
