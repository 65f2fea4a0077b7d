#ifndef PALETTE_NAMERANK_H
#define PALETTE_NAMERANK_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nodepalette {

/// One bit a word, in the order typed.
typedef std::uint32_t WordMask;

/// A name as it is searched.
struct SSearchName
{
    /// In lower case.
    std::string_view text;
    /// Bit n is set when a word of the name begins at byte n; the first 64 bytes have one.
    std::uint64_t wordStarts;
    /// What FindLetters gives for the text.
    std::uint64_t letters;
};

/// One bit for each character that occurs, or for some of them together: a word does not occur in
/// a name that lacks one of its bits.
std::uint64_t FindLetters(std::string_view text);

/// Where words of a name begin: at its start, after anything that is neither letter nor digit,
/// after a digit, at a number, and at a hump ("fooBar", "RGBNoise"). `name` is in its own case.
std::uint64_t FindWordStarts(std::string_view name);

/// What of the search text was found in a name.
struct SNameMatch
{
    /// The words that occur in the name.
    WordMask words;
    /// How many of them begin a word of the name.
    unsigned startCount;
    /// How many neighbours in the text stand in the name in the order typed.
    unsigned orderedPairs;
    /// The whole name is the text.
    bool isEqual;
    /// The name is the text but for what is neither letter nor digit: "audiomixer" for
    /// "audio mixer".
    bool isSpelledAlike;
    bool isPrefix;
};

/// The order that people expect of search results, as a number for each item: the smaller, the
/// better. It is a pure function of the search text, the name, and the words found in tags; see
/// docs/palette.md for the rule and its reasons.
class NameRank
{
public:
    typedef std::uint32_t Key;
    static constexpr unsigned kKeyBits = 30;
    /// Words beyond these are left out of account.
    static constexpr std::size_t kMaximumWords = 31;

    /// `searchText` is in lower case. Words are cut at white space, as the panel cuts them.
    explicit NameRank(std::string const& searchText);

    /// Distinct, in the order typed.
    std::vector<std::string> const& GetWords() const;
    WordMask GetAllWords() const;

    SNameMatch Match(SSearchName const& name) const;
    /// `tagWords` are the words found in tags; those in the name need not be among them. The
    /// length is in characters.
    Key GetKey(SNameMatch const& match, WordMask tagWords, std::size_t nameLength) const;

private:
    bool IsEqual(std::string_view name) const;
    bool IsSpelledAlike(std::string_view name) const;
    bool IsPrefix(std::string_view name) const;

    /// As typed, with single blanks between the words, and with nothing but letters and digits.
    std::string m_Text;
    std::string m_Joined;
    std::string m_Letters;
    std::vector<std::string> m_Words;
    std::vector<std::uint64_t> m_WordLetters;
};

/// A row to be sorted: its key, and where its item stands in the item list.
struct SRankedRow
{
    NameRank::Key key;
    std::uint32_t item;
};

/// Smallest key first; equal keys stay in their order.
void SortByKey(std::vector<SRankedRow>& rows);

} // namespace nodepalette

#endif
