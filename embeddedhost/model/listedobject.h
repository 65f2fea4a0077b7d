#ifndef EMBEDDEDHOST_LISTEDOBJECT_H
#define EMBEDDEDHOST_LISTEDOBJECT_H

#include "model/itemkeys.h"
#include "model/itemobject.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace embeddedhost {

/// The known members of an item's object, except for its graph. Texts are UTF-8 and belong to the
/// source that the object was read from; members that are absent or of the wrong type are empty.
struct ListedObject
{
    /// The kind constant.
    char const* kind = nullptr;
    std::string_view uid;
    std::string_view name;
    std::string_view category;
    std::string_view parent;
    std::string_view specializes;
    std::string_view implements;
    /// Tag strings by category, in the order of the object.
    std::vector<std::pair<std::string_view, std::string_view>> tags;
    bool isSignature = false;
    bool isLoop = false;
    bool isLocked = false;
};

struct TextMember
{
    /// Zero-terminated. With its length, which makes the lister's comparisons cheap.
    std::string_view key;
    std::string_view ListedObject::*text;
};

struct FlagMember
{
    std::string_view key;
    bool ListedObject::*flag;
};

// Everything that reads or checks objects goes by these two tables: a new text or flag is a row.
// Kind and tags, which have forms of their own, are read apart.

constexpr std::array<TextMember, 6> kTextMembers = {{
    {Keys::kUid, &ListedObject::uid},
    {Keys::kName, &ListedObject::name},
    {Keys::kCategory, &ListedObject::category},
    {Keys::kImplements, &ListedObject::implements},
    {Keys::kParent, &ListedObject::parent},
    {Keys::kSpecializes, &ListedObject::specializes},
}};

constexpr std::array<FlagMember, 3> kFlagMembers = {{
    {Keys::kSignature, &ListedObject::isSignature},
    {Keys::kLoop, &ListedObject::isLoop},
    {Keys::kReadOnly, &ListedObject::isLocked},
}};

/// Refers to the texts of the object.
ListedObject ListObject(ItemObject const& object);

} // namespace embeddedhost

#endif
