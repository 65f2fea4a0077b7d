#ifndef EMBEDDEDHOST_WORKTREELOOKUP_H
#define EMBEDDEDHOST_WORKTREELOOKUP_H

#include "sourcecontrol/gitworkers.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace embeddedhost {

/// Whether the library lies in a git work tree, as far as is known: git is asked on another thread.
class CWorkTreeLookUp : public QObject
{
    Q_OBJECT

public:
    struct Facts
    {
        /// Empty outside of a work tree.
        QString gitFolder;
        /// Why nothing can be read there; words that go on after a colon.
        QString fault;
    };

    explicit CWorkTreeLookUp(CGitWorkers& workers);

    /// LookedUp follows, unless another look-up or Forget() comes first.
    void Start(QString const& folder);
    /// Back to no work tree.
    void Forget();

    bool IsInWorkTree() const;
    /// There is a fault that was not taken yet; words that go on after a colon.
    QString TakeFault();

Q_SIGNALS:
    /// May do anything, the destruction of the sender included.
    void LookedUp();
    /// A commit, a checkout or `git add` changes something in the git folder.
    void GitFolderChanged();

private:
    void Take(Facts const& facts);
    void WatchGitFolder();

    CGitWorkers& m_Workers;
    CancelFlagPtr m_Cancel;
    Facts m_Facts;
    bool m_HasNewFault = false;
    QFileSystemWatcher m_Watcher;
};

} // namespace embeddedhost

#endif
