#ifndef PALETTE_NAMERANK_H
#define PALETTE_NAMERANK_H

#include "nametable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nodepalette {

/// The order that people expect of search results, as a number for each item: the smaller, the
/// better. It is a pure function of the search text, the name, and the words found in tags; see
/// docs/palette.md for the rule and its reasons.
class NameRank
{
public:
    typedef std::uint32_t Key;
    /// The amounts by which a key is lowered for each word that is found: in the name, at the start
    /// of a word in it, behind the previous word; or in the tags only.
    struct SGains
    {
        Key inName;
        Key atStart;
        Key inOrder;
        Key inTag;
    };
    /// Further words are ignored.
    static constexpr std::size_t kMaximumWords = 31;

    /// `searchText` is in lower case. Words are cut at white space, as the panel cuts them.
    explicit NameRank(std::string const& searchText);

    /// Distinct, in the order typed.
    std::vector<std::string> const& GetWords() const;

    /// The key of an item before words are searched. `getText` returns its name, and is called only
    /// if the shape does not rule out that the whole name resembles the text.
    template <class GetText>
    Key RankWhole(SNameShape const& shape, GetText getText) const
    {
        bool const mayBeAlike = shape.first == m_Firsts[0] || shape.first == m_Firsts[1]
                                || shape.letterCount == m_LetterCount;
        return m_WorstKey - (mayBeAlike ? CompareWhole(getText()) : 0)
               + std::min<Key>(shape.characterCount, kMaximumLength);
    }

    SGains const& GetGains() const
    {
        return m_Gains;
    }

    /// The number of bits that keys use, which is small for few words.
    unsigned GetKeyBits() const;

private:
    static constexpr unsigned kLengthBits = 7;
    static constexpr Key kMaximumLength = (Key(1) << kLengthBits) - 1;

    void LayOutKey();
    bool IsEqual(std::string_view name) const;
    bool IsSpelledAlike(std::string_view name) const;
    bool IsPrefix(std::string_view name) const;
    Key CompareWhole(std::string_view name) const;

    /// As typed, with single blanks between the words, and with nothing but letters and digits.
    std::string m_Text;
    std::string m_Joined;
    std::string m_Letters;
    std::vector<std::string> m_Words;
    /// The first bytes of the two texts that a name may begin with.
    char m_Firsts[2];
    /// As in SNameShape.
    std::uint8_t m_LetterCount;
    /// The key of an item in which no word is found.
    Key m_WorstKey;
    SGains m_Gains;
    /// Where the bits for the name as a whole are.
    unsigned m_WholeShift;
    unsigned m_KeyBits;
};

/// Orders items by their keys, smallest first; items of equal keys stay in their order.
void SortByKey(std::vector<unsigned long>& items, std::vector<NameRank::Key> const& keys,
               unsigned keyBits);

} // namespace nodepalette

#endif
