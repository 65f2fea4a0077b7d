#ifndef EMBEDDEDHOST_PENDINGFILE_H
#define EMBEDDEDHOST_PENDINGFILE_H

#include "model/library.h"

namespace embeddedhost {

class CHeldFolder;
class CStagingFolder;
class CStagingFolders;
struct PlacingResult;

/// A file that is being saved. Each step is taken for all files before the next step, and only if
/// the one before it succeeded; if a step fails the failure has the reason, and the objects of
/// the file stay modified.
class CPendingFile
{
public:
    CPendingFile(CLibrary const& library, LibraryFile& file);

    /// Writes the new version into a staging folder, unless the old one is not the one that was
    /// read.
    bool Prepare(CStagingFolders& stagings);
    void StartSync();
    /// Waits until the new version is on the disk.
    bool Sync();
    /// Puts the new version in place of the old one. `patience` is that of CFilePlacer.
    bool PutInPlace(int* patience);

    /// Which file was not saved, and why.
    QString const& GetFailure() const;

private:
    bool FindPlace(CStagingFolders& stagings);
    bool WriteNewVersion();
    std::unique_ptr<CHeldFolder> OpenFolder(bool makesIt, QString* fault) const;
    PlacingResult Place(int* patience);
    PlacingResult Replace(CHeldFolder const& folder, int* patience);
    PlacingResult PlaceNew(CHeldFolder const& folder, int* patience);
    void MarkSaved();
    bool Fail(QString const& reason);

    CLibrary const& m_Library;
    LibraryFile& m_File;
    /// The last object of the file is gone, and the file goes with it.
    bool const m_IsRemoval;
    /// The content on disk, and its real path: the file's own path may be that of a link.
    QByteArray m_OldContent;
    QString m_RealPath;
    QString m_Root;
    CStagingFolder* m_Staging = nullptr;
    /// The name and the digest of the new version in the staging folder.
    QString m_NewName;
    QByteArray m_Digest;
    QString m_Failure;
};

} // namespace embeddedhost

#endif
