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
    /// The display name.
    std::string name;
    /// The tags in the category "ApplicationTags", which the panel shows and searches, separated by
    /// ";".
    std::string tags = {};
    /// Free text, empty for none.
    std::string category = {};
    /// The ports and, of a compound, its graph.
    GraphBody body = {};

    /// A compound that only states a signature.
    bool isSignature = false;
    /// A compound that is a loop.
    bool isLoop = false;
    /// The uid of the signature that a compound implements; empty for none.
    std::string implements = {};
    /// Changes of the item are refused.
    bool isReadOnly = false;
    /// Tag strings of other categories.
    std::map<std::string, std::string> otherTags = {};
};

} // namespace embeddedhost

#endif
