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

/// Writes the files, a few hundred at a time: these are prepared beside the old ones before the
/// first of them is put in place. A save that is interrupted leaves whole files only. A file that somebody else has
/// changed is left alone, and so is one that cannot be written; what was to go into them stays
/// modified.
SaveResult SaveFiles(CLibrary const& library, std::vector<LibraryFile*> const& files);

} // namespace embeddedhost

#endif
