#include "listeditems.h"

#include "itemkinds.h"

using namespace tarno::datamodel;

std::vector<ListedItem> ReadListedItems(ItemLibraryAccessor const& library)
{
    std::vector<ListedItem> items;
    for (nodebrowser::SItemKind const& kind : nodebrowser::GetItemKinds()) {
        if (kind.isSignature)
            continue;
        for (auto item = GetTOC(library).GetItems(kind.type); !item.IsDone(); item.Next()) {
            ItemID const id = item.GetCurrent().GetItemID();
            items.push_back({id, library.GetItemName(id, true, nullptr),
                             library.GetItemTags(id, "ApplicationTags"),
                             nodebrowser::FindItemKind(
                                 kind.type, Helpers::IsAbstractFunction(item.GetCurrent()))
                                 .icon});
        }
    }
    return items;
}
