#ifndef EMBEDDEDHOST_ITEMIDENTITY_H
#define EMBEDDEDHOST_ITEMIDENTITY_H

#include <datamodel.h>

#include <string>

namespace embeddedhost {
class CLibraryItem;
}

namespace tarno {
namespace datamodel {

/// What an ItemID stands for: one kind and uid. There is one of it for the whole process, so
/// that identifiers compare by address and stay good when items go and come back.
struct ItemIdentity
{
    ItemIdentity(char const* itemKind, std::string const& itemUid);
    ItemIdentity(ItemIdentity const&) = delete;
    ItemIdentity& operator=(ItemIdentity const&) = delete;

    /// The kind constant.
    char const* const kind;
    /// Kind and uid, "compound:UID"; tells the identity again.
    std::string const serialized;
    /// The uid within `serialized`.
    char const* const uid;
    /// The item in the open library that has the identity; null when there is none.
    embeddedhost::CLibraryItem* item = nullptr;
};

} // namespace datamodel
} // namespace tarno

namespace embeddedhost {

/// The identity of the kind and uid, made when it is asked for first; never freed.
tarno::datamodel::ItemIdentity& GetItemIdentity(char const* kind, std::string const& uid);

} // namespace embeddedhost

#endif
