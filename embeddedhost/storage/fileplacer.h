#ifndef EMBEDDEDHOST_FILEPLACER_H
#define EMBEDDEDHOST_FILEPLACER_H

#include "storage/heldfolder.h"

namespace embeddedhost {

enum class ePlacing
{
    kDone,
    /// Another program's content was found in place, and is there again.
    kOvertaken,
    /// Another program still has the file open for writing. What was there is there again.
    kBeingWritten,
    kFailed
};

struct PlacingResult
{
    ePlacing outcome;
    /// When it failed.
    FileResult failure = FileResult();
};

/// Puts one file in place, or removes it, so that what was there can be looked at afterwards: when
/// it is not what is expected it is put back. When others keep on writing, the newest of their
/// versions ends up in place, and one before it may stay in the staging folder under the name it
/// has there.
class CFilePlacer
{
public:
    /// For the file `name` in `folder`; all of them have to outlive the placer. `patience`, in
    /// milliseconds, is how long to wait for those who are writing the file, and is what is left
    /// of it afterwards.
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
