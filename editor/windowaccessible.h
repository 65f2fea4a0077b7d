#ifndef EDITOR_WINDOWACCESSIBLE_H
#define EDITOR_WINDOWACCESSIBLE_H

/// Main windows of the process tell screen readers of what pops up over them. The toolkit has only
/// menus of other menus in its tree.
void InstallWindowAccessible();

#endif
