#include "storage/fileplacer.h"

#include "storage/filedigest.h"

namespace embeddedhost {

namespace {

/// The maximum of attempts against a program that keeps writing the file.
constexpr int kExchangeAttempts = 20;

PlacingResult Explain(FileResult const& failure)
{
    bool const isOvertaken =
        failure.error == eFileError::kExists || failure.error == eFileError::kMissing;
    return isOvertaken ? PlacingResult{ePlacing::kOvertaken}
                       : PlacingResult{ePlacing::kFailed, failure};
}

/// Why the old version is put back.
ePlacing FindReason(eRemoval removal)
{
    return removal == eRemoval::kBeingWritten ? ePlacing::kBeingWritten : ePlacing::kOvertaken;
}

} // namespace

CFilePlacer::CFilePlacer(CHeldFolder const& staging, CHeldFolder const& folder, QString const& name,
                         int* patience)
    : m_Staging(staging)
    , m_Folder(folder)
    , m_Name(name)
    , m_Patience(patience)
{}

PlacingResult CFilePlacer::PlaceNew(QString const& staged) const
{
    FileResult const placed = m_Staging.Rename(staged, m_Folder, m_Name);
    return placed.IsDone() ? PlacingResult{ePlacing::kDone} : Explain(placed);
}

PlacingResult CFilePlacer::Replace(QString const& staged, QByteArray const& oldDigest,
                                   QByteArray const& newDigest) const
{
    FileResult const placed = m_Staging.Exchange(staged, m_Folder, m_Name);
    if (placed.error == eFileError::kUnsupported)
        return ReplaceAfterLook(staged, oldDigest);
    if (!placed.IsDone())
        return GiveUp(staged, placed);
    eRemoval const removal = m_Staging.RemoveUnchanged(staged, {oldDigest}, m_Patience);
    if (removal == eRemoval::kRemoved)
        return {ePlacing::kDone};
    return PutBack(staged, newDigest, FindReason(removal));
}

/// The weaker way, for file systems that cannot exchange files: a version that another program
/// writes between the look and the replacement is lost.
PlacingResult CFilePlacer::ReplaceAfterLook(QString const& staged,
                                            QByteArray const& oldDigest) const
{
    FileContent const found = m_Folder.Read(m_Name);
    if (!found.exists || !found.fault.isEmpty() || GetDigest(found.bytes) != oldDigest)
        return GiveUp(staged, {eFileError::kExists});
    FileResult const placed = m_Staging.Replace(staged, m_Folder, m_Name);
    return placed.IsDone() ? PlacingResult{ePlacing::kDone} : GiveUp(staged, placed);
}

PlacingResult CFilePlacer::Remove(QString const& staged, QByteArray const& oldDigest) const
{
    FileResult const taken = m_Folder.Rename(m_Name, m_Staging, staged);
    if (!taken.IsDone())
        return Explain(taken);
    eRemoval const removal = m_Staging.RemoveUnchanged(staged, {oldDigest}, m_Patience);
    if (removal == eRemoval::kRemoved)
        return {ePlacing::kDone};
    // Fails if a new file has taken the name meanwhile; the old one is then kept in the staging
    // folder.
    m_Staging.Rename(staged, m_Folder, m_Name);
    return {FindReason(removal)};
}

/// Our version, which never was in place, is not needed any more.
PlacingResult CFilePlacer::GiveUp(QString const& staged, FileResult const& failure) const
{
    m_Staging.Remove(staged);
    return Explain(failure);
}

/// `staged` is the file that was taken out, which another program had changed.
PlacingResult CFilePlacer::PutBack(QString const& staged, QByteArray const& newDigest,
                                   ePlacing reason) const
{
    QByteArray placedDigest = newDigest;
    for (int attempt = 0; attempt < kExchangeAttempts; ++attempt) {
        QByteArray const digest = GetStagedDigest(staged);
        FileResult const back = m_Staging.Exchange(staged, m_Folder, m_Name);
        if (back.error == eFileError::kMissing) {
            // The other program removed our version instead of its own.
            if (m_Staging.Rename(staged, m_Folder, m_Name).IsDone())
                break;
            continue;
        }
        if (!back.IsDone())
            return {ePlacing::kFailed, back};
        // The staged file is now the one that was in place: ours until one exchange has succeeded,
        // theirs after that.
        bool const wasOurs = placedDigest == newDigest;
        if (wasOurs
            && m_Staging.RemoveUnchanged(staged, {newDigest}, m_Patience) == eRemoval::kRemoved)
            return {reason};
        // No further exchange: the newest version is in place, the one before is kept.
        if (!wasOurs && GetStagedDigest(staged) == placedDigest)
            break;
        placedDigest = digest;
    }
    return {ePlacing::kOvertaken};
}

/// Empty when it cannot be read.
QByteArray CFilePlacer::GetStagedDigest(QString const& staged) const
{
    FileContent const content = m_Staging.Read(staged);
    return content.fault.isEmpty() ? GetDigest(content.bytes) : QByteArray();
}

} // namespace embeddedhost
