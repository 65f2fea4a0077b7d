#include "nodebrowser.h"

#include "itemkinds.h"
#include "revisioncontrol.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <numeric>
#include <strings.h>

using namespace tarno::datamodel;

namespace {

/// Marks an item whose source-control state has been asked for and is not there yet.
int const kWaitingForState = 0x400000;

/// The application's two components; what lives in their data sources comes with the application.
struct SComponents
{
    explicit SComponents(qorm::IRevisionControlUIHelper& helper)
        : first(helper.FindObject(qorm::DbObjectId("D2BA853A-8668-704A-A121-1F7DE917B664")))
        , second(helper.FindObject(qorm::DbObjectId("34F315D3-58CF-4019-9BE3-381FCED0E983")))
    {
    }

    bool Own(qorm::QormPtr<qorm::IDataSource> const& source) const
    {
        return (first.IsValid() && source == first.GetDataSource())
               || (second.IsValid() && source == second.GetDataSource());
    }

    qorm::QormHandle<qorm::IDbObject> const first;
    qorm::QormHandle<qorm::IDbObject> const second;
};

/// Looked up once a process; a component that is missing then stays missing.
SComponents const& GetComponents(qorm::IRevisionControlUIHelper& helper)
{
    static SComponents const components(helper);
    return components;
}

/// Orders positions of the item list by name, ignoring ASCII case. Items whose names differ in
/// nothing else have no order.
struct SItemAccessorPredicate
{
    std::vector<std::string> const& names;

    bool operator()(std::size_t a, std::size_t b) const
    {
        return strcasecmp(names[a].c_str(), names[b].c_str()) < 0;
    }
};

bool HasValue(ItemAccessor& item, char const* name)
{
    item.Revalidate();
    return item.GetValue(name).IsValid();
}

/// Nested items and specialisations are not listed.
bool IsListed(char const* kind, ItemAccessor& item)
{
    return Helpers::IsValidGraphItemType(kind, item) && !HasValue(item, "Parent")
           && !HasValue(item, "Specializes");
}

} // namespace

CNodeBrowser::Item::Item(CNodeBrowser* browser, ItemAccessor& item, int scState,
                         ItemID const& extraID)
    : m_Browser(browser)
    , m_Accessor(item)
    , m_ScState(0)
    , m_HasScState(false)
    , m_IsFactory(false)
    , m_IsReadOnlySource(false)
    , m_ExtraID(extraID)
{
    ItemID const id = GetItemID();
    ReadSourceFlags(id);
    ChooseIcon(id.GetType(), scState);
}

void CNodeBrowser::Item::ReadSourceFlags(ItemID const& id)
{
    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    if (!helper || !qorm::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(id)))
        return;
    SComponents const& components = GetComponents(*helper);
    qorm::QormHandle<qorm::IDbObject> const object = FindDbObject(helper, id);
    if (!object.IsValid())
        return;

    qorm::QormPtr<qorm::IDataSource> const source = object.GetDataSource();
    m_IsReadOnlySource = source->GetAccessMode() == qorm::IDataSource::kReadOnlyAccess;
    m_IsFactory = components.Own(source);
    if (!m_IsFactory || !m_IsReadOnlySource)
        ReadTypeAssetFlags(object);
}

void CNodeBrowser::Item::ReadTypeAssetFlags(qorm::QormHandle<qorm::IDbObject> const& object)
{
    qorm::QormHandle<qorm::ITypeAsset> asset;
    asset.AssignCast(object);
    if (!asset.IsValid() || !asset.IsLoaded())
        return;
    // One answer feeds both flags: a locked type asset is shown like a factory item.
    bool const isLocked = asset->IsReadOnly();
    m_IsReadOnlySource = m_IsReadOnlySource || isLocked;
    m_IsFactory = m_IsFactory || isLocked;
}

void CNodeBrowser::Item::ChooseIcon(char const* type, int scState)
{
    bool const isCompound = type == TarnoType::gCompound;
    bool const isSignature = isCompound && Helpers::IsAbstractFunction(m_Accessor);
    if (isCompound)
        m_ScState = scState;
    if (char const* const resource = GetKindIcon(type, isSignature))
        setIcon(m_Browser->m_ItemIcons.GetResource(QLatin1String(resource)));
    m_HasScState = isCompound && !m_IsReadOnlySource;
}

void CNodeBrowser::Item::setIcon(QPixmap const& icon)
{
    m_Icon = icon;
    UpdateIcon();
}

void CNodeBrowser::Item::setScState(int state)
{
    if (state == m_ScState)
        return;
    m_ScState = state;
    UpdateIcon();
}

void CNodeBrowser::Item::UpdateIcon()
{
    ItemIcons::Marks marks;
    marks.isFactory = m_IsFactory;
    marks.isReadOnlySource = m_IsReadOnlySource;
    marks.scState = m_ScState;
    marks.isStateShown =
        m_Browser->m_SourceControlEnabled && ScsUtils::IsFileVersionControlActive();
    m_DisplayIcon = m_Browser->m_ItemIcons.GetDisplayIcon(m_Icon, marks);
    m_Browser->update();
}

