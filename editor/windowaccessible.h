#ifndef EDITOR_WINDOWACCESSIBLE_H
#define EDITOR_WINDOWACCESSIBLE_H

/// From now on, main windows of the process expose their popups to screen readers. The toolkit's
/// own tree has only submenus.
void InstallWindowAccessible();

#endif
