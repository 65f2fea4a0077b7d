#ifndef NODEBROWSER_ITEMTAGSREGISTRY_H
#define NODEBROWSER_ITEMTAGSREGISTRY_H

#include "hostapi/datamodel.h"
#include "nodebrowser_export.h"

#include <map>
#include <set>
#include <string>

namespace nodebrowser {
class ItemList;
}

/// Two-way index between library items and their tags. An item carries a tag exactly when the
/// tag lists the item, as long as an item is removed before it is added again.
///
/// Tags are 8-bit texts of the contract and differ in case; texts given are zero-terminated and,
/// unless a function says otherwise, not null. It is used on the GUI thread.
class NODEBROWSER_EXPORT ItemTagsRegistry
{
public:
    /// Empty, without a library.
    ItemTagsRegistry();
    /// @{

    /// Copies items, tags and the library; the copy goes its own way.
    ItemTagsRegistry(ItemTagsRegistry const& other);
    ItemTagsRegistry& operator=(ItemTagsRegistry const& other);
    /// @}
    ~ItemTagsRegistry();

    /// The library that AddItem reads from; the index itself is left as it is.
    void SetItemLibrary(tarno::datamodel::ItemLibraryAccessor const& library);

    /// Registers the item with the tag string that the library stores under the category. Does
    /// nothing for a null category or an empty string. An item that is registered already gets
    /// the new set, but stays listed under tags that it no longer has. What the host raises passes
    /// through, and nothing has changed then.
    void AddItem(tarno::datamodel::ItemID const& id, char const* category);
    /// Adds one tag; an empty one is ignored.
    void AddItemTag(tarno::datamodel::ItemID const& id, char const* tag);
    /// Takes the tag from the item and the item from the tag's list; an item left without tags
    /// goes out of the index. An item that is not registered stays so.
    void RemoveItemTag(tarno::datamodel::ItemID const& id, char const* tag);
    /// Takes the item out of the index, with all its tags.
    void RemoveItem(tarno::datamodel::ItemID const& id);

    /// The item is in the index.
    bool HasItem(tarno::datamodel::ItemID const& id) const;
    /// The tag lists the item.
    bool HasItemTag(tarno::datamodel::ItemID const& id, char const* tag) const;
    /// Valid until the registry changes; an empty set for an item that is not registered.
    std::set<std::string> const& GetItemTags(tarno::datamodel::ItemID const& id) const;
    /// Valid until the registry changes; an empty set for a tag that no item carries.
    std::set<tarno::datamodel::ItemID> const& GetTagItems(char const* tag) const;

    /// Forgets all items and tags, and keeps the library.
    void Clear();

private:
    friend class nodebrowser::ItemList;

    // For the panel's list, which knows the tags already. The revision stays.
    void Follow(nodebrowser::ItemList const& list);
    void Register(tarno::datamodel::ItemID const& id, std::set<std::string> const& tags);
    void Withdraw(tarno::datamodel::ItemID const& id);

    void WithdrawFromTag(tarno::datamodel::ItemID const& id, std::string const& tag);
    void StartChange();
    void FillMaps() const;

    tarno::datamodel::ItemLibraryAccessor m_ItemLibrary;
    mutable std::map<tarno::datamodel::ItemID, std::set<std::string>> m_ItemToTags;
    mutable std::map<std::string, std::set<tarno::datamodel::ItemID>> m_TagToItems;
    /// The list that the maps are filled from when they are asked for; null once they are. The
    /// panel searches the list itself, and maps of a large library take more memory than the list.
    mutable nodebrowser::ItemList const* m_Source;
    /// Counts the changes through the public operations, by which the list notices that the
    /// registry is not as it left it.
    unsigned long m_Revision;
};

#endif
