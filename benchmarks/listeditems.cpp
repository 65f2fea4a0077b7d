#include "listeditems.h"

#include "itemkinds.h"

using namespace tarno::datamodel;

std::vector<ListedItem> ReadListedItems(ItemLibraryAccessor const& library)
{
    char const* const kinds[] = {TarnoType::gPolymorphicSolver, TarnoType::gCompound,
                                 TarnoType::gGlobalConstant, TarnoType::gSolver, LibType::gType};
    std::vector<ListedItem> items;
    for (char const* const kind : kinds) {
        for (auto item = GetTOC(library).GetItems(kind); !item.IsDone(); item.Next()) {
            ItemID const id = item.GetCurrent().GetItemID();
            items.push_back({id, library.GetItemName(id, true, nullptr),
                             library.GetItemTags(id, "ApplicationTags"),
                             GetKindIcon(kind, Helpers::IsAbstractFunction(item.GetCurrent()))});
        }
    }
    return items;
}
