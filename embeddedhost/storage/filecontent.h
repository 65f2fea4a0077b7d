#ifndef EMBEDDEDHOST_FILECONTENT_H
#define EMBEDDEDHOST_FILECONTENT_H

#include "model/libraryfile.h"

#include <QByteArray>

namespace embeddedhost {

/// What a save writes into the file: its entries, with two blanks a level and one newline at the
/// end. Of `oldBytes`, what is on disk now, it keeps byte for byte what the entries have too: it
/// may be written in another way, and hold numbers that no double holds.
QByteArray MakeFileContent(LibraryFile const& file, QByteArray const& oldBytes);

} // namespace embeddedhost

#endif
