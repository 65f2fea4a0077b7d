#ifndef EMBEDDEDHOST_PARSEDTEXT_H
#define EMBEDDEDHOST_PARSEDTEXT_H

#include "model/itemobject.h"

#include <QString>

#include <vector>

namespace embeddedhost {

/// An object nests up to this many levels, itself the first: {"nodes": [{"position": [0, 0]}]}
/// has four. An array around the objects of a file does not count. It limits the
/// recursion of comparing, copying, writing and destroying trees.
constexpr int kMaxObjectDepth = 100;

/// The text of a file as a tree, or why it is not one.
struct ParsedText
{
    /// Any value; callers check that it is an object, or an array of them.
    ItemObject content;
    /// The place of the fault, "line 3, column 7".
    QString faultPlace;
    /// A sentence; empty when the text was read.
    QString fault;
    /// Keys that an object has more than once, as `object 3, key "tags.colour"`, the first
    /// hundred of them. The last value counts.
    std::vector<QString> repeatedKeys;
};

} // namespace embeddedhost

#endif
