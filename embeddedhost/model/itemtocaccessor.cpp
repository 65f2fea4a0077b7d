#include "model/accessorcontext.h"
#include "model/library.h"
#include "model/libraryitem.h"

#include <datamodel.h>
#include <hostkit/itemiterator.h>

#include <utility>

namespace tarno {
namespace datamodel {

using embeddedhost::CLibrary;

namespace {

bool IsTocRegistration(UnspecifiedAccessor const& toc, eInterfaceID interfaceID,
                       ContextID contextID)
{
    return toc.IsValid() && interfaceID == kItemTOCNotificationInterface
           && contextID == toc.GetContextID();
}

} // namespace

Iterator<ItemAccessor> ItemTOCAccessor::GetItems(char const* kind) const
{
    std::vector<ItemHandle> handles;
    embeddedhost::KindIndex const index = embeddedhost::GetKindIndex(kind);
    CLibrary const* const library = FindLibrary(*this);
    if (library && index != embeddedhost::kNoKind) {
        auto const& items = library->GetItems(index);
        handles.reserve(items.size());
        for (auto const& item : items)
            handles.push_back(embeddedhost::GetItemHandle(item->GetIdentity()));
    }
    return hostkit::MakeItemIterator(*this, std::move(handles));
}

void ItemTOCAccessor::AddNotification(IItemTOCNotification* notification, eInterfaceID interfaceID,
                                      ContextID contextID) const
{
    if (IsTocRegistration(*this, interfaceID, contextID))
        GetContext()->GetNotifier().GetTocListeners().Add(notification);
}

void ItemTOCAccessor::RemoveNotification(IItemTOCNotification* notification,
                                         eInterfaceID interfaceID, ContextID contextID) const
{
    if (IsTocRegistration(*this, interfaceID, contextID))
        GetContext()->GetNotifier().GetTocListeners().Remove(notification);
}

ItemTOCAccessor GetTOC(ItemLibraryAccessor const& library)
{
    if (!FindLibrary(library))
        return ItemTOCAccessor();
    return ItemTOCAccessor(library.GetContext(), embeddedhost::kTocHandle);
}

} // namespace datamodel
} // namespace tarno
