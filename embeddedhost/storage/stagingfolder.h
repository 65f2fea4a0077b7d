#ifndef EMBEDDEDHOST_STAGINGFOLDER_H
#define EMBEDDEDHOST_STAGINGFOLDER_H

#include "storage/heldfolder.h"
#include "storage/turnlock.h"

#include <memory>

namespace embeddedhost {

/// The hidden folder ".nodebrowser" in the folder of a data source, where a save makes files
/// before it puts them in place. It holds the lock that makes processes take turns, and a
/// .gitignore that keeps it from being seen. When it is closed it is removed, unless something of
/// another program had to be kept in it.
///
/// The names in it identify the leftovers of a killed process: "7.new" was being written,
/// "7-<digest>-<digest>-glow.json.staged" is the old or the new version of glow.json, or else
/// another program's, which came between.
class CStagingFolder
{
public:
    /// Makes the folder in `parent`, a canonical path, and waits for its lock no longer than
    /// `patience`, in milliseconds; the time waited is subtracted from it. Null, with the reason
    /// as a sentence without the full stop, if there is no folder or no lock.
    static std::unique_ptr<CStagingFolder> Open(QString const& parent, int* patience,
                                                QString* fault);
    /// There is one in `parent`, of another save or left behind by one.
    static bool IsIn(QString const& parent);
    ~CStagingFolder();

    CHeldFolder const& GetFolder() const;

    /// The name of a new file.
    QString MakeNewName();
    /// For a file of that name that is going to be replaced, or removed. The digests are empty for
    /// a version that does not exist.
    QString MakeStagedName(QString const& name, QByteArray const& oldDigest,
                           QByteArray const& newDigest);

    /// Removes the leftovers of a killed process, except the content of other programs. Must not
    /// be called during a save.
    void TidyUp();
    /// The paths of the files in it that hold another program's content.
    QStringList FindKept() const;

private:
    CStagingFolder(QString const& parent, std::unique_ptr<CHeldFolder> folder);
    static std::unique_ptr<CStagingFolder> TryOpen(QString const& parent, int patience,
                                                   QString* fault);
    bool Mark(QString* fault) const;
    bool HasOthers() const;

    QString const m_Parent;
    std::unique_ptr<CHeldFolder> const m_Folder;
    CTurnLock m_Lock;
    /// Starts after the highest number left in the folder; names differ by their digests, too.
    quint64 m_LastNumber = 0;
};

} // namespace embeddedhost

#endif
