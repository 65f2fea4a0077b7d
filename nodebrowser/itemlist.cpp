#include "itemlist.h"

#include "itemtagsregistry.h"
#include "stringutils.h"

#include <algorithm>
#include <numeric>
#include <utility>

using tarno::datamodel::ItemID;

namespace nodebrowser {

namespace {

/// How many rows ahead memory is prefetched: the slots of neighbouring rows lie far apart.
std::uint32_t const kRowsAhead = 8;

} // namespace

ItemList::ItemList(ItemTagsRegistry& registry)
    : m_Registry(&registry)
    , m_RegistryRevision(registry.m_Revision)
    , m_Expected(kNoSlot)
    , m_Next(0)
    , m_NewCount(0)
    , m_IsReordered(false)
    , m_IsShifted(false)
{}

void ItemList::Clear()
{
    *this = ItemList(*m_Registry);
    m_Registry->Follow(*this);
}

/// A step of making the list. Memory may run out in the middle of it, and leave texts and rows that
/// do not belong together.
template <class Step>
void ItemList::RunStep(Step step)
{
    try {
        step();
    } catch (...) {
        Clear();
        throw;
    }
}

void ItemList::BeginCollecting()
{
    m_NewItems.clear();
    m_NewItems.reserve(m_Items.size());
    m_NewKinds.clear();
    m_NewKinds.reserve(m_Items.size());
    m_Before.clear();
    m_Before.reserve(m_Items.size());
    m_Places.clear();
    m_Places.reserve(m_Items.size());
    m_KeepsName.clear();
    m_KeepsName.reserve(m_Items.size());
    m_Names.Begin();
    m_Tags.BeginCollecting();
    m_IsTaken.assign(m_Items.size(), 0);
    m_Next = 0;
    m_NewCount = 0;
    m_IsReordered = false;
    m_IsShifted = false;
}

ItemList::Row ItemList::Expect(ItemID const& id)
{
    // The table of contents rarely changes its order.
    bool const isNext = m_Next < m_Items.size() && !m_IsTaken[m_Next] && m_Items[m_Next].id == id;
    m_Expected = isNext ? m_Next : FindUntaken(id);
    if (m_Expected == kNoSlot)
        return static_cast<Row>(GetPlaceCount());
    m_IsTaken[m_Expected] = 1;
    m_IsReordered = m_IsReordered || m_Expected < m_Next;
    m_Next = m_Expected + 1;
    return m_Rows[m_Expected];
}

ItemList::Row ItemList::Foresee(std::uint32_t count) const
{
    return count < m_Rows.size() - m_Next ? m_Rows[m_Next + count] : kNoRow;
}

/// An identifier may stand in the table of contents more than once.
ItemList::Slot ItemList::FindUntaken(ItemID const& id) const
{
    auto const slots = FindSlots(id);
    auto const untaken =
        std::find_if(slots.first, slots.second, [this](Slot slot) { return !m_IsTaken[slot]; });
    return untaken == slots.second ? kNoSlot : *untaken;
}

void ItemList::Collect(ItemID const& id, SItemKind const& kind)
{
    bool const isNew = m_Expected == kNoSlot;
    m_IsShifted = m_IsShifted || m_Expected != m_NewItems.size();
    RunStep([&] {
        m_NewItems.push_back(SItem{id, false});
        m_NewKinds.push_back(&kind);
        m_Before.push_back(m_Expected);
        m_Places.push_back(isNew ? static_cast<Row>(GetPlaceCount()) : m_Rows[m_Expected]);
    });
    m_NewCount += isNew;
}

void ItemList::CollectTags(std::string const& tagString)
{
    char const* const kindTag = m_NewKinds.back()->tag;
    RunStep([&] { m_Tags.Collect(tagString, kindTag, m_Before.back()); });
    m_NewItems.back().isRegistered = !tagString.empty() || *kindTag;
}

void ItemList::CollectName(std::string const& name)
{
    Slot const before = m_Before[m_KeepsName.size()];
    bool const keepsName = before != kNoSlot && HasNames() && m_Names.Get().GetView(before) == name;
    RunStep([&] {
        m_KeepsName.push_back(keepsName);
        m_Names.Collect(name, keepsName, before);
    });
}

std::size_t ItemList::GetCollectedCount() const
{
    return m_NewItems.size();
}

ItemID const& ItemList::GetCollected(std::size_t position) const
{
    return m_NewItems[position].id;
}

std::size_t ItemList::GetPlaceCount() const
{
    return m_Items.size() + m_NewCount;
}

std::vector<ItemList::Row> ItemList::Commit()
{
    std::vector<Row> places;
    RunStep([&] {
        m_IsShifted = m_IsShifted || m_NewItems.size() != m_Items.size();
        bool const isOrderKept = IsOrderKept();
        std::vector<Slot> const order = isOrderKept ? m_Slots : OrderByName();
        if (!isOrderKept)
            TakeSearchNames(order);
        places = Take(order);
    });
    return places;
}

std::vector<ItemList::Row> ItemList::CommitUnfinished()
{
    std::vector<Row> places;
    RunStep([&] {
        m_IsShifted = true;
        std::vector<Slot> order(m_NewItems.size());
        std::iota(order.begin(), order.end(), Slot(0));
        // The tags of the last item may be missing.
        if (m_Tags.GetCollectedCount() < m_NewItems.size())
            m_Tags.CollectUnknown();
        m_Names = CollectedTexts();
        m_SearchNames = TextBlock();
        places = Take(order);
    });
    return places;
}

bool ItemList::IsOrderKept() const
{
    return !m_IsShifted
           && std::find(m_KeepsName.begin(), m_KeepsName.end(), 0) == m_KeepsName.end();
}

/// Items that have kept their name are in order already, unless equal names changed places.
std::vector<ItemList::Slot> ItemList::OrderByName()
{
    std::vector<Slot> slotsNow(m_Items.size(), kNoSlot);
    std::vector<Slot> moved;
    for (Slot slot = 0; slot < m_NewItems.size(); ++slot) {
        if (m_KeepsName[slot] && !m_IsReordered)
            slotsNow[m_Before[slot]] = slot;
        else
            moved.push_back(slot);
    }
    std::vector<Slot> kept;
    kept.reserve(m_NewItems.size() - moved.size());
    for (Slot const before : m_Slots) {
        if (slotsNow[before] != kNoSlot)
            kept.push_back(slotsNow[before]);
    }
    return MergeByText(m_Names.GetCollected(), kept, moved);
}

/// `order` gives for each row the slot of its item.
std::vector<ItemList::Row> ItemList::Take(std::vector<Slot> const& order)
{
    m_Names.Commit();
    m_Tags.Commit();
    m_Items.swap(m_NewItems);
    m_Items.shrink_to_fit();
    m_Rows.resize(order.size());
    std::vector<SItemKind const*> kinds(order.size());
    std::vector<Row> places(order.size());
    for (Row row = 0; row < order.size(); ++row) {
        m_Rows[order[row]] = row;
        kinds[row] = m_NewKinds[order[row]];
        places[row] = m_Places[order[row]];
    }
    m_Kinds.swap(kinds);
    m_Slots = order;
    TakeIDs();
    ForgetCollected();
    m_Registry->Follow(*this);
    m_RegistryRevision = m_Registry->m_Revision;
    ForgetSearch();
    return places;
}

void ItemList::ForgetCollected()
{
    std::vector<SItem>().swap(m_NewItems);
    std::vector<SItemKind const*>().swap(m_NewKinds);
    std::vector<Slot>().swap(m_Before);
    std::vector<Row>().swap(m_Places);
    std::vector<char>().swap(m_KeepsName);
}

/// Neighbours that stay neighbours are copied together.
void ItemList::TakeSearchNames(std::vector<Slot> const& order)
{
    TextBlock const& collected = m_Names.GetCollected();
    TextBlock names;
    names.Reserve(order.size(), collected.GetBytes());
    Row firstKept = 0;
    Row keptCount = 0;
    for (Row row = 0; row < order.size(); ++row) {
        if (row + kRowsAhead < order.size())
            collected.Prefetch(order[row + kRowsAhead]);
        Slot const slot = order[row];
        Row const place = m_Places[slot];
        if (m_KeepsName[slot] && place == firstKept + keptCount) {
            ++keptCount;
            continue;
        }
        names.Append(m_SearchNames, firstKept, keptCount);
        firstKept = place;
        keptCount = m_KeepsName[slot] ? 1 : 0;
        if (!m_KeepsName[slot])
            AppendSearchName(names, collected.Get(slot));
    }
    names.Append(m_SearchNames, firstKept, keptCount);
    m_SearchNames = std::move(names);
}

/// Merges the identifiers of new items into those that stay.
void ItemList::TakeIDs()
{
    if (!m_IsShifted)
        return;
    // Sorted anew when it is needed, unless most of it stays.
    if (m_SlotsByID.size() != m_IsTaken.size() || m_IsReordered
        || m_NewCount > m_IsTaken.size() / 4) {
        std::vector<Slot>().swap(m_SlotsByID);
        return;
    }
    std::vector<Slot> slotsNow(m_IsTaken.size(), kNoSlot);
    std::vector<Slot> added;
    for (Slot slot = 0; slot < m_Before.size(); ++slot) {
        if (m_Before[slot] == kNoSlot)
            added.push_back(slot);
        else
            slotsNow[m_Before[slot]] = slot;
    }
    std::transform(m_SlotsByID.begin(), m_SlotsByID.end(), m_SlotsByID.begin(),
                   [&](Slot before) { return slotsNow[before]; });
    m_SlotsByID.erase(std::remove(m_SlotsByID.begin(), m_SlotsByID.end(), kNoSlot),
                      m_SlotsByID.end());
    auto const isBefore = [this](Slot left, Slot right) {
        return IsBefore(left, right);
    };
    std::sort(added.begin(), added.end(), isBefore);
    auto const kept = static_cast<std::ptrdiff_t>(m_SlotsByID.size());
    m_SlotsByID.insert(m_SlotsByID.end(), added.begin(), added.end());
    std::inplace_merge(m_SlotsByID.begin(), m_SlotsByID.begin() + kept, m_SlotsByID.end(),
                       isBefore);
}

bool ItemList::IsBefore(Slot left, Slot right) const
{
    ItemID const& leftID = m_Items[left].id;
    ItemID const& rightID = m_Items[right].id;
    return leftID == rightID ? left < right : leftID < rightID;
}

void ItemList::SortIDs() const
{
    if (m_SlotsByID.size() == m_Items.size())
        return;
    m_SlotsByID.resize(m_Items.size());
    std::iota(m_SlotsByID.begin(), m_SlotsByID.end(), Slot(0));
    std::sort(m_SlotsByID.begin(), m_SlotsByID.end(),
              [this](Slot left, Slot right) { return IsBefore(left, right); });
}

/// The slots of the items with the identifier.
std::pair<ItemList::SlotIterator, ItemList::SlotIterator>
ItemList::FindSlots(ItemID const& id) const
{
    SortIDs();
    auto const first = std::lower_bound(
        m_SlotsByID.begin(), m_SlotsByID.end(), id,
        [this](Slot slot, ItemID const& wanted) { return m_Items[slot].id < wanted; });
    auto const last =
        std::find_if(first, m_SlotsByID.end(), [&](Slot slot) { return m_Items[slot].id != id; });
    return std::make_pair(first, last);
}

/// In the order of the identifiers, so that each entry goes to the end.
void ItemList::FillRegistry(std::map<ItemID, std::set<std::string>>& itemToTags,
                            std::map<std::string, std::set<ItemID>>& tagToItems) const
{
    SortIDs();
    std::vector<std::set<ItemID>*> lists(m_Tags.GetTagCount(), nullptr);
    for (Slot const slot : m_SlotsByID) {
        SItem const& item = m_Items[slot];
        if (!item.isRegistered)
            continue;
        // Identifiers that stand in several slots share one entry: stored tags replace those of
        // the slot before, whose tags go on listing the item.
        auto const entry =
            itemToTags.insert(itemToTags.end(), std::make_pair(item.id, std::set<std::string>()));
        if (m_Tags.HasText(slot))
            entry->second.clear();
        auto const numbers = m_Tags.GetNumbers(slot);
        for (auto number = numbers.first; number != numbers.second; ++number) {
            std::string const& tag = m_Tags.GetTag(*number);
            if (!lists[*number])
                lists[*number] = &tagToItems[tag];
            entry->second.insert(entry->second.end(), tag);
            lists[*number]->insert(lists[*number]->end(), item.id);
        }
    }
}

std::size_t ItemList::GetCount() const
{
    return m_Items.size();
}

bool ItemList::HasNames() const
{
    return m_Names.Get().GetCount() == m_Items.size();
}

bool ItemList::IsRegistryCurrent() const
{
    return m_RegistryRevision == m_Registry->m_Revision;
}

bool ItemList::IsRegistered(ItemID const& id) const
{
    auto const slots = FindSlots(id);
    return std::any_of(slots.first, slots.second,
                       [this](Slot slot) { return m_Items[slot].isRegistered; });
}

ItemList::Row ItemList::Find(ItemID const& id) const
{
    auto const slots = FindSlots(id);
    Row first = kNoRow;
    for (auto slot = slots.first; slot != slots.second; ++slot)
        first = std::min(first, m_Rows[*slot]);
    return first;
}

SItemKind const& ItemList::GetKind(Row row) const
{
    return *m_Kinds[row];
}

ItemList::Row ItemList::GetRowOfCollected(std::size_t position) const
{
    return m_Rows[position];
}

void ItemList::ForgetTags(ItemID const& id)
{
    m_Registry->Withdraw(id);
    SetTagsOfSlots(id, std::string(), "");
}

void ItemList::SetTags(ItemID const& id, std::string const& tagString)
{
    char const* const kindTag = FindItemKind(id.GetType(), false).tag;
    SetTagsOfSlots(id, tagString, kindTag);
    if (tagString.empty() && !*kindTag)
        return;
    std::set<std::string> tags;
    SplitString(tagString, ";", tags);
    if (*kindTag)
        tags.insert(kindTag);
    m_Registry->Register(id, tags);
}

void ItemList::SetTagsOfSlots(ItemID const& id, std::string const& tagString, char const* kindTag)
{
    ForgetSearch();
    auto const slots = FindSlots(id);
    for (auto slot = slots.first; slot != slots.second; ++slot) {
        m_Tags.SetTags(*slot, tagString, kindTag);
        m_Items[*slot].isRegistered = !tagString.empty() || *kindTag;
    }
}

} // namespace nodebrowser
