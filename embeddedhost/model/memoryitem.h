#ifndef EMBEDDEDHOST_MEMORYITEM_H
#define EMBEDDEDHOST_MEMORYITEM_H

#include "graphbody.h"

#include <map>
#include <string>
#include <vector>

namespace embeddedhost {

/// One item of a library that the program keeps itself. Texts are UTF-8.
struct MemoryItem
{
    /// The text of a kind constant: "solver", "polymorphicSolver", "compound", "constant", "type".
    std::string kind;
    /// A text that no other item has; well-formed UIDs are the same in either case. Items with
    /// such a UID have a database object.
    std::string uid;
    std::string name;
    /// The tags in the category "ApplicationTags", which the panel shows and searches, separated by
    /// ";".
    std::string tags = {};
    std::string category = {};
    /// The ports and, of a compound, its graph.
    GraphBody body = {};

    /// For compounds only: it only states a signature; it is a loop; the uid of the signature that
    /// it implements.
    bool isSignature = false;
    bool isLoop = false;
    std::string implements = {};
    /// Changes of the item are refused.
    bool isReadOnly = false;
    /// Tag strings of other categories.
    std::map<std::string, std::string> otherTags = {};
};

} // namespace embeddedhost

#endif
