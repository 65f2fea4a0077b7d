#include "namerank.h"

#include "palettetext.h"

#include <nodebrowser/textencoding.h>

#include <algorithm>
#include <iterator>
#include <locale>
#include <utility>

namespace nodepalette {

namespace {

// How far the whole name is from the text, as three flags; higher ones weigh more.
unsigned const kWholeBits = 3;
NameRank::Key const kNotEqual = 4;
NameRank::Key const kSpelledOtherwise = 2;
NameRank::Key const kNoPrefix = 1;

bool BeginsWith(std::string_view name, std::string const& text)
{
    return name.substr(0, text.size()) == text;
}

unsigned BitsFor(std::size_t maximum)
{
    unsigned bits = 0;
    for (; maximum; maximum >>= 1)
        ++bits;
    return bits;
}

} // namespace

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
        if (std::find(m_Words.begin(), m_Words.end(), word) == m_Words.end())
            m_Words.push_back(word);
        place = end;
    }
    std::copy_if(m_Text.begin(), m_Text.end(), std::back_inserter(m_Letters), IsLetterOrDigit);
    m_LetterCount = static_cast<std::uint8_t>(std::min(m_Letters.size(), kMaximumCount));
    m_Firsts[0] = m_Joined.c_str()[0];
    m_Firsts[1] = m_Text.c_str()[0];
    LayOutKey();
}

/// The fields from the highest bits down: missing words, the flags for the whole name, words not at
/// a word start, neighbours out of order, words in tags only, the length. With a single word, an
/// item that is listed without it in its name must have it in its tags.
void NameRank::LayOutKey()
{
    Key const wordCount = static_cast<Key>(m_Words.size());
    Key const pairCount = m_Words.empty() ? 0 : wordCount - 1;
    unsigned const countBits = BitsFor(wordCount);
    unsigned const pairShift = kLengthBits + countBits;
    unsigned const startShift = pairShift + BitsFor(pairCount);
    m_WholeShift = startShift + countBits;
    unsigned const missingShift = m_WholeShift + kWholeBits;
    m_KeyBits = missingShift + countBits;

    Key const tagOnly = Key(1) << kLengthBits;
    Key const missing = Key(1) << missingShift;
    m_Gains.inName = wordCount == 1 ? tagOnly : missing;
    m_Gains.inTag = wordCount == 1 ? 0 : missing - tagOnly;
    m_Gains.atStart = Key(1) << startShift;
    m_Gains.inOrder = Key(1) << pairShift;
    m_WorstKey = wordCount * (m_Gains.inName + m_Gains.atStart) + pairCount * m_Gains.inOrder
                 + ((kNotEqual | kSpelledOtherwise | kNoPrefix) << m_WholeShift);
}

std::vector<std::string> const& NameRank::GetWords() const
{
    return m_Words;
}

bool NameRank::IsEqual(std::string_view name) const
{
    return name == m_Joined || name == m_Text;
}

bool NameRank::IsSpelledAlike(std::string_view name) const
{
    std::size_t count = 0;
    for (char const character : name) {
        if (!IsLetterOrDigit(character))
            continue;
        if (count == m_Letters.size() || m_Letters[count] != character)
            return false;
        ++count;
    }
    return count > 0 && count == m_Letters.size();
}

bool NameRank::IsPrefix(std::string_view name) const
{
    return BeginsWith(name, m_Joined) || BeginsWith(name, m_Text);
}

/// The amount by which the whole name lowers the key.
NameRank::Key NameRank::CompareWhole(std::string_view name) const
{
    Key flags = 0;
    if (IsPrefix(name))
        flags |= IsEqual(name) ? kNotEqual | kNoPrefix : kNoPrefix;
    if (IsSpelledAlike(name))
        flags |= kSpelledOtherwise;
    return flags << m_WholeShift;
}

unsigned NameRank::GetKeyBits() const
{
    return m_KeyBits;
}

/// A radix sort from the lowest digit up, since a search may find a hundred thousand rows. Digits
/// are so wide that there are at most a few times as many counters as items.
void SortByKey(std::vector<unsigned long>& items, std::vector<NameRank::Key> const& keys,
               unsigned keyBits)
{
    unsigned const maximumBits = BitsFor(items.size()) + 1;
    unsigned const digitCount = (keyBits + maximumBits - 1) / maximumBits;
    unsigned const digitBits = (keyBits + digitCount - 1) / digitCount;
    NameRank::Key const digitMask = (1U << digitBits) - 1;
    std::vector<unsigned long> sorted(items.size());
    std::vector<std::uint32_t> places;
    for (unsigned shift = 0; shift < keyBits; shift += digitBits) {
        auto const digitOf = [=, keys = keys.data()](unsigned long item) {
            return keys[item] >> shift & digitMask;
        };
        places.assign(std::size_t(digitMask) + 1, 0);
        for (unsigned long const item : items)
            ++places[digitOf(item)];
        std::uint32_t place = 0;
        for (std::uint32_t& next : places)
            place += std::exchange(next, place);
        for (unsigned long const item : items)
            sorted[places[digitOf(item)]++] = item;
        items.swap(sorted);
    }
}

} // namespace nodepalette
