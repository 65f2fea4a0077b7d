#ifndef EMBEDDEDHOST_LIBRARYWRITER_H
#define EMBEDDEDHOST_LIBRARYWRITER_H

#include "model/library.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace embeddedhost {

/// The result of a save.
struct SaveResult
{
    int writtenFiles = 0;
    /// One sentence for each file that was not written: which, and why.
    std::vector<QString> failures;
    /// One sentence for each file with another program's content that was kept beside.
    QStringList keptFiles = QStringList();
};

/// Writes the files: all are prepared in a staging folder and on the disk before the first is put
/// in place. A save that is interrupted leaves whole files only. A file that another program has
/// changed, even in the last moment, is left as it is, and so is one that cannot be written; the
/// objects of these files stay modified.
SaveResult SaveFiles(CLibrary const& library, std::vector<LibraryFile*> const& files);

} // namespace embeddedhost

#endif
