#ifndef EMBEDDEDHOST_LIBRARYWRITER_H
#define EMBEDDEDHOST_LIBRARYWRITER_H

#include "model/library.h"

#include <QString>

#include <vector>

namespace embeddedhost {

/// What a save came to.
struct SaveResult
{
    int writtenFiles = 0;
    /// One sentence for each file that was not written: which, and why.
    std::vector<QString> failures;
};

/// Writes the files: all are prepared beside the old ones before the first is put in place, or as
/// many at a time as the system lets a process open. A save that is interrupted leaves whole files
/// only. A file that somebody else has changed is left alone, and so is one that cannot be
/// written; what was to go into them stays modified.
SaveResult SaveFiles(CLibrary const& library, std::vector<LibraryFile*> const& files);

} // namespace embeddedhost

#endif
