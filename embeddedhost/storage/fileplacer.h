#ifndef EMBEDDEDHOST_FILEPLACER_H
#define EMBEDDEDHOST_FILEPLACER_H

#include "storage/heldfolder.h"

namespace embeddedhost {

enum class ePlacing
{
    kDone,
    /// Another program's content was found in place, and is there again.
    kOvertaken,
    /// Another program still has the file open for writing, so its version was put back.
    kBeingWritten,
    kFailed
};

struct PlacingResult
{
    ePlacing outcome;
    /// When it failed.
    FileResult failure = FileResult();
};

/// Puts one file in place, or removes it, by an exchange: the version that was in place is
/// compared with the expected one afterwards, and put back if it differs. If other programs keep
/// on writing, the newest of their versions ends up in place, and an earlier one may stay in the
/// staging folder.
class CFilePlacer
{
public:
    /// For the file `name` in `folder`; all of them have to outlive the placer. `patience`, in
    /// milliseconds, is the longest wait for programs that are writing the file; the time waited
    /// is subtracted from it.
    CFilePlacer(CHeldFolder const& staging, CHeldFolder const& folder, QString const& name,
                int* patience);

    /// Puts `staged`, a file in the staging folder, where there must be none. When it fails the
    /// staged file is still there.
    PlacingResult PlaceNew(QString const& staged) const;
    /// Puts `staged` in place of the file, which has the old digest. Its own is the new one.
    PlacingResult Replace(QString const& staged, QByteArray const& oldDigest,
                          QByteArray const& newDigest) const;
    /// Removes the file, which has the digest. `staged` is a free name in the staging folder.
    PlacingResult Remove(QString const& staged, QByteArray const& oldDigest) const;

private:
    PlacingResult GiveUp(QString const& staged, FileResult const& failure) const;
    PlacingResult PutBack(QString const& staged, QByteArray const& newDigest,
                          ePlacing reason) const;
    QByteArray GetStagedDigest(QString const& staged) const;
    PlacingResult ReplaceAfterLook(QString const& staged, QByteArray const& oldDigest) const;

    CHeldFolder const& m_Staging;
    CHeldFolder const& m_Folder;
    QString const m_Name;
    int* const m_Patience;
};

} // namespace embeddedhost

#endif
