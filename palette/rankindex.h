#ifndef PALETTE_RANKINDEX_H
#define PALETTE_RANKINDEX_H

#include "namerank.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace nodepalette {

/// What ranking needs of the items, by their position in the item list: names in the form in which
/// they are searched, and tags. Asking the host about 100,000 items takes longer than ranking them,
/// so the answers are kept until the list is made anew.
class RankIndex
{
public:
    /// The host, as far as the index asks it.
    class Source
    {
    public:
        virtual ~Source() {}
        virtual std::size_t GetCount() const = 0;
        virtual std::string GetName(std::size_t item) const = 0;
        /// With the tag of its kind, separated by ";".
        virtual std::string GetTags(std::size_t item) const = 0;
        /// Tells items of one name apart, in each run of the program alike.
        virtual std::string GetUid(std::size_t item) const = 0;
    };

    /// The list was made anew.
    void Forget();
    /// Tags changed.
    void ForgetTags();

    /// Asks about up to that many items that are missing; false when none is.
    bool Fill(Source const& source, std::size_t count);

    /// Brings rows, given as positions in the item list in the panel's order, into the order for
    /// the lower-case text. Positions that are not in the list, and a text without words, leave
    /// all as it is.
    void Rank(Source const& source, std::string const& searchText,
              std::vector<unsigned long>& rows);

private:
    struct SName
    {
        std::size_t begin;
        std::uint64_t wordStarts;
        std::uint64_t letters;
        std::uint32_t length;
        /// The length in characters, which is what people see.
        std::uint32_t characterCount;
        /// The first item with the same name; such items stand one after the other in the list.
        std::uint32_t namesake;
    };

    /// A tag string that items carry, in lower case, and which words it has of the text that was
    /// searched for last.
    struct STags
    {
        std::string text;
        WordMask words;
        std::uint64_t search;
    };

    void AppendName(std::string const& name);
    void AppendTags(std::string const& tags);
    SSearchName GetName(std::size_t item) const;
    WordMask MatchTags(NameRank const& rank, std::size_t item);
    void OrderNamesakes(Source const& source, std::vector<SRankedRow>& rows) const;

    std::string m_Names;
    std::vector<SName> m_Places;
    /// By item, positions in m_Tags.
    std::vector<std::uint32_t> m_TagsOfItems;
    std::vector<STags> m_Tags;
    std::unordered_map<std::string, std::uint32_t> m_TagPositions;
    /// Numbers the searches.
    std::uint64_t m_Search = 0;
};

} // namespace nodepalette

#endif
