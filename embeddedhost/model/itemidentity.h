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

/// What an ItemID stands for: one kind and uid. There is one of it for the whole process, so
/// that identifiers compare by address and stay good when items go and come back.
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

/// The identity of the kind and uid, made when it is asked for first; never freed.
tarno::datamodel::ItemIdentity& GetItemIdentity(char const* kind, std::string_view uid);

/// The item of the open library that has the uid: a well-formed one in either case, another text
/// exactly. Null for none.
CLibraryItem* FindItemByUid(char const* uid);

} // namespace embeddedhost

#endif
