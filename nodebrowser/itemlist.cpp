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
    ItemList::Row collected;
};

bool operator<(SNamed const& left, SNamed const& right)
{
    if (left.prefix != right.prefix)
        return left.prefix < right.prefix;
    int const order = strcasecmp(left.name, right.name);
    return order != 0 ? order < 0 : left.collected < right.collected;
}

} // namespace

ItemList::ItemList(ItemTagsRegistry& registry)
    : m_Registry(registry)
    , m_RegistryRevision(registry.m_Revision)
    , m_NameCount(0)
    , m_Expected(0)
    , m_IsReordered(false)
{}

void ItemList::BeginCollecting()
{
    m_Collected.clear();
    m_NewNames.clear();
    m_NewTags.clear();
    m_NameCount = 0;
    m_Expected = 0;
    m_IsReordered = false;
}

void ItemList::Collect(ItemID const& id, SItemKind const& kind)
{
    m_Collected.push_back(SCollected{id, &kind, ExpectRow(id), kNoRow, kNoRow, false});
}

/// The row that the item has. The table of contents rarely changes its order, so the item that
/// came next the last time is looked at first.
ItemList::Row ItemList::ExpectRow(ItemID const& id)
{
    if (m_Expected < m_Rows.size() && m_Rows[m_RowsAsCollected[m_Expected]].id == id)
        return m_RowsAsCollected[m_Expected++];
    auto const places = FindPlaces(id);
    if (places.first == places.second)
        return kNoRow;
    m_IsReordered = m_IsReordered || places.first->collected < m_Expected;
    m_Expected = places.first->collected + std::size_t(1);
    return m_RowsAsCollected[places.first->collected];
}

void ItemList::CollectTags(std::string const& tagString)
{
    SCollected& item = m_Collected.back();
    item.areTagsKnown = true;
    if (item.before != kNoRow && m_Rows[item.before].areTagsCollected
        && m_TagStrings.Has(item.before, tagString))
        return;
    item.newTags = static_cast<Row>(m_NewTags.size());
    m_NewTags.push_back(tagString);
}

