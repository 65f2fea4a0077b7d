#ifndef EMBEDDEDHOST_SPECIALFILES_H
#define EMBEDDEDHOST_SPECIALFILES_H

#include <QString>

namespace embeddedhost {

/// The nearest folder around this one, or itself, that has something by the name of git's folder;
/// the topmost one when there is none. Opens nothing.
QString FindGitRoot(QString const& folder);

/// Git opens its own files without looking what they are, and hangs when one is a pipe or a device.
/// The first such file of the work tree around the folder, empty when there is none. Only the files
/// that git opens in nearly all that it does are looked at.
QString FindSpecialGitFile(QString const& folder);

} // namespace embeddedhost

#endif
