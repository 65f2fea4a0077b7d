// The library, its table of contents, and what can be asked of an item.

#include "parts.h"

#include <hostkit/itemiterator.h>

#include <strings.h>

namespace tarno {
namespace datamodel {

// No part is nested in another or a special case of one.
CSimpleValue ItemAccessor::GetValue(char const* /*name*/) const
{
    return CSimpleValue();
}

std::string ItemAccessor::GetName(bool /*display*/, char const* /*reserved*/) const
{
    Part const* const part = PartOf(*this);
    return part ? part->name : std::string();
}

Iterator<ItemAccessor> ItemTOCAccessor::GetItems(char const* kind) const
{
    std::vector<ItemHandle> handles;
    for (std::size_t i = 0; IsValid() && i < GetParts().size(); ++i) {
        if (GetParts()[i].kind == kind)
            handles.push_back(kFirstPartHandle + i);
    }
    return hostkit::MakeItemIterator(*this, handles);
}

std::string ItemLibraryAccessor::GetItemName(ItemID const& id, bool, char const*) const
{
    Part const* const part = ItemIDUnlock::GetIdentity(id);
    return IsValid() && part ? part->name : std::string();
}

bool ItemLibraryAccessor::ItemIsReadOnly(ItemID const& id) const
{
    return IsValid() && !id.IsNull();
}

UnspecifiedAccessor ItemLibraryAccessor::GetModel(ItemID const& id, std::string* error) const
{
    for (std::size_t i = 0; IsValid() && i < GetParts().size(); ++i) {
        if (ItemIDUnlock::GetIdentity(id) == &GetParts()[i])
            return UnspecifiedAccessor(GetContext(), kFirstPartHandle + i);
    }
    if (error)
        *error = "there is no such part";
    return UnspecifiedAccessor();
}

std::string ItemLibraryAccessor::GetItemTags(ItemID const& id, char const* category) const
{
    Part const* const part = ItemIDUnlock::GetIdentity(id);
    bool const isKnown = IsValid() && part && std::string(category) == "ApplicationTags";
    return isKnown ? part->tags : std::string();
}

ItemTOCAccessor GetTOC(ItemLibraryAccessor const& library)
{
    return library.IsValid() ? ItemTOCAccessor(library.GetContext(), kTOCHandle)
                             : ItemTOCAccessor();
}

bool IsNameInNodeLibraryHierarchy(ItemLibraryAccessor const& library, char const* name)
{
    for (std::size_t i = 0; library.IsValid() && i < GetParts().size(); ++i) {
        if (strcasecmp(GetParts()[i].name.c_str(), name) == 0)
            return true;
    }
    return false;
}

bool Helpers::IsValidGraphItemType(char const* /*kind*/, ItemAccessor& item)
{
    return item.IsValid();
}
bool Helpers::IsAbstractFunction(ItemAccessor& /*item*/)
{
    return false;
}

} // namespace datamodel
} // namespace tarno
