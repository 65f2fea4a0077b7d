#ifndef EMBEDDEDHOST_SPECIALFILES_H
#define EMBEDDEDHOST_SPECIALFILES_H

#include <QString>

namespace embeddedhost {

/// The nearest folder around this one, or itself, that has an entry named like git's folder; the
/// root when there is none. Opens nothing.
QString FindGitRoot(QString const& folder);

/// Git opens its own files without checking their type, and hangs if one is a pipe or a device.
/// The first such file of the work tree around the folder; empty if there is none. Only files
/// that nearly all git operations open are checked.
QString FindSpecialGitFile(QString const& folder);

} // namespace embeddedhost

#endif