void ItemList::CollectName(std::string const& name)
{
    SCollected& item = m_Collected[m_NameCount++];
    if (item.before != kNoRow && HasNames() && m_Names.Has(item.before, name))
        return;
    item.newName = static_cast<Row>(m_NewNames.size());
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

std::vector<ItemList::Row> ItemList::Commit()
{
    std::vector<Row> const order = OrderByName();
    TakeNames(order);
    Take(order);
    return order;
}

void ItemList::CommitUnfinished()
{
    std::vector<Row> order(m_Collected.size());
    std::iota(order.begin(), order.end(), Row(0));
    m_Names.Clear();
    m_SearchNames.Clear();
    Take(order);
}

char const* ItemList::GetName(SCollected const& item) const
{
    return item.newName == kNoRow ? m_Names.Get(item.before) : m_NewNames[item.newName].c_str();
}

/// Items that have kept their name are in order already, unless equal names changed places.
std::vector<ItemList::Row> ItemList::OrderByName() const
{
    std::vector<Row> keptByRow(m_Rows.size(), kNoRow);
    std::vector<Row> moved;
    for (Row position = 0; position < m_Collected.size(); ++position) {
        SCollected const& item = m_Collected[position];
        if (item.newName == kNoRow && !m_IsReordered)
            keptByRow[item.before] = position;
        else
            moved.push_back(position);
    }
    moved = OrderByName(std::move(moved));

    keptByRow.erase(std::remove(keptByRow.begin(), keptByRow.end(), kNoRow), keptByRow.end());
    std::vector<Row> order(m_Collected.size());
    std::merge(keptByRow.begin(), keptByRow.end(), moved.begin(), moved.end(), order.begin(),
               [this](Row left, Row right) {
                   int const order =
                       strcasecmp(GetName(m_Collected[left]), GetName(m_Collected[right]));
                   return order != 0 ? order < 0 : left < right;
               });
    return order;
}

std::vector<ItemList::Row> ItemList::OrderByName(std::vector<Row> moved) const
{
    std::vector<SNamed> names;
    names.reserve(moved.size());
    for (Row const position : moved) {
        char const* const name = GetName(m_Collected[position]);
        names.push_back(SNamed{GetSortPrefix(name), name, position});
    }
    std::sort(names.begin(), names.end());
    std::transform(names.begin(), names.end(), moved.begin(),
                   [](SNamed const& name) { return name.collected; });
    return moved;
}

/// `order` gives for each row the collected item.
void ItemList::Take(std::vector<Row> const& order)
{
    bool const hadDuplicates = HasDuplicates();
    TakePlaces();
    TakeTags(order);
    std::vector<SRow> before;
    before.swap(m_Rows);
    m_Rows.reserve(order.size());
    m_RowsAsCollected.resize(order.size());
    for (Row const position : order) {
        SCollected const& item = m_Collected[position];
        Row const row = static_cast<Row>(m_Rows.size());
        m_RowsAsCollected[position] = row;
        bool const hasEntry =
            item.areTagsKnown && (m_TagStrings.GetLength(row) > 0 || *item.kind->tag);
        bool const areTagsCollected =
            item.areTagsKnown && (item.newTags != kNoRow || before[item.before].areTagsCollected);
        m_Rows.push_back(SRow{item.id, item.kind, position, hasEntry, areTagsCollected});
    }
    // Identifiers that stand in several rows share one entry.
    TakeRegistry(before, hadDuplicates || HasDuplicates());

    std::vector<SCollected>().swap(m_Collected);
    std::vector<std::string>().swap(m_NewNames);
    std::vector<std::string>().swap(m_NewTags);
    ForgetSearch();
}

void ItemList::TakeNames(std::vector<Row> const& order)
{
    TextBlock names;
    TextBlock searchNames;
    names.Reserve(order.size(), m_Names.GetBytes());
    searchNames.Reserve(order.size(), m_SearchNames.GetBytes());
    for (Row const position : order) {
        SCollected const& item = m_Collected[position];
        if (item.newName == kNoRow) {
            names.Append(m_Names, item.before);
            searchNames.Append(m_SearchNames, item.before);
        } else {
            names.Append(m_NewNames[item.newName]);
            searchNames.Append(ToSearchName(m_NewNames[item.newName]));
        }
    }
    m_Names.Swap(names);
    m_SearchNames.Swap(searchNames);
}

bool ItemList::IsBefore(SPlace const& left, SPlace const& right)
{
    if (left.id == right.id)
        return left.collected < right.collected;
    return left.id < right.id;
}

/// Sorts only what is new into the places that stay.
void ItemList::TakePlaces()
{
    std::vector<Row> collectedNow(m_Rows.size(), kNoRow);
    Places added;
    for (Row position = 0; position < m_Collected.size(); ++position) {
        SCollected const& item = m_Collected[position];
        if (item.before == kNoRow || m_IsReordered)
            added.push_back(SPlace{item.id, position});
        else
            collectedNow[m_Rows[item.before].collected] = position;
    }
    std::sort(added.begin(), added.end(), IsBefore);

    Places places;
    places.reserve(m_Collected.size());
    for (SPlace const& place : m_Places) {
        if (collectedNow[place.collected] != kNoRow)
            places.push_back(SPlace{place.id, collectedNow[place.collected]});
    }
    std::size_t const kept = places.size();
    places.insert(places.end(), added.begin(), added.end());
    std::inplace_merge(places.begin(), places.begin() + std::ptrdiff_t(kept), places.end(),
                       IsBefore);
    m_Places.swap(places);
}

void ItemList::TakeTags(std::vector<Row> const& order)
{
    TextBlock strings;
    strings.Reserve(order.size(), m_TagStrings.GetBytes());
    m_Tags.BeginRows();
    for (Row const position : order) {
        SCollected const& item = m_Collected[position];
        if (KeepsTags(item)) {
            strings.Append(m_TagStrings, item.before);
            m_Tags.KeepRow(item.before);
        } else {
            std::string const text = item.areTagsKnown ? m_NewTags[item.newTags] : std::string();
            strings.Append(text);
            m_Tags.AppendRow(SplitTags(text, item.areTagsKnown ? item.kind->tag : ""));
        }
    }
    m_Tags.EndRows();
    m_TagStrings.Swap(strings);
}

bool ItemList::KeepsTags(SCollected const& item) const
{
    return item.areTagsKnown && item.newTags == kNoRow;
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

/// Brings the registry from the rows before to those of now.
void ItemList::TakeRegistry(std::vector<SRow> const& before, bool sharesEntries)
{
    std::vector<char> isKept(before.size(), 0);
    std::vector<Row> changed;
    for (SCollected const& item : m_Collected) {
        if (KeepsTags(item))
            isKept[item.before] = 1;
        else
            changed.push_back(m_RowsAsCollected[std::size_t(&item - m_Collected.data())]);
    }
    // A subclass may have changed the registry since.
    if (sharesEntries || m_IsReordered || !IsRegistryCurrent()
        || changed.size() > m_Rows.size() / 4) {
        RegisterAll();
        return;
    }
    for (std::size_t row = 0; row < before.size(); ++row) {
        if (!isKept[row])
            m_Registry.Withdraw(before[row].id);
    }
    for (Row const row : changed)
        Register(row);
}

bool ItemList::HasDuplicates() const
{
    return std::adjacent_find(
               m_Places.begin(), m_Places.end(),
               [](SPlace const& left, SPlace const& right) { return left.id == right.id; })
           != m_Places.end();
}

void ItemList::Register(Row row)
{
    if (!m_Rows[row].isRegistered)
        return;
    std::set<std::string> tags;
    auto const numbers = m_Tags.GetNumbers(row);
    for (auto number = numbers.first; number != numbers.second; ++number)
        tags.insert(tags.end(), m_Tags.GetTag(*number));
    m_Registry.Register(m_Rows[row].id, tags);
}

/// In the order of the identifiers, so that each entry goes to the end.
void ItemList::RegisterAll()
{
    m_Registry.m_ItemToTags.clear();
    m_Registry.m_TagToItems.clear();
    std::vector<std::set<ItemID>*> lists(m_Tags.GetTagCount(), nullptr);
    for (SPlace const& place : m_Places) {
        Row const row = m_RowsAsCollected[place.collected];
        if (!m_Rows[row].isRegistered)
            continue;
        auto& entries = m_Registry.m_ItemToTags;
        auto const entry =
            entries.insert(entries.end(), std::make_pair(place.id, std::set<std::string>()));
        auto const numbers = m_Tags.GetNumbers(row);
        for (auto number = numbers.first; number != numbers.second; ++number) {
            std::string const& tag = m_Tags.GetTag(*number);
            if (!lists[*number])
                lists[*number] = &m_Registry.m_TagToItems[tag];
            entry->second.insert(entry->second.end(), tag);
            lists[*number]->insert(lists[*number]->end(), place.id);
        }
    }
    m_RegistryRevision = m_Registry.m_Revision;
}

std::size_t ItemList::GetCount() const
{
    return m_Rows.size();
}

bool ItemList::HasNames() const
{
    return m_Names.GetCount() == m_Rows.size();
}

bool ItemList::IsRegistryCurrent() const
{
    return m_RegistryRevision == m_Registry.m_Revision;
}

std::pair<ItemList::Places::const_iterator, ItemList::Places::const_iterator>
ItemList::FindPlaces(ItemID const& id) const
{
    SPlace const first = {id, 0};
    SPlace const last = {id, kNoRow};
    return std::make_pair(std::lower_bound(m_Places.begin(), m_Places.end(), first, IsBefore),
                          std::upper_bound(m_Places.begin(), m_Places.end(), last, IsBefore));
}

ItemList::Row ItemList::Find(ItemID const& id) const
{
    auto const places = FindPlaces(id);
    Row first = kNoRow;
    for (auto place = places.first; place != places.second; ++place)
        first = std::min(first, m_RowsAsCollected[place->collected]);
    return first;
}

SItemKind const& ItemList::GetKind(Row row) const
{
    return *m_Rows[row].kind;
}

ItemList::Row ItemList::GetRowOfCollected(std::size_t position) const
{
    return m_RowsAsCollected[position];
}

void ItemList::ForgetTags(ItemID const& id)
{
    m_Registry.Withdraw(id);
    SetTagsOfRows(id, std::set<std::string>(), false);
}

void ItemList::SetTags(ItemID const& id, std::string const& tagString)
{
    char const* const kindTag = FindItemKind(id.GetType(), false).tag;
    std::set<std::string> const tags = SplitTags(tagString, kindTag);
    bool const isRegistered = !tagString.empty() || *kindTag;
    if (isRegistered)
        m_Registry.Register(id, tags);
    SetTagsOfRows(id, tags, isRegistered);
}

void ItemList::SetTagsOfRows(ItemID const& id, std::set<std::string> const& tags, bool isRegistered)
{
    auto const places = FindPlaces(id);
    for (auto place = places.first; place != places.second; ++place) {
        Row const row = m_RowsAsCollected[place->collected];
        m_Tags.SetTags(row, tags);
        m_Rows[row].isRegistered = isRegistered;
        m_Rows[row].areTagsCollected = false;
    }
    ForgetSearch();
}

void ItemList::ForgetSearch()
{
    m_LastWords.clear();
    m_LastMatches.clear();
}

} // namespace nodebrowser
