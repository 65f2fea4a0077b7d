#ifndef EMBEDDEDHOST_NEWWORKTREE_H
#define EMBEDDEDHOST_NEWWORKTREE_H

#include <QString>

namespace embeddedhost {

/// Makes a git work tree of the folder and commits all that is in it, as the author whom the
/// user has set up for git, or a stand-in. Waits some seconds for it. False, with the reason, when
/// that fails; some of git's folder may be there then.
bool MakeGitWorkTree(QString const& folder, QString* fault);

} // namespace embeddedhost

#endif
