#ifndef EMBEDDEDHOST_FILECONFLICT_H
#define EMBEDDEDHOST_FILECONFLICT_H

#include "model/library.h"

#include <framework.h>

#include <QString>

#include <memory>

namespace embeddedhost {

/// Resolves a conflict in favour of the file on disk, which may be gone; undo brings our changes
/// back. False if the file cannot be read; the message channel has the reason and a remedy.
/// A listener may close the library meanwhile; it is kept in memory.
bool TakeFileFromDisk(std::shared_ptr<CLibrary> library, QString const& path,
                      wek::fwk::ICommandManager* manager);
/// Resolves a conflict in favour of the library: the next save replaces the file on disk, also
/// if the changes have been undone. Does nothing to a file that has no unsaved changes.
bool OverwriteFileOnDisk(CLibrary& library, QString const& path);

} // namespace embeddedhost

#endif
