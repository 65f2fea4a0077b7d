#ifndef PALETTE_ITEMKEYS_H
#define PALETTE_ITEMKEYS_H

#include "namerank.h"
#include "nametable.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace nodepalette {

/// Finds the keys of many items for one search, word by word over all of them. Used for one search
/// after the other, it asks for memory once.
class ItemKeys
{
public:
    /// Positions in the table.
    typedef std::vector<unsigned long> Items;

    /// Begins a search. All are kept by reference until it ends. Only these items get keys.
    void Begin(NameTable const& names, NameRank const& rank, Items const& items);

    /// The words in the order typed.
    void FindInNames(SSearchWord const& word);
    /// Items that have the last word in their tags.
    void AddTagged(std::vector<std::uint32_t> const& items);

    /// By position in the table.
    std::vector<NameRank::Key> const& Get() const
    {
        return m_Keys;
    }

private:
    /// How a word was found.
    enum eFound : std::uint8_t
    {
        eAnywhere = 1,
        eAtStart = 2,
        eInOrder = 4
    };

    template <class Visit>
    void ForEachItem(Visit visit) const;
    void FindLetter(SSearchWord const& word);
    void NoteHit(SSearchWord const& word, std::size_t item, std::size_t place);

    NameTable const* m_Names = nullptr;
    NameRank const* m_Rank = nullptr;
    Items const* m_Items = nullptr;
    /// Sweeping over all names is faster than looking at many of them one by one.
    bool m_AreMany = false;
    /// The last word is a single character. Its order is ignored: it is found nearly anywhere.
    bool m_IsLastSingle = false;

    // By position in the table. Values of items that are not searched are left from other searches.
    std::vector<NameRank::Key> m_Keys;
    /// How the last word was found, from eFound.
    std::vector<std::uint8_t> m_Found;
    /// Where the last word ends in the name, and the one before; kPlaceCount for nowhere.
    std::vector<std::uint8_t> m_Ends;
    std::vector<std::uint8_t> m_EndsBefore;
};

} // namespace nodepalette

#endif
