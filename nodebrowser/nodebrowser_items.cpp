#include "nodebrowser_p.h"

#include "hostservices.h"

#include <QScopedValueRollback>

#include <utility>

namespace nodebrowser {

/// What an item takes from its data source.
struct SSourceFlags
{
    qorm::QormPtr<qorm::IDataSource> source;
    bool isReadOnly;
    /// One of the application's components lives there.
    bool isFactory;
};

} // namespace nodebrowser

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

std::size_t const kSourcesKept = 8;
/// How many items ahead memory is prefetched: the host's order is not that of the rows.
std::uint32_t const kItemsAhead = 8;

/// The application's two components; what lives in their data sources comes with the application.
struct SComponents
{
    explicit SComponents(qorm::IRevisionControlUIHelper& helper)
        : first(helper.FindObject(qorm::DbObjectId("D2BA853A-8668-704A-A121-1F7DE917B664")))
        , second(helper.FindObject(qorm::DbObjectId("34F315D3-58CF-4019-9BE3-381FCED0E983")))
    {}

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

/// What an item takes from its data source. The host is asked about few of them: most items live
/// where others do. `asked` keeps the answers; a null source raises.
SSourceFlags const& AskSource(qorm::QormPtr<qorm::IDataSource> const& source,
                              SComponents const& components, std::vector<SSourceFlags>& asked)
{
    for (SSourceFlags const& flags : asked) {
        if (flags.source == source)
            return flags;
    }
    bool const isReadOnly = source->GetAccessMode() == qorm::IDataSource::kReadOnlyAccess;
    SSourceFlags const flags = {source, isReadOnly, components.Own(source)};
    // Comparing with more of them would take longer than asking.
    if (asked.size() == kSourcesKept)
        asked.clear();
    asked.push_back(flags);
    return asked.back();
}

/// Appends the numbers below `count` that are not among the places.
void AppendOthers(std::vector<ItemList::Row>& places, std::size_t count)
{
    if (places.size() == count)
        return;
    std::vector<char> isPlace(count, 0);
    for (ItemList::Row const place : places)
        isPlace[place] = 1;
    for (ItemList::Row place = 0; place < count; ++place) {
        if (!isPlace[place])
            places.push_back(place);
    }
}

bool HasValue(ItemAccessor& item, char const* name)
{
    item.Revalidate();
    return item.GetValue(name).IsValid();
}

/// Most items have the pixmap already from the last rebuild, which saves counting its users.
void Share(ItemIcons::SharedPixmap const& shared, QPixmap& user)
{
    if (user.cacheKey() != shared.key)
        user = shared.pixmap;
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
    : Item(browser, item, extraID)
{
    std::vector<SSourceFlags> asked;
    if (Describe(GetItemID(), scState, FindRevisionControlHelper(), asked).icon)
        m_Browser->update();
}

CNodeBrowser::Item::Item(CNodeBrowser* browser, ItemAccessor& item, ItemID const& extraID)
    : m_Browser(browser)
    , m_Accessor(item)
    , m_ScState(ScsUtils::kNoState)
    , m_HasScState(false)
    , m_IsFactory(false)
    , m_IsReadOnlySource(false)
    , m_ExtraID(extraID)
{}

/// Asks the host what the row shows. `asked` keeps what it told of data sources. Returns the
/// item's kind.
SItemKind const& CNodeBrowser::Item::Describe(ItemID const& id, int scState,
                                              qorm::IRevisionControlUIHelper* helper,
                                              std::vector<SSourceFlags>& asked)
{
    m_HasScState = false;
    m_IsFactory = false;
    m_IsReadOnlySource = false;
    ReadSourceFlags(id, helper, asked);
    bool const isCompound = id.GetType() == TarnoType::gCompound;
    SItemKind const& kind =
        FindItemKind(id.GetType(), isCompound && Helpers::IsAbstractFunction(m_Accessor));
    m_ScState = isCompound ? scState : 0;
    if (kind.icon) {
        ItemIcons::SharedPixmap const& icon = m_Browser->m_Private->icons.GetResource(kind.icon);
        Share(icon, m_Icon);
        ComposeIcon(icon.key);
    } else {
        m_Icon = QPixmap();
        m_DisplayIcon = QPixmap();
    }
    m_HasScState = isCompound && !m_IsReadOnlySource;
    return kind;
}

void CNodeBrowser::Item::ReadSourceFlags(ItemID const& id, qorm::IRevisionControlUIHelper* helper,
                                         std::vector<SSourceFlags>& asked)
{
    char const* const uid = ItemIDUnlock::GetItemIDUID(id);
    if (!helper || !qorm::DbObjectId::IsUID(uid))
        return;
    SComponents const& components = GetComponents(*helper);
    qorm::QormHandle<qorm::IDbObject> const object = helper->FindObject(qorm::DbObjectId(uid));
    if (!object.IsValid())
        return;

    SSourceFlags const& flags = AskSource(object.GetDataSource(), components, asked);
    m_IsReadOnlySource = flags.isReadOnly;
    m_IsFactory = flags.isFactory;
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
    ComposeIcon(m_Icon.cacheKey());
    m_Browser->update();
}

/// `iconKey` is the cache key of the icon.
void CNodeBrowser::Item::ComposeIcon(qint64 iconKey)
{
    ItemIcons::Marks marks;
    marks.isFactory = m_IsFactory;
    marks.isReadOnlySource = m_IsReadOnlySource;
    marks.scState = m_ScState;
    marks.isStateShown =
        m_Browser->m_SourceControlEnabled && ScsUtils::IsFileVersionControlActive();
    Share(m_Browser->m_Private->icons.GetDisplayIcon(m_Icon, iconKey, marks), m_DisplayIcon);
}

ItemID CNodeBrowser::Item::GetItemID() const
{
    return AskItemID(m_Accessor);
}

void CNodeBrowser::BuildAllItemList(StateRequests* stateRequests)
{
    if (m_Private->isListInUse) {
        // The host replaced the library when it was asked about an item.
        MarkItemListDirty();
        return;
    }
    QScopedValueRollback<bool> const use(m_Private->isListInUse);
    m_Private->isListInUse = true;
    m_Private->isFresh = false;
    m_Private->icons.Begin();
    BeginCollecting();
    if (!m_ItemTOC.IsValid()) {
        TakeItems(m_Private->list.Commit());
        m_VisibleListDirty = true;
        return;
    }

    try {
        CollectItems(stateRequests);
        CollectNames();
    } catch (...) {
        // The items made so far stay; rows know how to do without the others.
        TakeItems(m_Private->list.CommitUnfinished());
        update();
        throw;
    }
    TakeItems(m_Private->list.Commit());
    m_VisibleListDirty = true;
    update();
}

void CNodeBrowser::BeginCollecting()
{
    // A subclass may have changed the items since they were listed.
    if (m_Items.size() != m_Private->list.GetCount()) {
        m_Items.clear();
        m_Private->list.Clear();
    }
    m_Private->items.swap(m_Items);
    m_Items.clear();
    m_Private->list.BeginCollecting();
}

void CNodeBrowser::CollectItems(StateRequests* stateRequests)
{
    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    m_Private->builtWith = helper;
    std::vector<SSourceFlags> asked;
    for (SItemKind const& kind : GetItemKinds()) {
        if (kind.isSignature) // listed with the other compounds
            continue;
        Iterator<ItemAccessor> items = m_ItemTOC.GetItems(kind.type);
        for (; !items.IsDone(); items.Next()) {
            if (!IsListed(kind.type, items.GetCurrent()))
                continue;
            Item& item = CollectItem(items.GetCurrent(), helper, asked);
            if (helper && stateRequests && item.m_HasScState)
                RequestState(item, helper, *stateRequests);
        }
    }
}

/// An item of the last list is kept where it is, and becomes what a new one would be.
CNodeBrowser::Item& CNodeBrowser::CollectItem(ItemAccessor& accessor,
                                              qorm::IRevisionControlUIHelper* helper,
                                              std::vector<SSourceFlags>& asked)
{
    ItemList& list = m_Private->list;
    std::vector<Item>& items = m_Private->items;
    ItemID const id = AskItemID(accessor);
    ItemList::Row const place = list.Expect(id);
    ItemList::Row const soon = list.Foresee(kItemsAhead);
    if (soon < items.size())
        Prefetch(&items[soon], sizeof(Item));
    if (place == items.size()) {
        // Moving an item costs as much as making it: the first list grows in large steps.
        if (list.GetCount() == 0 && items.size() == items.capacity())
            items.reserve(4 * items.size() + 256);
        items.push_back(Item(this, accessor, ItemID()));
    } else {
        items[place].m_Browser = this;
        items[place].m_Accessor = accessor;
        items[place].m_ExtraID = ItemID();
    }
    Item& item = items[place];
    SItemKind const& kind = item.Describe(id, 0, helper, asked);
    list.Collect(id, kind);
    list.CollectTags(m_ItemLibrary.GetItemTags(id, kAppTagsCategory));
    return item;
}

void CNodeBrowser::CollectNames()
{
    ItemList& list = m_Private->list;
    for (std::size_t position = 0; position < list.GetCollectedCount(); ++position)
        list.CollectName(m_ItemLibrary.GetItemName(list.GetCollected(position), true, nullptr));
}

/// `places` gives for each row where its item is. Items of no row go.
void CNodeBrowser::TakeItems(std::vector<ItemList::Row> places)
{
    std::vector<Item>& items = m_Private->items;
    std::size_t const rowCount = places.size();
    AppendOthers(places, items.size());
    // Only items that change places are moved: each circle of them by one step.
    for (ItemList::Row first = 0; first < places.size(); ++first) {
        if (places[first] == first)
            continue;
        Item last = std::move(items[first]);
        ItemList::Row soon = first;
        for (std::uint32_t step = 0; step < kItemsAhead; ++step)
            soon = places[soon];
        ItemList::Row row = first;
        for (; places[row] != first; std::swap(row, places[row])) {
            Prefetch(&items[soon], sizeof(Item));
            soon = places[soon];
            items[row] = std::move(items[places[row]]);
        }
        items[row] = std::move(last);
        places[row] = row;
    }
    items.erase(items.begin() + std::ptrdiff_t(rowCount), items.end());
    m_Items.swap(items);
    // What a subclass added meanwhile.
    items.clear();
}

/// The list need not be made again for the states: no notification has come since it was made.
bool CNodeBrowser::CanRequestStates() const
{
    return m_Private->isFresh && m_Private->list.GetCount() == m_Items.size()
           && m_Private->builtWith == FindRevisionControlHelper();
}

/// In the order of the table of contents, as while the list is made.
void CNodeBrowser::RequestStates(StateRequests& stateRequests)
{
    QScopedValueRollback<bool> const use(m_Private->isListInUse);
    m_Private->isListInUse = true;
    m_Private->isFresh = false;
    m_VisibleListDirty = true;
    qorm::IRevisionControlUIHelper* const helper = FindRevisionControlHelper();
    for (std::size_t position = 0; helper && position < m_Items.size(); ++position) {
        Item& item = m_Items[m_Private->list.GetRowOfCollected(position)];
        if (item.m_HasScState)
            RequestState(item, helper, stateRequests);
    }
}

void CNodeBrowser::RequestState(Item& item, qorm::IRevisionControlUIHelper* helper,
                                StateRequests& stateRequests)
{
    char const* const uid = ItemIDUnlock::GetItemIDUID(item.GetItemID());
    if (!qorm::DbObjectId::IsUID(uid))
        return;
    item.setScState(ScsUtils::kWaitingState);
    stateRequests.push_back(helper->FindObject(qorm::DbObjectId(uid)));
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
