#include "sourcecontrol/worktreelookup.h"

#include "sourcecontrol/gitworktree.h"

namespace embeddedhost {

namespace {

CWorkTreeLookUp::Facts AskGit(QString const& folder)
{
    CGitWorkTree const tree(folder);
    QString const gitFolder = CGitWorkTree::FindGitFolder(folder);
    bool const isOutside = gitFolder.isEmpty() && tree.GetAccess() == CGitWorkTree::kNoWorkTree;
    return {gitFolder, isOutside ? QString() : tree.GetError()};
}

} // namespace

CWorkTreeLookUp::CWorkTreeLookUp(CGitWorkers& workers)
    : m_Workers(workers)
{
    connect(&m_Watcher, &QFileSystemWatcher::directoryChanged, this,
            &CWorkTreeLookUp::GitFolderChanged);
}

void CWorkTreeLookUp::Start(QString const& folder)
{
    if (m_Cancel)
        m_Cancel->Cancel();
    m_Cancel = std::make_shared<CancelFlag>();
    // Written by the worker before its delivery is posted, and read in the delivery only.
    auto const facts = std::make_shared<Facts>();
    m_Workers.Run(
        CGitWorkers::kActions, m_Cancel, [folder, facts] { *facts = AskGit(folder); },
        [this, facts, cancel = m_Cancel] {
            if (!cancel->IsSet())
                Take(*facts);
        });
}

void CWorkTreeLookUp::Forget()
{
    if (m_Cancel)
        m_Cancel->Cancel();
    m_HasNewFault = false;
    m_Facts = Facts();
    WatchGitFolder();
}

bool CWorkTreeLookUp::IsInWorkTree() const
{
    return !m_Facts.gitFolder.isEmpty();
}

QString CWorkTreeLookUp::TakeFault()
{
    bool const isNew = m_HasNewFault;
    m_HasNewFault = false;
    return isNew ? m_Facts.fault : QString();
}

void CWorkTreeLookUp::Take(Facts const& facts)
{
    bool const hasMoved = facts.gitFolder != m_Facts.gitFolder;
    m_HasNewFault = facts.fault != m_Facts.fault && !facts.fault.isEmpty();
    m_Facts = facts;
    if (hasMoved)
        WatchGitFolder();
    Q_EMIT LookedUp();
}

void CWorkTreeLookUp::WatchGitFolder()
{
    if (!m_Watcher.directories().isEmpty())
        m_Watcher.removePaths(m_Watcher.directories());
    if (IsInWorkTree())
        m_Watcher.addPath(m_Facts.gitFolder);
}

} // namespace embeddedhost

#include "moc_worktreelookup.cpp"
