#ifndef EMBEDDEDHOST_ITEMIDENTITY_H
#define EMBEDDEDHOST_ITEMIDENTITY_H

#include <datamodel.h>

#include <string>
#include <string_view>

namespace embeddedhost {
class CLibraryItem;
}

namespace tarno {
namespace datamodel {

/// The kind and uid behind an ItemID. There is one instance for each pair in the process, so that
/// identifiers compare by address and stay valid when items are removed and added again.
struct ItemIdentity
{
    ItemIdentity(char const* itemKind, char const* itemUid, bool isWellFormed);
    ItemIdentity(ItemIdentity const&) = delete;
    ItemIdentity& operator=(ItemIdentity const&) = delete;

    /// Kind and uid, "compound:UID"; tells the identity again.
    std::string Serialize() const;

    /// The kind constant.
    char const* const kind;
    /// Never freed.
    char const* const uid;
    /// The item in the open library that has the identity; null when there is none.
    embeddedhost::CLibraryItem* item = nullptr;
    /// The uid is a well-formed UID, so that the item is an object of the database.
    bool const hasUid;
};

} // namespace datamodel
} // namespace tarno

namespace embeddedhost {

/// The identity of the kind and uid, made by the first call; never freed.
tarno::datamodel::ItemIdentity& GetItemIdentity(char const* kind, std::string_view uid);

/// The item of the open library with the uid, compared ignoring case if it is well-formed. Null for
/// none.
CLibraryItem* FindItemByUid(char const* uid);

} // namespace embeddedhost

#endif
