#ifndef NODEBROWSER_ITEMLIST_H
#define NODEBROWSER_ITEMLIST_H

#include "hostapi/datamodel.h"
#include "itemkinds.h"
#include "tagindex.h"
#include "textblock.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class ItemTagsRegistry;

namespace nodebrowser {

/// What the panel keeps of its items beside the item list itself: identifier, name, kind and tags
/// as the host told them last, the row where an item stands, and what a search needs. The tags
/// registry is filled from it.
///
/// It is made anew by collecting the host's answers and then committing them. What the host
/// answers as it did before is kept, so that the work is that of the difference. Items are kept in
/// slots, in the order in which they are collected: that one rarely changes, and a rebuild walks
/// through memory from front to back.
class ItemList
{
public:
    /// A row of the item list.
    typedef std::uint32_t Row;
    static constexpr Row kNoRow = 0xFFFFFFFFU;

    /// Scores of a search, smaller is better: up to twice the number of words for names.
    static constexpr unsigned long kTagMatch = 1000;
    static constexpr unsigned long kNoMatch = 10000;

    struct SMatch
    {
        Row row;
        std::uint32_t score;
    };

    /// The form in which names are searched: lower case, 8-bit.
    static std::string ToSearchName(std::string const& name);
    /// The score of one item, given with its name in that form.
    static unsigned long Score(std::set<std::string> const& words, std::string const& searchName,
                               std::set<std::string> const& tags);

    explicit ItemList(ItemTagsRegistry& registry);

    // Making the list anew. Items are collected in the order of the table of contents, then
    // their names in the same order. When memory runs out here, both the list and the collected
    // items are empty afterwards.

    void Clear();
    void BeginCollecting();
    /// Where the item list has the item that is about to be collected: at its row, or at the end,
    /// behind those that were added before, if it is new.
    Row Expect(tarno::datamodel::ItemID const& id);
    /// The row of the item that is expected `count` items later if they come as they did the last
    /// time; kNoRow for none.
    Row Foresee(std::uint32_t count) const;
    /// The item that was expected last; its tags are not known yet.
    void Collect(tarno::datamodel::ItemID const& id, SItemKind const& kind);
    /// The stored tags of the item that was collected last.
    void CollectTags(std::string const& tagString);
    void CollectName(std::string const& name);
    std::size_t GetCollectedCount() const;
    /// The item that was collected as the n-th.
    tarno::datamodel::ItemID const& GetCollected(std::size_t position) const;
    /// How many items the item list has: those from before and the new ones.
    std::size_t GetPlaceCount() const;
    /// Takes the collected items over, sorted by name, ignoring ASCII case. Returns for each row
    /// where the item list has its item.
    std::vector<Row> Commit();
    /// Takes the collected items over unsorted and without names: the host failed in between.
    std::vector<Row> CommitUnfinished();

    std::size_t GetCount() const;
    /// Names were collected for all rows, so that they can be searched.
    bool HasNames() const;
    /// The registry has the tags of this list: it was not changed through its own operations.
    bool IsRegistryCurrent() const;
    /// The item has an entry in the registry.
    bool IsRegistered(tarno::datamodel::ItemID const& id) const;
    /// What the registry holds for this list; both are empty.
    void FillRegistry(std::map<tarno::datamodel::ItemID, std::set<std::string>>& itemToTags,
                      std::map<std::string, std::set<tarno::datamodel::ItemID>>& tagToItems) const;

    /// The first row with the identifier, kNoRow for none.
    Row Find(tarno::datamodel::ItemID const& id) const;
    SItemKind const& GetKind(Row row) const;
    /// The row of the item that was collected as the n-th.
    Row GetRowOfCollected(std::size_t position) const;

    /// The tags of the item are about to be asked for; until they are known it has none.
    void ForgetTags(tarno::datamodel::ItemID const& id);
    void SetTags(tarno::datamodel::ItemID const& id, std::string const& tagString);