ItemID CNodeBrowser::Item::GetItemID() const
{
    return AskItemID(m_Accessor);
}

void CNodeBrowser::BuildAllItemList(std::list<qorm::QormHandle<qorm::IDbObject> >* stateRequests)
{
    if (m_IsListInUse) {
        // The host replaced the library when it was asked about an item.
        MarkItemListDirty();
        return;
    }
    QScopedValueRollback<bool> const use(m_IsListInUse);
    m_IsListInUse = true;
    m_Items.clear();
    m_TagsRegistry.Clear();
    m_ItemIcons.Clear();
    m_ItemPositions.Clear();
    m_SearchIndex.Clear();
    if (!m_ItemTOC.IsValid()) {
        m_VisibleListDirty = true;
        return;
    }

    // An exception of the host leaves the items made so far; rows know how to do without.
    CollectItems(stateRequests);
    std::vector<std::string> names = FetchNames();
    SortItems(names);
    IndexItems(names);
    m_VisibleListDirty = true;
    update();
}

void CNodeBrowser::CollectItems(std::list<qorm::QormHandle<qorm::IDbObject> >* stateRequests)
{
    char const* const kinds[] = {TarnoType::gPolymorphicSolver, TarnoType::gCompound,
                                 TarnoType::gGlobalConstant, TarnoType::gSolver, LibType::gType};
    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    for (char const* const kind : kinds) {
        Iterator<ItemAccessor> items = m_ItemTOC.GetItems(kind);
        for (; !items.IsDone(); items.Next()) {
            if (!IsListed(kind, items.GetCurrent()))
                continue;
            AddItem(items.GetCurrent());
            if (helper && stateRequests && m_Items.back().m_HasScState)
                RequestState(m_Items.back(), helper, *stateRequests);
        }
    }
}

void CNodeBrowser::AddItem(ItemAccessor& accessor)
{
    m_Items.push_back(Item(this, accessor, 0, ItemID()));
    ItemID const id = m_Items.back().GetItemID();
    m_TagsRegistry.AddItem(id, kAppTagsCategory);
    m_TagsRegistry.AddItemTag(id, GetKindTag(id.GetType()));
}

void CNodeBrowser::RequestState(Item& item, qorm::IRevisionControlUIHelper* helper,
                                std::list<qorm::QormHandle<qorm::IDbObject> >& stateRequests)
{
    ItemID const id = item.GetItemID();
    if (!qorm::DbObjectId::IsUID(ItemIDUnlock::GetItemIDUID(id)))
        return;
    item.setScState(kWaitingForState);
    stateRequests.push_back(FindDbObject(helper, id));
}

std::vector<std::string> CNodeBrowser::FetchNames() const
{
    std::vector<std::string> names;
    names.reserve(m_Items.size());
    for (Item const& item : m_Items)
        names.push_back(m_ItemLibrary.GetItemName(item.GetItemID(), true, nullptr));
    return names;
}

void CNodeBrowser::SortItems(std::vector<std::string>& names)
{
    std::vector<std::size_t> order(m_Items.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::sort(order.begin(), order.end(), SItemAccessorPredicate{names});

    std::vector<Item> sortedItems;
    std::vector<std::string> sortedNames;
    sortedItems.reserve(order.size());
    sortedNames.reserve(order.size());
    for (std::size_t const position : order) {
        sortedItems.push_back(std::move(m_Items[position]));
        sortedNames.push_back(std::move(names[position]));
    }
    m_Items.swap(sortedItems);
    names.swap(sortedNames);
    m_ItemPositions.Clear();
}

void CNodeBrowser::IndexItems(std::vector<std::string> const& names)
{
    m_SearchIndex.Clear();
    for (std::size_t position = 0; position < m_Items.size(); ++position) {
        Item& item = m_Items[position];
        m_SearchIndex.Append(SearchIndex::ToSearchName(names[position]),
                             m_TagsRegistry.GetItemTags(item.GetItemID()),
                             GetKindFilters(item.m_Accessor));
    }
}

CNodeBrowser::Item const* CNodeBrowser::ItemAtRow(unsigned long row) const
{
    if (row >= m_VisibleItems.size() || m_VisibleItems[row] >= m_Items.size())
        return nullptr;
    return &m_Items[m_VisibleItems[row]];
}

ItemAccessor CNodeBrowser::AccessorAtRow(unsigned long row) const
{
    Item const* const item = ItemAtRow(row);
    return item ? item->m_Accessor : ItemAccessor();
}

ItemID CNodeBrowser::AskItemID(ItemAccessor const& item)
{
    if (!item.IsValid())
        return ItemID();
    item.Revalidate();
    return item.GetItemID();
}

ItemPositions const& CNodeBrowser::Positions()
{
    if (m_ItemPositions.GetCount() != m_Items.size()) {
        std::vector<ItemID> ids;
        ids.reserve(m_Items.size());
        for (Item const& item : m_Items)
            ids.push_back(item.GetItemID());
        m_ItemPositions.Assign(ids);
    }
    return m_ItemPositions;
}
