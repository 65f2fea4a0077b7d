#include "nodebrowser.h"

#include "hostapi/sourcecontrol.h"
#include "itemkinds.h"

#include <QScopedValueRollback>

#include <string.h>

using namespace tarno::datamodel;

void CNodeBrowser::MarkItemListDirty()
{
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

void CNodeBrowser::ItemTagsChanged(ItemLibraryAccessor& /*library*/, ItemID const& id,
                                   char const* category)
{
    if (!category || strcmp(category, kAppTagsCategory) != 0 || !m_TagsRegistry.HasItem(id))
        return;
    QScopedValueRollback<bool> const use(m_IsListInUse);
    m_IsListInUse = true;
    // Neither the rows nor the screen follow: the tags count from the next filtering on.
    m_TagsRegistry.RemoveItem(id);
    // Reading the tags may raise: the index must not keep what the registry dropped.
    IndexTags(id);
    m_TagsRegistry.AddItem(id, kAppTagsCategory);
    m_TagsRegistry.AddItemTag(id, GetKindTag(id.GetType()));
    IndexTags(id);
}

/// Brings the search index up to the registry for one item.
void CNodeBrowser::IndexTags(ItemID const& id)
{
    if (m_SearchIndex.GetCount() != m_Items.size())
        return;
    auto const positions = Positions().Find(id);
    for (auto position = positions.first; position != positions.second; ++position)
        m_SearchIndex.SetTags(position->second, m_TagsRegistry.GetItemTags(id));
}

void CNodeBrowser::ItemAccessStateChanged(ItemLibraryAccessor& /*library*/, ItemID const& id,
                                          long state)
{
    QScopedValueRollback<bool> const use(m_IsListInUse);
    m_IsListInUse = true;
    auto const positions = Positions().Find(id);
    if (positions.first != positions.second)
        m_Items[positions.first->second].setScState(static_cast<int>(state));
}

// The four sides of a transaction say nothing new: rebuilding waits for the next paint anyway.

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