    /// The rows that match any of the words, in their order; there is at least one word. Words
    /// count in the order of the set: a word inside the name overwrites what earlier words gave,
    /// one at its start is final, a tag only serves a row without any match yet.
    std::vector<SMatch> Search(std::set<std::string> const& words);

private:
    /// The place of an item in the order of collecting.
    typedef std::uint32_t Slot;
    static constexpr Slot kNoSlot = 0xFFFFFFFFU;

    struct SItem
    {
        tarno::datamodel::ItemID id;
        /// Has an entry in the registry.
        bool isRegistered;
    };

    typedef std::vector<Slot>::const_iterator SlotIterator;

    template <class Step>
    void RunStep(Step step);
    Slot FindUntaken(tarno::datamodel::ItemID const& id) const;

    bool IsOrderKept() const;
    std::vector<Slot> OrderByName();
    std::vector<Row> Take(std::vector<Slot> const& order);
    void ForgetCollected();
    void TakeSearchNames(std::vector<Slot> const& order);
    static void AppendSearchName(TextBlock& names, char const* name);
    void TakeIDs();

    bool IsBefore(Slot left, Slot right) const;
    void SortIDs() const;
    std::pair<SlotIterator, SlotIterator> FindSlots(tarno::datamodel::ItemID const& id) const;
    void SetTagsOfSlots(tarno::datamodel::ItemID const& id, std::string const& tagString,
                        char const* kindTag);

    typedef std::vector<std::vector<char>> TagMatches;
    /// By row.
    typedef std::vector<std::uint32_t> Scores;
    bool IsNarrower(std::set<std::string> const& words) const;
    void SearchLastMatches(std::set<std::string> const& words, TagMatches const& tagMatches,
                           std::vector<SMatch>& matches) const;
    void SearchOneByOne(std::set<std::string> const& words, TagMatches const& tagMatches,
                        std::vector<SMatch>& matches) const;
    void AppendMatch(Row row, std::string_view name, std::set<std::string> const& words,
                     TagMatches const& tagMatches, std::vector<SMatch>& matches) const;
    void SearchAll(std::set<std::string> const& words, TagMatches const& tagMatches,
                   std::vector<SMatch>& matches) const;
    static std::size_t CountUnmatched(Scores const& scores);
    void ScoreTags(std::vector<char> const& hasWord, Scores& scores) const;
    void ForgetSearch();

    ItemTagsRegistry* m_Registry;
    /// Of the registry when it was brought up to this list.
    unsigned long m_RegistryRevision;
    // By slot.
    std::vector<SItem> m_Items;
    std::vector<Row> m_Rows;
    /// Empty for an unfinished list.
    CollectedTexts m_Names;
    TagIndex m_Tags;

    // By row.
    std::vector<Slot> m_Slots;
    std::vector<SItemKind const*> m_Kinds;
    /// In this order a search finds its matches as they are shown. Empty for an unfinished list.
    TextBlock m_SearchNames;
    /// Slots by identifier, then in their order; empty until an item is looked for.
    mutable std::vector<Slot> m_SlotsByID;

    // By slot, while the list is made anew.
    std::vector<SItem> m_NewItems;
    std::vector<SItemKind const*> m_NewKinds;
    /// The slot that an item had before; kNoSlot for a new one.
    std::vector<Slot> m_Before;
    /// Where the item list has the item.
    std::vector<Row> m_Places;
    std::vector<char> m_KeepsName;

    // By the slots of the last list, while it is made anew.
    /// Slots whose items were expected.
    std::vector<char> m_IsTaken;
    /// The slot of the item that was expected last, and of the one that probably comes next.
    Slot m_Expected;
    Slot m_Next;
    std::size_t m_NewCount;
    /// Items that were kept came in another order than the last time.
    bool m_IsReordered;
    /// Not each item keeps its slot.
    bool m_IsShifted;

    /// The last search and what it found; no words when there is none to build on.
    std::set<std::string> m_LastWords;
    std::vector<SMatch> m_LastMatches;
};

} // namespace nodebrowser

#endif
