#include "itemtagsregistry.h"

#include "itemlist.h"
#include "stringutils.h"

#include <utility>

using tarno::datamodel::ItemID;
using tarno::datamodel::ItemLibraryAccessor;

ItemTagsRegistry::ItemTagsRegistry()
    : m_Source(nullptr)
    , m_Revision(0)
{}

ItemTagsRegistry::ItemTagsRegistry(ItemTagsRegistry const& other)
    : ItemTagsRegistry()
{
    *this = other;
}

/// The copy does not follow the list of the other one.
ItemTagsRegistry& ItemTagsRegistry::operator=(ItemTagsRegistry const& other)
{
    if (this == &other)
        return *this;
    other.FillMaps();
    m_Source = nullptr;
    ++m_Revision;
    m_ItemLibrary = other.m_ItemLibrary;
    m_ItemToTags = other.m_ItemToTags;
    m_TagToItems = other.m_TagToItems;
    return *this;
}

ItemTagsRegistry::~ItemTagsRegistry() {}

void ItemTagsRegistry::SetItemLibrary(ItemLibraryAccessor const& library)
{
    m_ItemLibrary = library;
}

void ItemTagsRegistry::Follow(nodebrowser::ItemList const& list)
{
    m_ItemToTags.clear();
    m_TagToItems.clear();
    m_Source = &list;
}

void ItemTagsRegistry::FillMaps() const
{
    if (!m_Source)
        return;
    m_Source->FillRegistry(m_ItemToTags, m_TagToItems);
    m_Source = nullptr;
}

void ItemTagsRegistry::StartChange()
{
    FillMaps();
    ++m_Revision;
}

void ItemTagsRegistry::AddItem(ItemID const& id, char const* category)
{
    if (!category)
        return;
    std::string const text = m_ItemLibrary.GetItemTags(id, category);
    if (text.empty())
        return;

    StartChange();
    std::set<std::string> tags;
    SplitString(text, ";", tags);
    // Tags that the item had before keep listing it: callers remove an item first.
    Register(id, tags);
}

void ItemTagsRegistry::Register(ItemID const& id, std::set<std::string> const& tags)
{
    if (m_Source)
        return;
    m_ItemToTags[id] = tags;
    for (std::string const& tag : tags)
        m_TagToItems[tag].insert(id);
}

void ItemTagsRegistry::AddItemTag(ItemID const& id, char const* tag)
{
    std::string const text = tag;
    if (text.empty())
        return;
    StartChange();
    m_ItemToTags[id].insert(text);
    m_TagToItems[text].insert(id);
}

void ItemTagsRegistry::RemoveItemTag(ItemID const& id, char const* tag)
{
    StartChange();
    std::string const text = tag;
    auto const item = m_ItemToTags.find(id);
    if (item != m_ItemToTags.end()) {
        item->second.erase(text);
        if (item->second.empty())
            m_ItemToTags.erase(item);
    }
    WithdrawFromTag(id, text);
}

void ItemTagsRegistry::RemoveItem(ItemID const& id)
{
    StartChange();
    Withdraw(id);
}

void ItemTagsRegistry::Withdraw(ItemID const& id)
{
    auto const item = m_ItemToTags.find(id);
    if (item == m_ItemToTags.end())
        return;
    // A copy: the identifier given may live in one of the sets that it leaves.
    ItemID const key = id;
    for (std::string const& tag : item->second)
        WithdrawFromTag(key, tag);
    m_ItemToTags.erase(item);
}

void ItemTagsRegistry::WithdrawFromTag(ItemID const& id, std::string const& tag)
{
    auto const items = m_TagToItems.find(tag);
    if (items == m_TagToItems.end())
        return;
    items->second.erase(id);
    if (items->second.empty())
        m_TagToItems.erase(items);
}

bool ItemTagsRegistry::HasItem(ItemID const& id) const
{
    if (m_Source)
        return m_Source->IsRegistered(id);
    return m_ItemToTags.find(id) != m_ItemToTags.end();
}

bool ItemTagsRegistry::HasItemTag(ItemID const& id, char const* tag) const
{
    return GetTagItems(tag).count(id) != 0;
}

std::set<std::string> const& ItemTagsRegistry::GetItemTags(ItemID const& id) const
{
    static std::set<std::string> const noTags;
    FillMaps();
    auto const item = m_ItemToTags.find(id);
    return item == m_ItemToTags.end() ? noTags : item->second;
}

std::set<ItemID> const& ItemTagsRegistry::GetTagItems(char const* tag) const
{
    static std::set<ItemID> const noItems;
    FillMaps();
    auto const items = m_TagToItems.find(tag);
    return items == m_TagToItems.end() ? noItems : items->second;
}

void ItemTagsRegistry::Clear()
{
    m_Source = nullptr;
    ++m_Revision;
    m_ItemToTags.clear();
    m_TagToItems.clear();
}
