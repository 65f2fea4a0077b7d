// The library, its table of contents, and what can be asked of an item.

#include "parts.h"

#include <strings.h>

namespace tarno {
namespace datamodel {

CSimpleValue::CSimpleValue()
    : m_IsValid(false)
{}
CSimpleValue::CSimpleValue(std::string const& text)
    : m_IsValid(true)
    , m_Text(text)
{}
bool CSimpleValue::IsValid() const
{
    return m_IsValid;
}
std::string const& CSimpleValue::GetText() const
{
    return m_Text;
}

ItemAccessor::ItemAccessor()
    : UnspecifiedAccessor(kItemInterface)
{}
ItemAccessor::ItemAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemInterface, context, handle)
{}

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

template <class T>
struct Iterator<T>::State
{
    std::vector<T> items;
    std::size_t position = 0;
};

template <class T>
Iterator<T>::Iterator(std::shared_ptr<State> const& state)
    : m_State(state)
{}
template <class T>
Iterator<T>::Iterator(Iterator const& other) = default;
template <class T>
Iterator<T>::~Iterator() = default;
template <class T>
bool Iterator<T>::IsDone() const
{
    return m_State->position == m_State->items.size();
}
template <class T>
void Iterator<T>::Next()
{
    ++m_State->position;
}
template <class T>
T& Iterator<T>::GetCurrent() const
{
    return m_State->items.at(m_State->position);
}

template class Iterator<ItemAccessor>;

ItemTOCAccessor::ItemTOCAccessor()
    : UnspecifiedAccessor(kItemTOCInterface)
{}
ItemTOCAccessor::ItemTOCAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemTOCInterface, context, handle)
{}

Iterator<ItemAccessor> ItemTOCAccessor::GetItems(char const* kind) const
{
    auto const state = std::make_shared<Iterator<ItemAccessor>::State>();
    for (std::size_t i = 0; IsValid() && i < GetParts().size(); ++i) {
        if (GetParts()[i].kind == kind)
            state->items.push_back(ItemAccessor(GetContext(), kFirstPartHandle + i));
    }
    return Iterator<ItemAccessor>(state);
}

// The parts never change, so there is nothing to tell listeners.
void ItemTOCAccessor::AddNotification(IItemTOCNotification*, eInterfaceID, ContextID) const {}
void ItemTOCAccessor::RemoveNotification(IItemTOCNotification*, eInterfaceID, ContextID) const {}
void ItemLibraryAccessor::AddNotification(IItemLibraryNotification*, eInterfaceID, ContextID) const
{}
void ItemLibraryAccessor::RemoveNotification(IItemLibraryNotification*, eInterfaceID,
                                             ContextID) const
{}

ItemLibraryAccessor::ItemLibraryAccessor()
    : UnspecifiedAccessor(kItemLibraryInterface)
{}
ItemLibraryAccessor::ItemLibraryAccessor(AccessorContext* context, ItemHandle handle)
    : UnspecifiedAccessor(kItemLibraryInterface, context, handle)
{}

std::string ItemLibraryAccessor::GetItemName(ItemID const& id, bool, char const*) const
{
    Part const* const part = ItemIDUnlock::GetIdentity(id);
    return IsValid() && part ? part->name : std::string();
}

bool ItemLibraryAccessor::ItemIsReadOnly(ItemID const& /*id*/) const
{
    return IsValid();
}
bool ItemLibraryAccessor::ItemIsModified(ItemID const& /*id*/) const
{
    return false;
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
