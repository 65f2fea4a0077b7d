#ifndef EMBEDDEDHOST_FILECONFLICT_H
#define EMBEDDEDHOST_FILECONFLICT_H

#include "model/library.h"

#include <framework.h>

#include <QString>

#include <memory>

namespace embeddedhost {

/// Resolves a conflict for what is on disk, which may be nothing any more; undo brings our
/// changes back. False when the file cannot be read; the message channel says why, and what can
/// be done.
/// A listener may close the library meanwhile; it is kept in memory.
bool TakeFileFromDisk(std::shared_ptr<CLibrary> library, QString const& path,
                      wek::fwk::ICommandManager* manager);
/// Resolves a conflict for the library: the next save replaces what is on disk, also when the
/// changes have been undone. Does nothing to a file that has no unsaved changes.
bool OverwriteFileOnDisk(CLibrary& library, QString const& path);

} // namespace embeddedhost

#endif
