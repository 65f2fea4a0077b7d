#ifndef PALETTE_RANKINDEX_H
#define PALETTE_RANKINDEX_H

#include "itemkeys.h"
#include "namerank.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace nodepalette {

/// The data that ranking needs, by position in the item list: the names in their search form, and
/// the tags. Asking the host about 100,000 items takes longer than ranking them, so the answers are
/// kept until the list is made anew.
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

    /// To be called when the list was made anew.
    void Forget();
    /// To be called when tags changed.
    void ForgetTags();

    /// Asks about up to that many items that are missing; false when none is.
    bool Fill(Source const& source, std::size_t count);

    /// Brings rows, given as positions in the item list in the panel's order, into the order for
    /// the lower-case text. Positions that are not in the list, and a text without words, leave
    /// all as it is.
    void Rank(Source const& source, std::string const& searchText,
              std::vector<unsigned long>& rows);

private:
    /// Items that share a name stand one after the other in the list.
    struct SNamesake
    {
        /// The first item with the same name.
        std::uint32_t first;
        /// Its place among them in the order of Rank.
        std::uint32_t place;
    };

    struct STag
    {
        /// In lower case.
        std::string text;
        /// Those that carry it, in their order.
        std::vector<std::uint32_t> items;
    };

    void AppendName(std::string const& name);
    void AppendTags(std::string const& tags);
    std::uint32_t FindTag(std::string const& tag);
    void PlaceNamesakes(Source const& source, std::uint32_t first);
    void AddTagged(std::string const& word);
    void OrderNamesakes(std::vector<unsigned long>& rows) const;

    NameTable m_Names;
    ItemKeys m_Keys;
    std::vector<SNamesake> m_Namesakes;
    bool m_HasNamesakes = false;

    std::vector<STag> m_Tags;
    std::unordered_map<std::string, std::uint32_t> m_TagPositions;
    /// How many items have been asked for their tags.
    std::uint32_t m_TaggedCount = 0;
};

} // namespace nodepalette

#endif
