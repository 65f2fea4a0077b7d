#include "model/accessorcontext.h"
#include "model/library.h"
#include "model/libraryitem.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using embeddedhost::CLibraryItem;

namespace {

CLibraryItem const* FindItem(UnspecifiedAccessor const& library, ItemID const& id)
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    AccessorContext const* const context = library.GetContext();
    return identity && context && context->GetLibrary() ? identity->item : nullptr;
}

bool IsLibraryRegistration(UnspecifiedAccessor const& library, eInterfaceID interfaceID,
                           ContextID contextID)
{
    return library.IsValid() && interfaceID == kItemLibraryNotificationInterface
           && contextID == library.GetContextID();
}

} // namespace

std::string ItemLibraryAccessor::GetItemName(ItemID const& id, bool, char const*) const
{
    CLibraryItem const* const item = FindItem(*this, id);
    return item ? std::string(item->GetNameView()) : std::string();
}

bool ItemLibraryAccessor::ItemIsReadOnly(ItemID const& id) const
{
    CLibraryItem const* const item = FindItem(*this, id);
    return item && item->IsReadOnly();
}

bool ItemLibraryAccessor::ItemIsModified(ItemID const& id) const
{
    CLibraryItem const* const item = FindItem(*this, id);
    return item && item->IsModified();
}

UnspecifiedAccessor ItemLibraryAccessor::GetModel(ItemID const& id, std::string* error) const
{
    CLibraryItem const* const item = FindItem(*this, id);
    if (item)
        return UnspecifiedAccessor(GetContext(), embeddedhost::GetItemHandle(item->GetIdentity()));
    if (error) {
        *error =
            id.IsNull() ? "No item was named." : "The library has no item " + id.Serialize() + ".";
    }
    return UnspecifiedAccessor();
}

std::string ItemLibraryAccessor::GetItemTags(ItemID const& id, char const* category) const
{
    CLibraryItem const* const item = FindItem(*this, id);
    return item && category ? item->GetTags(category) : std::string();
}

void ItemLibraryAccessor::AddNotification(IItemLibraryNotification* notification,
                                          eInterfaceID interfaceID, ContextID contextID) const
{
    if (IsLibraryRegistration(*this, interfaceID, contextID))
        GetContext()->GetNotifier().GetLibraryListeners().Add(notification);
}

void ItemLibraryAccessor::RemoveNotification(IItemLibraryNotification* notification,
                                             eInterfaceID interfaceID, ContextID contextID) const
{
    if (IsLibraryRegistration(*this, interfaceID, contextID))
        GetContext()->GetNotifier().GetLibraryListeners().Remove(notification);
}

} // namespace datamodel
} // namespace tarno
