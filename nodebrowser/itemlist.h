#ifndef NODEBROWSER_ITEMLIST_H
#define NODEBROWSER_ITEMLIST_H

#include "hostapi/datamodel.h"
#include "itemkinds.h"
#include "tagindex.h"
#include "textblock.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

class ItemTagsRegistry;

namespace nodebrowser {

/// What the panel keeps of its items beside the item list itself, row for row: identifier, name,
/// kind and tags as the host told them last, where an item stands, and what a search needs. It
/// keeps the tags registry up to the same answers.
///
/// It is made anew by collecting the host's answers and then committing them. What the host
/// answers as it did before is kept, so that the work is that of the difference.
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
        unsigned long score;
    };

    /// The form in which names are searched: lower case, 8-bit.
    static std::string ToSearchName(std::string const& name);
    /// The score of one item, given with its name in that form.
    static unsigned long Score(std::set<std::string> const& words, std::string const& searchName,
                               std::set<std::string> const& tags);

    explicit ItemList(ItemTagsRegistry& registry);

    // Making the list anew. Items are collected in the order of the table of contents, then
    // their names in the same order.

    void BeginCollecting();
    /// An item whose tags are not known yet.
    void Collect(tarno::datamodel::ItemID const& id, SItemKind const& kind);
    /// The stored tags of the item that was collected last.
    void CollectTags(std::string const& tagString);
    void CollectName(std::string const& name);
    std::size_t GetCollectedCount() const;
    /// The item that was collected as the n-th.
    tarno::datamodel::ItemID const& GetCollected(std::size_t position) const;
    /// Takes the collected items over, sorted by name, ignoring ASCII case. Returns for each row
    /// where its item stood when it was collected.
    std::vector<Row> Commit();
    /// Takes the collected items over unsorted, with the names that there are: the host failed in
    /// between.
    void CommitUnfinished();

    std::size_t GetCount() const;
    /// Names were collected for all rows, so that they can be searched.
    bool HasNames() const;
    /// The registry has the tags of this list: it was not changed through its own operations.
    bool IsRegistryCurrent() const;

    /// The first row with the identifier, kNoRow for none.
    Row Find(tarno::datamodel::ItemID const& id) const;
    SItemKind const& GetKind(Row row) const;
    /// The row of the item that was collected as the n-th.
    Row GetRowOfCollected(std::size_t position) const;

    /// The tags of the item are about to be asked for; until they are known it has none.
    void ForgetTags(tarno::datamodel::ItemID const& id);
    void SetTags(tarno::datamodel::ItemID const& id, std::string const& tagString);

    /// The rows that match any of the words, which are not none, in their order. Words count in
    /// the order of the set: a word inside the name overwrites what earlier words gave, one at its
    /// start is final, a tag only serves a row without any match yet.
    std::vector<SMatch> Search(std::set<std::string> const& words);

private:
    struct SRow
    {
        tarno::datamodel::ItemID id;
        SItemKind const* kind;
        /// Where it stood when it was collected.
        Row collected;
        /// Has an entry in the registry.
        bool isRegistered;
        /// The tags are those that were collected. Not so when a notification told of others, or
        /// the host failed to tell.
        bool areTagsCollected;
    };

    struct SCollected
    {
        tarno::datamodel::ItemID id;
        SItemKind const* kind;
        /// The row that it had before; kNoRow for a new item.
        Row before;
        /// Position in m_NewNames; kNoRow for the name that it had before.
        Row newName;
        /// Position in m_NewTags; kNoRow for the tags that it had before, if any are known.
        Row newTags;
        bool areTagsKnown;
    };

    /// Where an identifier stands in the order of collecting.
    struct SPlace
    {
        tarno::datamodel::ItemID id;
        Row collected;
    };
    typedef std::vector<SPlace> Places;

    static bool IsBefore(SPlace const& left, SPlace const& right);
    std::pair<Places::const_iterator, Places::const_iterator>
    FindPlaces(tarno::datamodel::ItemID const& id) const;
    Row ExpectRow(tarno::datamodel::ItemID const& id);

    char const* GetName(SCollected const& item) const;
    std::vector<Row> OrderByName() const;
    std::vector<Row> OrderByName(std::vector<Row> moved) const;
    void Take(std::vector<Row> const& order);
    void TakeNames(std::vector<Row> const& order);
    void TakePlaces();
    void TakeTags(std::vector<Row> const& order);
    void TakeRegistry(std::vector<SRow> const& before, bool sharesEntries);
    bool KeepsTags(SCollected const& item) const;
    std::set<std::string> SplitTags(std::string const& tagString, char const* kindTag) const;
    bool HasDuplicates() const;
    void Register(Row row);
    void RegisterAll();
    void SetTagsOfRows(tarno::datamodel::ItemID const& id, std::set<std::string> const& tags,
                       bool isRegistered);

    typedef std::vector<std::vector<char>> TagMatches;
    bool IsNarrower(std::set<std::string> const& words) const;
    void SearchAll(std::set<std::string> const& words, TagMatches const& tagMatches,
                   std::vector<SMatch>& matches) const;
    void SearchLastMatches(std::set<std::string> const& words, TagMatches const& tagMatches,
                           std::vector<SMatch>& matches) const;
    void ForgetSearch();

    ItemTagsRegistry& m_Registry;
    /// Of the registry when it was brought up to this list.
    unsigned long m_RegistryRevision;
    std::vector<SRow> m_Rows;
    /// Row by the order of collecting.
    std::vector<Row> m_RowsAsCollected;
    /// Sorted by identifier, then by the order of collecting.
    Places m_Places;
    /// By row; empty for an unfinished list.
    TextBlock m_Names;
    TextBlock m_SearchNames;
    TagIndex m_Tags;
    /// The tag strings that were collected, by row.
    TextBlock m_TagStrings;

    std::vector<SCollected> m_Collected;
    std::vector<std::string> m_NewNames;
    std::vector<std::string> m_NewTags;
    std::size_t m_NameCount;
    /// The item that is expected next, in the order of the last collecting.
    std::size_t m_Expected;
    /// Items that were kept came in another order than the last time.
    bool m_IsReordered;

    /// The last search and the rows that it found; no words when there is none to build on.
    std::set<std::string> m_LastWords;
    std::vector<Row> m_LastMatches;
};

} // namespace nodebrowser

#endif
