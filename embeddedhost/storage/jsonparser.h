#ifndef EMBEDDEDHOST_JSONPARSER_H
#define EMBEDDEDHOST_JSONPARSER_H

#include "storage/objectformat.h"

namespace embeddedhost {

/// An object nests up to this many levels, itself the first: {"nodes": [{"position": [0, 0]}]}
/// has four. An array around the objects of a file does not count. It limits the
/// recursion of comparing, copying, writing and destroying trees.
constexpr int kMaxJsonDepth = 100;

/// `levelsAround` is the number of levels that the text has around each object.
ParsedText ParseJson(QByteArray const& text, int levelsAround = 0);

} // namespace embeddedhost

#endif
