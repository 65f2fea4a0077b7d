#ifndef PALETTE_NAMERANK_H
#define PALETTE_NAMERANK_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nodepalette {

/// One bit a word of the search text, in the order typed.
typedef std::uint32_t WordMask;

/// One bit for each letter or digit of ASCII, in lower case, and one for some other characters
/// together.
typedef std::uint64_t LetterMask;

LetterMask FindLetters(std::string_view text);

/// A name as it is searched. What can be told by its letters alone is told without its text, which
/// is elsewhere in memory.
struct SSearchName
{
    static constexpr std::size_t kBlockSize = 16;

    /// In lower case, and followed by a block of zeros.
    std::string_view text;
    /// What FindWordStarts gives for the name.
    std::uint64_t wordStarts;
    LetterMask letters;
    /// Those at word starts.
    LetterMask startLetters;
    /// How many letters and digits there are.
    std::uint32_t letterCount;
    /// The length that people see, in characters.
    std::uint32_t characterCount;
    /// The first byte; zero for an empty name.
    char first;
};

/// Where words of a name begin: at its start, after anything that is neither letter nor digit,
/// after a digit, at a number, and at a hump ("fooBar", "RGBNoise"). Bit n is for byte n; the first
/// 64 bytes have one. `name` is in its own case.
std::uint64_t FindWordStarts(std::string_view name);

/// Those characters of the text that `starts` has a bit for.
LetterMask FindStartLetters(std::string_view text, std::uint64_t starts);

/// How many letters and digits there are.
std::size_t CountLetters(std::string_view text);

/// The order that people expect of search results, as a number for each item: the smaller, the
/// better. It is a pure function of the search text, the name, and the words found in tags; see
/// docs/palette.md for the rule and its reasons.
class NameRank
{
public:
    typedef std::uint32_t Key;
    struct SMatch
    {
        /// The words that occur in the name.
        WordMask words;
        /// For an item without tags.
        Key key;
    };
    /// Words beyond these are left out of account.
    static constexpr std::size_t kMaximumWords = 31;

    /// `searchText` is in lower case. Words are cut at white space, as the panel cuts them.
    explicit NameRank(std::string const& searchText);

    /// Distinct, in the order typed.
    std::vector<std::string> const& GetWords() const;
    WordMask GetAllWords() const;

    SMatch Match(SSearchName const& name) const;
    /// The key of an item of which tags have these words, in addition to its name.
    Key AddTags(SMatch const& match, WordMask tagWords) const;
    /// Keys are below 2 to this power: few for few words.
    unsigned GetKeyBits() const;

private:
    struct SWordFacts
    {
        LetterMask letters;
        /// It is a letter or digit that has a bit of its own.
        bool isLetter;
        /// It is one character as people see it, which stands nearly anywhere.
        bool isSingle;
    };

    bool IsEqual(std::string_view name) const;
    bool IsSpelledAlike(SSearchName const& name) const;
    bool IsPrefix(std::string_view name) const;
    Key CompareWhole(SSearchName const& name) const;

    /// As typed, with single blanks between the words, and with nothing but letters and digits.
    std::string m_Text;
    std::string m_Joined;
    std::string m_Letters;
    std::vector<std::string> m_Words;
    /// One for each word.
    std::vector<SWordFacts> m_WordFacts;
    Key m_WordCount;
    /// Of neighbouring words.
    Key m_PairCount;
    /// So many bits hold a number of words, or of pairs of them.
    unsigned m_CountBits;
    unsigned m_PairBits;
    unsigned m_KeyBits;
};

/// A row to be sorted: its key, and where its item stands in the item list.
struct SRankedRow
{
    NameRank::Key key;
    std::uint32_t item;
};

/// Smallest key first; equal keys stay in their order.
void SortByKey(std::vector<SRankedRow>& rows, unsigned keyBits);

} // namespace nodepalette

#endif
