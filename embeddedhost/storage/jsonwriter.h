#ifndef EMBEDDEDHOST_JSONWRITER_H
#define EMBEDDEDHOST_JSONWRITER_H

#include "model/libraryfile.h"

#include <QByteArray>

namespace embeddedhost {

/// The bytes that a save writes: the file's entries, indented by two blanks a level, with one
/// newline at the end. Values that `oldBytes`, the file on disk, already has are copied byte for
/// byte, since they may be laid out in another way, or be numbers that no double can hold.
QByteArray WriteJson(LibraryFile const& file, QByteArray const& oldBytes);

} // namespace embeddedhost

#endif
