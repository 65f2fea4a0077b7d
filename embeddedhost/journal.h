#ifndef EMBEDDEDHOST_JOURNAL_H
#define EMBEDDEDHOST_JOURNAL_H

#include "embeddedhost_export.h"

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include <map>
#include <memory>
#include <vector>

class CEmbeddedHost;
class QLockFile;

namespace embeddedhost {

/// Keeps the unsaved changes of the host's library in a file outside of it, so that a killed
/// process loses the last few seconds at most.
///
/// The file is written a while after a change, and removed when everything is saved or undone.
/// Each process has and locks a file of its own; the file of a process that has ended can be
/// recovered or discarded by the next one that opens the library. A journal that is
/// destroyed, or whose library is closed, leaves its file behind unless it was dropped before.
class EMBEDDEDHOST_EXPORT CJournal : public QObject
{
    Q_OBJECT

public:
    /// The journal of a process that ended with unsaved changes.
    struct Leftover
    {
        QString file;      ///< with its path
        QDateTime written; ///< when it was written last
        int objectCount;   ///< how many objects have changes in it
    };

    /// Writes into the folder, which is made when it is needed. The host has to outlive the
    /// journal.
    CJournal(CEmbeddedHost& host, QString const& folder, QObject* parent = nullptr);
    ~CJournal() override;

    /// How long after a change the file is written, in milliseconds.
    void SetPause(int milliseconds);

    /// The journals left behind for the open library, the oldest first. They are locked against
    /// other processes until this journal is destroyed. Unusable files are set aside, with a
    /// message.
    std::vector<Leftover> FindLeftovers();
    /// Applies the changes again, as one command. When some cannot be applied the file is set
    /// aside.
    void Recover(Leftover const& leftover);
    /// Removes the file.
    void Discard(Leftover const& leftover);

    /// Discards the journal of this process.
    void Drop();

private:
    void FollowLibrary();
    void FollowChanges();
    /// False if the journal could not be written; it is tried again after a pause.
    bool Write();
    bool ClaimFile();
    void RemoveFile();
    QString GetFileStem() const;
    QByteArray ReadLeftover(QString const& file, QString* fault) const;
    void SetAside(QString const& file, QString const& reason);

    CEmbeddedHost& m_Host;
    QString const m_Folder;
    QTimer m_Pause;
    /// The folder of the open library; empty when none is open.
    QString m_LibraryFolder;

    /// This process's file and its lock; empty and null until something has to be written.
    QString m_File;
    std::unique_ptr<QLockFile> m_Lock;
    QByteArray m_Written;
    bool m_HasFailed = false;
    /// Locks on the leftovers, by file.
    std::map<QString, std::unique_ptr<QLockFile>> m_LeftoverLocks;
};

} // namespace embeddedhost

#endif
