#ifndef NODEBROWSER_SEARCHINDEX_H
#define NODEBROWSER_SEARCHINDEX_H

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

/// Names and tags of a list of items, kept in contiguous memory so that a search sweeps through
/// them instead of asking the host item by item. Rows are positions in the item list.
class SearchIndex
{
public:
    /// The score of a row that matches nothing.
    static constexpr unsigned long kNoMatch = 10000;
    /// The score of a row of which only a tag matches.
    static constexpr unsigned long kTagMatch = 1000;

    /// The form in which names are searched: lower case, 8-bit.
    static std::string ToSearchName(std::string const& name);

    void Clear();
    /// Adds a row at the end. The name has its search form; the case of tags is ignored.
    /// `kinds` are bits that the owner chooses.
    void Append(std::string const& searchName, std::set<std::string> const& tags,
                unsigned char kinds);
    void SetTags(std::size_t row, std::set<std::string> const& tags);

    std::size_t GetCount() const;
    unsigned char GetKinds(std::size_t row) const;

    /// A score for each row, smaller is better, kNoMatch for none. Any one word suffices. Words
    /// count in the order of the set: a word inside the name overwrites what earlier words gave,
    /// one at its start is final, a tag only serves a row without any match yet.
    std::vector<unsigned long> Score(std::set<std::string> const& words) const;

private:
    typedef std::uint32_t TagNumber;

    /// Tags of a row: a stretch of m_RowTags.
    struct STagRange
    {
        std::uint32_t begin;
        std::uint32_t count;
    };

    /// Texts one after the other, each ended by a zero, which no word contains.
    struct STextBlock
    {
        std::string text;
        std::vector<std::size_t> begins;

        void Append(std::string const& entry);
        void Clear();
        template <class Hit>
        void ForEachEntryWith(std::string const& word, Hit hit) const;
    };

    struct SScores;

    TagNumber NumberOf(std::string const& tag);
    STagRange Store(std::set<std::string> const& tags);
    void ScoreTags(std::string const& word, SScores& scores) const;

    STextBlock m_Names;
    STextBlock m_Tags;
    std::unordered_map<std::string, TagNumber> m_TagNumbers;
    std::vector<TagNumber> m_RowTags;
    std::vector<STagRange> m_RowTagRanges;
    std::vector<unsigned char> m_RowKinds;
};

#endif
