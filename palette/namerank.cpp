#include "namerank.h"

#include <textencoding.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <locale>

namespace nodepalette {

namespace {

// The fields of a key, from the most important down: bits each.
unsigned const kWordBits = 5;
unsigned const kFlagBits = 1;
unsigned const kLengthBits = 7;
static_assert(4 * kWordBits + 3 * kFlagBits + kLengthBits == NameRank::kKeyBits,
              "the fields make up the key");
static_assert(NameRank::kMaximumWords < (1U << kWordBits), "a field holds a number of words");

/// Word starts beyond these have no bit.
std::size_t const kMaximumStarts = 64;

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool IsUpper(char character)
{
    return character >= 'A' && character <= 'Z';
}

/// Bytes beyond ASCII belong to letters, whatever the encoding.
bool IsLower(char character)
{
    return (character >= 'a' && character <= 'z') || (static_cast<unsigned char>(character) & 0x80);
}

bool IsLetterOrDigit(char character)
{
    return IsUpper(character) || IsLower(character) || IsDigit(character);
}

bool IsWordStart(char before, char character, char after)
{
    if (!IsLetterOrDigit(character))
        return false;
    if (IsDigit(before) || IsDigit(character))
        return IsDigit(before) != IsDigit(character);
    if (!IsLetterOrDigit(before))
        return true;
    return IsUpper(character) && (IsLower(before) || IsLower(after));
}

bool Occurs(std::string_view name, std::size_t place, std::string_view word)
{
    return name[place] == word[0] && name.substr(place, word.size()) == word;
}

/// The first place of the word that begins a word of the name, if there is one; otherwise its
/// first place at all, npos for none.
std::size_t FindWord(SSearchName const& name, std::string const& word, std::uint64_t letters,
                     bool& isStart)
{
    isStart = false;
    if (letters & ~name.letters)
        return std::string_view::npos;
    std::size_t const first = name.text.find(word);
    std::size_t place = first;
    while (place < kMaximumStarts && !(name.wordStarts >> place & 1))
        place = name.text.find(word, place + 1);
    isStart = place < kMaximumStarts;
    return isStart ? place : first;
}

NameRank::Key Append(NameRank::Key key, unsigned bits, std::size_t value)
{
    NameRank::Key const maximum = (1U << bits) - 1;
    return key << bits | static_cast<NameRank::Key>(std::min<std::size_t>(value, maximum));
}

unsigned CountBits(WordMask mask)
{
    unsigned count = 0;
    for (; mask; mask &= mask - 1)
        ++count;
    return count;
}

} // namespace

std::uint64_t FindWordStarts(std::string_view name)
{
    std::uint64_t starts = 0;
    std::size_t const length = std::min(name.size(), kMaximumStarts);
    for (std::size_t place = 0; place < length; ++place) {
        char const before = place > 0 ? name[place - 1] : ' ';
        char const after = place + 1 < name.size() ? name[place + 1] : ' ';
        if (IsWordStart(before, name[place], after))
            starts |= std::uint64_t(1) << place;
    }
    // Whatever the name begins with: "_noise" is found at its start.
    return starts | 1;
}

std::uint64_t FindLetters(std::string_view text)
{
    std::uint64_t letters = 0;
    for (char const character : text)
        letters |= std::uint64_t(1) << (static_cast<unsigned char>(character) & 63);
    return letters;
}

NameRank::NameRank(std::string const& searchText)
    : m_Text(searchText)
{
    std::locale const locale = nodebrowser::GetTextLocale();
    auto const isSpace = [&](char character) {
        return std::isspace(character, locale);
    };
    std::string::const_iterator place = m_Text.begin();
    while (m_Words.size() < kMaximumWords) {
        place = std::find_if_not(place, m_Text.cend(), isSpace);
        if (place == m_Text.cend())
            break;
        std::string::const_iterator const end = std::find_if(place, m_Text.cend(), isSpace);
        std::string const word(place, end);
        m_Joined += (m_Joined.empty() ? "" : " ") + word;
        if (std::find(m_Words.begin(), m_Words.end(), word) == m_Words.end()) {
            m_Words.push_back(word);
            m_WordLetters.push_back(FindLetters(word));
        }
        place = end;
    }
    std::copy_if(m_Text.begin(), m_Text.end(), std::back_inserter(m_Letters), IsLetterOrDigit);
}

std::vector<std::string> const& NameRank::GetWords() const
{
    return m_Words;
}

WordMask NameRank::GetAllWords() const
{
    return (WordMask(1) << m_Words.size()) - 1;
}

bool NameRank::IsEqual(std::string_view name) const
{
    return name == m_Joined || name == m_Text;
}

bool NameRank::IsSpelledAlike(std::string_view name) const
{
    std::size_t place = 0;
    for (char const character : name) {
        if (!IsLetterOrDigit(character))
            continue;
        if (place == m_Letters.size() || m_Letters[place] != character)
            return false;
        ++place;
    }
    return place > 0 && place == m_Letters.size();
}

bool NameRank::IsPrefix(std::string_view name) const
{
    return !name.empty() && !m_Joined.empty()
           && (Occurs(name, 0, m_Joined) || Occurs(name, 0, m_Text));
}

SNameMatch NameRank::Match(SSearchName const& name) const
{
    SNameMatch match = {0, 0, 0, false, IsSpelledAlike(name.text), IsPrefix(name.text)};
    match.isEqual = match.isPrefix && IsEqual(name.text);
    std::size_t end = std::string_view::npos; // of the word before, where that was found
    for (std::size_t number = 0; number < m_Words.size(); ++number) {
        std::string const& word = m_Words[number];
        bool isStart = false;
        std::size_t const place = FindWord(name, word, m_WordLetters[number], isStart);
        if (place == std::string_view::npos) {
            end = place;
            continue;
        }
        match.words |= WordMask(1) << number;
        match.startCount += isStart;
        // Any occurrence behind the word before will do: "rgb noise" is in order in
        // "noise rgb noise".
        if (end != std::string_view::npos)
            match.orderedPairs += name.text.find(word, end) != std::string_view::npos;
        end = place + word.size();
    }
    return match;
}

NameRank::Key NameRank::GetKey(SNameMatch const& match, WordMask tagWords,
                               std::size_t nameLength) const
{
    std::size_t const wordCount = m_Words.size();
    WordMask const onlyTags = tagWords & ~match.words;
    Key key = 0;
    key = Append(key, kWordBits, wordCount - CountBits(match.words | tagWords));
    key = Append(key, kFlagBits, !match.isEqual);
    key = Append(key, kFlagBits, !match.isSpelledAlike);
    key = Append(key, kFlagBits, !match.isPrefix);
    key = Append(key, kWordBits, wordCount - match.startCount);
    key = Append(key, kWordBits, wordCount - match.orderedPairs);
    key = Append(key, kWordBits, CountBits(onlyTags));
    return Append(key, kLengthBits, nameLength);
}

/// Counts instead of comparing, ten bits at a time from the lowest up: a search may find a hundred
/// thousand rows, and most of their keys differ in a few bits.
void SortByKey(std::vector<SRankedRow>& rows)
{
    unsigned const digitBits = 10;
    NameRank::Key const digitMask = (1U << digitBits) - 1;
    std::size_t const digitCount = NameRank::kKeyBits / digitBits;
    std::array<std::array<std::size_t, 1U << digitBits>, digitCount> places = {};
    for (SRankedRow const& row : rows) {
        for (std::size_t digit = 0; digit < digitCount; ++digit)
            ++places[digit][row.key >> digit * digitBits & digitMask];
    }

    std::vector<SRankedRow> sorted(rows.size());
    for (std::size_t digit = 0; digit < digitCount; ++digit) {
        auto const digitOf = [=](SRankedRow const& row) {
            return row.key >> digit * digitBits & digitMask;
        };
        // A digit that all rows share orders nothing.
        if (rows.empty() || places[digit][digitOf(rows.front())] == rows.size())
            continue;
        std::size_t place = 0;
        for (std::size_t& next : places[digit]) {
            std::size_t const count = next;
            next = place;
            place += count;
        }
        for (SRankedRow const& row : rows)
            sorted[places[digit][digitOf(row)]++] = row;
        rows.swap(sorted);
    }
}

} // namespace nodepalette
