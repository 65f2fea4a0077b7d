#include "nodebrowser_p.h"

#include "hostapi/sourcecontrol.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <string.h>

using namespace nodebrowser;
using namespace tarno::datamodel;

void CNodeBrowser::MarkItemListDirty()
{
    m_Private->isFresh = false;
    m_ItemListDirty = true;
    update();
}

void CNodeBrowser::ItemAdded(ItemAccessor& /*item*/)
{
    MarkItemListDirty();
}

void CNodeBrowser::ItemRemoved(ItemAccessor& /*item*/)
{
    MarkItemListDirty();
}

void CNodeBrowser::ItemNameChanged(ItemLibraryAccessor& /*library*/, ItemID const& /*id*/)
{
    MarkItemListDirty();
}

void CNodeBrowser::LibraryInvalidated(ItemLibraryAccessor& /*library*/)
{
    MarkItemListDirty();
}

void CNodeBrowser::ItemTagsChanged(ItemLibraryAccessor& /*library*/, ItemID const& changed,
                                   char const* category)
{
    // A copy: the identifier given may live in one of the registry's sets.
    ItemID const id = changed;
    m_Private->isFresh = false;
    if (!category || strcmp(category, kAppTagsCategory) != 0)
        return;
    // The list that is being made may have collected the tags from before.
    if (m_Private->IsRebuilding())
        MarkItemListDirty();
    if (!m_TagsRegistry.HasItem(id))
        return;
    QScopedValueRollback<bool> const use(m_Private->isListInUse);
    m_Private->isListInUse = true;
    // Neither the rows nor the screen follow: the tags count from the next filtering on. Reading
    // them may raise; the item has none then.
    m_Private->list.ForgetTags(id);
    m_Private->list.SetTags(id, m_ItemLibrary.GetItemTags(id, kAppTagsCategory));
}

void CNodeBrowser::ItemAccessStateChanged(ItemLibraryAccessor& /*library*/, ItemID const& id,
                                          long state)
{
    QScopedValueRollback<bool> const use(m_Private->isListInUse);
    m_Private->isListInUse = true;
    m_Private->isFresh = false;
    if (Item* const item = FindItem(id))
        item->setScState(static_cast<int>(state));
}

/// The first item that has the identifier now: one that is gone answers the null identifier,
/// whatever it was listed under.
CNodeBrowser::Item* CNodeBrowser::FindItem(ItemID const& id)
{
    auto const hasID = [&](Item const& item) {
        return item.GetItemID() == id;
    };
    ItemList::Row const row = m_Private->list.Find(id);
    std::vector<Item>& items = m_Private->IsRebuilding() ? m_Private->items : m_Items;
    // A subclass may have changed the items since they were listed.
    bool const isListed = m_Private->list.GetCount() == items.size();
    if (isListed && row < items.size() && hasID(items[row]))
        return &items[row];
    if (isListed && row == ItemList::kNoRow && !id.IsNull())
        return nullptr;
    auto const found = std::find_if(items.begin(), items.end(), hasID);
    return found == items.end() ? nullptr : &*found;
}

// The four notifications of transactions need no reaction: a rebuild waits for the next paint
// anyway.

void CNodeBrowser::OnBeginChanges(ItemLibraryAccessor& /*library*/) {}

void CNodeBrowser::OnEndChanges(ItemLibraryAccessor& /*library*/) {}

void CNodeBrowser::OnPreCommit(ItemLibraryAccessor& /*library*/, bool* /*cancel*/) {}

void CNodeBrowser::OnPostCommit(ItemLibraryAccessor& /*library*/) {}

void CNodeBrowser::OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* manager)
{
    bool isEnabled = false;
    if (manager && manager->HasRevisionControlEnabled())
        manager->GetRevisionControlEnabled(&isEnabled);
    SetSourceControlEnabled(isEnabled && ScsUtils::IsFileVersionControlActive());
}
