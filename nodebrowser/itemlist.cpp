#include "itemlist.h"

#include "itemtagsregistry.h"
#include "stringutils.h"

#include <algorithm>
#include <ctype.h>
#include <numeric>
#include <strings.h>
#include <utility>

using tarno::datamodel::ItemID;

namespace nodebrowser {

namespace {

/// The first letters of a name as a number that orders as strcasecmp orders the names.
std::uint64_t GetSortPrefix(char const* name)
{
    std::uint64_t prefix = 0;
    for (std::size_t letter = 0; letter < sizeof(prefix); ++letter) {
        prefix <<= 8;
        if (*name)
            prefix |= static_cast<unsigned char>(tolower(static_cast<unsigned char>(*name++)));
    }
    return prefix;
}

/// A name on its way into the order of the list.
struct SNamed
{
    std::uint64_t prefix;
    char const* name;
    /// Orders names that differ in nothing but case.
    std::uint32_t slot;
};

bool operator<(SNamed const& left, SNamed const& right)
{
    if (left.prefix != right.prefix)
        return left.prefix < right.prefix;
    int const order = strcasecmp(left.name, right.name);
    return order != 0 ? order < 0 : left.slot < right.slot;
}

} // namespace

ItemList::ItemList(ItemTagsRegistry& registry)
    : m_Registry(registry)
    , m_RegistryRevision(registry.m_Revision)
    , m_NameCount(0)
    , m_Expected(kNoSlot)
    , m_Next(0)
    , m_NewCount(0)
    , m_IsReordered(false)
    , m_IsShifted(false)
{}

void ItemList::Clear()
{
    BeginCollecting();
    Commit();
}

void ItemList::BeginCollecting()
{
    m_Collected.clear();
    m_NewNames.clear();
    m_NewTags.clear();
    m_NameCount = 0;
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
    Row const place = isNew ? static_cast<Row>(GetPlaceCount()) : m_Rows[m_Expected];
    m_NewCount += isNew;
    m_IsShifted = m_IsShifted || m_Expected != m_Collected.size();
    m_Collected.push_back(SCollected{id, &kind, m_Expected, place, kSame, kUnknown});
}

void ItemList::CollectTags(std::string const& tagString)
{
    SCollected& item = m_Collected.back();
    item.newTags = kSame;
    if (item.before != kNoSlot && m_Items[item.before].areTagsCollected
        && m_TagStrings.Has(item.before, tagString))
        return;
    item.newTags = static_cast<std::uint32_t>(m_NewTags.size());
    m_NewTags.push_back(tagString);
}

void ItemList::CollectName(std::string const& name)
{
    SCollected& item = m_Collected[m_NameCount++];
    if (item.before != kNoSlot && HasNames() && m_Names.Has(item.before, name))
        return;
    item.newName = static_cast<std::uint32_t>(m_NewNames.size());
    m_NewNames.push_back(name);
}

std::size_t ItemList::GetCollectedCount() const
{
    return m_Collected.size();
}

ItemID const& ItemList::GetCollected(std::size_t position) const
{
    return m_Collected[position].id;
}

std::size_t ItemList::GetPlaceCount() const
{
    return m_Items.size() + m_NewCount;
}

std::vector<ItemList::Row> ItemList::Commit()
{
    m_IsShifted = m_IsShifted || m_Collected.size() != m_Items.size();
    std::vector<Slot> const order = OrderByName();
    if (!KeepsAll(KeepsName)) {
        TakeSearchNames(order);
        TakeNames();
    }
    return Take(order);
}

std::vector<ItemList::Row> ItemList::CommitUnfinished()
{
    m_IsShifted = true;
    std::vector<Slot> order(m_Collected.size());
    std::iota(order.begin(), order.end(), Slot(0));
    m_Names.Clear();
    m_SearchNames.Clear();
    return Take(order);
}

bool ItemList::KeepsName(SCollected const& item)
{
    return item.newName == kSame;
}

bool ItemList::KeepsTags(SCollected const& item)
{
    return item.newTags == kSame;
}

/// Each item keeps its slot and what `keeps` tells of.
bool ItemList::KeepsAll(bool (*keeps)(SCollected const&)) const
{
    return !m_IsShifted && std::all_of(m_Collected.begin(), m_Collected.end(), keeps);
}

/// The end of a stretch of items that stood side by side before and keep what `keeps` tells of.
ItemList::Slot ItemList::FindStretchEnd(Slot begin, bool (*keeps)(SCollected const&)) const
{
    Slot end = begin;
    while (end < m_Collected.size() && keeps(m_Collected[end])
           && m_Collected[end].before == m_Collected[begin].before + (end - begin))
        ++end;
    return end;
}

char const* ItemList::GetName(Slot slot) const
{
    SCollected const& item = m_Collected[slot];
    return KeepsName(item) ? m_Names.Get(item.before) : m_NewNames[item.newName].c_str();
}

bool ItemList::IsNameBefore(Slot left, Slot right) const
{
    int const order = strcasecmp(GetName(left), GetName(right));
    return order != 0 ? order < 0 : left < right;
}

/// Items that have kept their name are in order already, unless equal names changed places.
std::vector<ItemList::Slot> ItemList::OrderByName() const
{
    if (KeepsAll(KeepsName))
        return m_Slots;
    std::vector<Slot> slotsNow(m_Items.size(), kNoSlot);
    std::vector<Slot> moved;
    for (Slot slot = 0; slot < m_Collected.size(); ++slot) {
        SCollected const& item = m_Collected[slot];
        if (KeepsName(item) && !m_IsReordered)
            slotsNow[item.before] = slot;
        else
            moved.push_back(slot);
    }
    std::vector<Slot> kept;
    kept.reserve(m_Collected.size() - moved.size());
    for (Slot const before : m_Slots) {
        if (slotsNow[before] != kNoSlot)
            kept.push_back(slotsNow[before]);
    }
    return MergeByName(kept, SortByName(std::move(moved)));
}

/// Both are in order, and few are moved as a rule.
std::vector<ItemList::Slot> ItemList::MergeByName(std::vector<Slot> const& kept,
                                                  std::vector<Slot> const& moved) const
{
    std::vector<Slot> order;
    order.reserve(kept.size() + moved.size());
    auto from = kept.begin();
    for (Slot const slot : moved) {
        auto const to = std::upper_bound(from, kept.end(), slot, [this](Slot left, Slot right) {
            return IsNameBefore(left, right);
        });
        order.insert(order.end(), from, to);
        order.push_back(slot);
        from = to;
    }
    order.insert(order.end(), from, kept.end());
    return order;
}

std::vector<ItemList::Slot> ItemList::SortByName(std::vector<Slot> slots) const
{
    std::vector<SNamed> names;
    names.reserve(slots.size());
    for (Slot const slot : slots)
        names.push_back(SNamed{GetSortPrefix(GetName(slot)), GetName(slot), slot});
    std::sort(names.begin(), names.end());
    std::transform(names.begin(), names.end(), slots.begin(),
                   [](SNamed const& name) { return name.slot; });
    return slots;
}

/// `order` gives for each row the slot of its item.
std::vector<ItemList::Row> ItemList::Take(std::vector<Slot> const& order)
{
    std::vector<Row> places(order.size());
    std::transform(order.begin(), order.end(), places.begin(),
                   [this](Slot slot) { return m_Collected[slot].place; });
    TakeTags();
    TakeItems();
    TakeIDs();
    m_Slots = order;
    m_Rows.resize(order.size());
    m_Kinds.resize(order.size());
    for (Row row = 0; row < m_Slots.size(); ++row) {
        m_Rows[m_Slots[row]] = row;
        m_Kinds[row] = m_Collected[m_Slots[row]].kind;
    }
    m_Registry.Follow(*this);
    m_RegistryRevision = m_Registry.m_Revision;

    std::vector<SCollected>().swap(m_Collected);
    std::vector<std::string>().swap(m_NewNames);
    std::vector<std::string>().swap(m_NewTags);
    ForgetSearch();
    return places;
}

void ItemList::TakeSearchNames(std::vector<Slot> const& order)
{
    TextBlock names;
    names.Reserve(order.size(), m_SearchNames.GetBytes());
    for (std::size_t row = 0; row < order.size();) {
        SCollected const& first = m_Collected[order[row]];
        if (!KeepsName(first)) {
            names.Append(ToSearchName(m_NewNames[first.newName]));
            ++row;
            continue;
        }
        // Rows that stood side by side before.
        Row count = 1;
        for (; row + count < order.size(); ++count) {
            SCollected const& next = m_Collected[order[row + count]];
            if (!KeepsName(next) || next.place != first.place + count)
                break;
        }
        names.Append(m_SearchNames, first.place, count);
        row += count;
    }
    m_SearchNames.Swap(names);
}

void ItemList::TakeNames()
{
    TextBlock names;
    names.Reserve(m_Collected.size(), m_Names.GetBytes());
    for (Slot slot = 0; slot < m_Collected.size();) {
        SCollected const& item = m_Collected[slot];
        Slot const end = FindStretchEnd(slot, KeepsName);
        if (end > slot) {
            names.Append(m_Names, item.before, end - slot);
            slot = end;
        } else {
            names.Append(m_NewNames[item.newName]);
            ++slot;
        }
    }
    m_Names.Swap(names);
}

void ItemList::TakeTags()
{
    if (KeepsAll(KeepsTags))
        return;
    TextBlock strings;
    strings.Reserve(m_Collected.size(), m_TagStrings.GetBytes());
    m_Tags.BeginRows();
    for (Slot slot = 0; slot < m_Collected.size();) {
        SCollected const& item = m_Collected[slot];
        Slot const end = FindStretchEnd(slot, KeepsTags);
        if (end > slot) {
            strings.Append(m_TagStrings, item.before, end - slot);
            m_Tags.KeepRows(item.before, end - slot);
            slot = end;
        } else {
            bool const isKnown = item.newTags != kUnknown;
            std::string const text = isKnown ? m_NewTags[item.newTags] : std::string();
            strings.Append(text);
            m_Tags.AppendRow(SplitTags(text, isKnown ? item.kind->tag : ""));
            ++slot;
        }
    }
    m_Tags.EndRows();
    m_TagStrings.Swap(strings);
}

std::set<std::string> ItemList::SplitTags(std::string const& tagString, char const* kindTag) const
{
    std::set<std::string> tags;
    if (!tagString.empty())
        SplitString(tagString, ";", tags);
    if (*kindTag)
        tags.insert(kindTag);
    return tags;
}

void ItemList::TakeItems()
{
    std::vector<SItem> items;
    items.reserve(m_Collected.size());
    for (SCollected const& item : m_Collected) {
        bool const isKnown = item.newTags != kUnknown;
        bool const hasTagString = m_TagStrings.GetLength(items.size()) > 0;
        items.push_back(
            SItem{item.id, isKnown && (hasTagString || *item.kind->tag),
                  isKnown && (!KeepsTags(item) || m_Items[item.before].areTagsCollected)});
    }
    m_Items.swap(items);
}

/// Merges the identifiers of new items into those that stay.
void ItemList::TakeIDs()
{
    if (!m_IsShifted)
        return;
    std::vector<Slot> slotsNow(m_IsTaken.size(), kNoSlot);
    std::vector<Slot> added;
    for (Slot slot = 0; slot < m_Collected.size(); ++slot) {
        if (m_Collected[slot].before == kNoSlot)
            added.push_back(slot);
        else
            slotsNow[m_Collected[slot].before] = slot;
    }
    // Sorted anew when it is needed, unless most of it stays.
    if (m_SlotsByID.size() != slotsNow.size() || m_IsReordered
        || added.size() > slotsNow.size() / 4) {
        std::vector<Slot>().swap(m_SlotsByID);
        return;
    }
    auto const isBefore = [this](Slot left, Slot right) {
        return IsBefore(left, right);
    };
    std::sort(added.begin(), added.end(), isBefore);
    for (Slot& slot : m_SlotsByID)
        slot = slotsNow[slot];
    auto const kept = std::remove(m_SlotsByID.begin(), m_SlotsByID.end(), kNoSlot);
    std::vector<Slot> slots(m_Collected.size());
    std::merge(m_SlotsByID.begin(), kept, added.begin(), added.end(), slots.begin(), isBefore);
    m_SlotsByID.swap(slots);
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
        if (m_TagStrings.GetLength(slot) > 0)
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
    return m_Names.GetCount() == m_Items.size();
}

bool ItemList::IsRegistryCurrent() const
{
    return m_RegistryRevision == m_Registry.m_Revision;
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
    m_Registry.Withdraw(id);
    SetTagsOfSlots(id, std::set<std::string>(), false);
}

void ItemList::SetTags(ItemID const& id, std::string const& tagString)
{
    char const* const kindTag = FindItemKind(id.GetType(), false).tag;
    std::set<std::string> const tags = SplitTags(tagString, kindTag);
    bool const isRegistered = !tagString.empty() || *kindTag;
    if (isRegistered)
        m_Registry.Register(id, tags);
    SetTagsOfSlots(id, tags, isRegistered);
}

void ItemList::SetTagsOfSlots(ItemID const& id, std::set<std::string> const& tags,
                              bool isRegistered)
{
    auto const slots = FindSlots(id);
    for (auto slot = slots.first; slot != slots.second; ++slot) {
        m_Tags.SetTags(*slot, tags);
        m_Items[*slot].isRegistered = isRegistered;
        m_Items[*slot].areTagsCollected = false;
    }
    ForgetSearch();
}

void ItemList::ForgetSearch()
{
    m_LastWords.clear();
    m_LastMatches.clear();
}

} // namespace nodebrowser
