#include "namerank.h"

#include "palettetext.h"

#include <nodebrowser/textencoding.h>

#include <QtAlgorithms>

#include <algorithm>
#include <iterator>
#include <locale>
#include <utility>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace nodepalette {

namespace {

// Fields of a key, in bits; those that hold a number of words are as wide as it takes.
unsigned const kFlagBits = 3;
unsigned const kLengthBits = 7;
std::size_t const kMaximumLength = (1U << kLengthBits) - 1;

// What a name as a whole is not; the higher one decides.
NameRank::Key const kNotEqual = 4;
NameRank::Key const kSpelledOtherwise = 2;
NameRank::Key const kNoPrefix = 1;

/// Bytes of a name that have a bit.
std::size_t const kPlaceCount = 64;

/// Bit n is for byte n of a name.
typedef std::uint64_t Places;

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

bool BeginsWith(std::string_view name, std::string const& text)
{
    return name.substr(0, text.size()) == text;
}

/// Bits below are for one character each.
unsigned const kFirstSharedBit = 36;

unsigned LetterBit(char character)
{
    if (character >= 'a' && character <= 'z')
        return static_cast<unsigned>(character - 'a');
    if (IsDigit(character))
        return 26 + static_cast<unsigned>(character - '0');
    return kFirstSharedBit + static_cast<unsigned char>(character) % (64 - kFirstSharedBit);
}

LetterMask MaskOf(char character)
{
    return LetterMask(1) << LetterBit(character);
}

/// `places` are not empty.
std::size_t FirstOf(Places places)
{
    return qCountTrailingZeroBits(quint64(places));
}

/// Where the word's first and last character stand as far from each other as in the word.
Places FindEnds(std::string_view name, std::string const& word)
{
    std::size_t const last = word.size() - 1;
    std::size_t const end = std::min(name.size(), kPlaceCount);
    Places places = 0;
#ifdef __SSE2__
    __m128i const first = _mm_set1_epi8(word.front());
    __m128i const other = _mm_set1_epi8(word.back());
    auto const blockAt = [&](std::size_t place) {
        return _mm_loadu_si128(reinterpret_cast<__m128i const*>(name.data() + place));
    };
    for (std::size_t begin = 0; begin + last < end; begin += SSearchName::kBlockSize) {
        __m128i const equal = _mm_and_si128(_mm_cmpeq_epi8(blockAt(begin), first),
                                            _mm_cmpeq_epi8(blockAt(begin + last), other));
        places |= static_cast<Places>(_mm_movemask_epi8(equal)) << begin;
    }
#else
    for (std::size_t place = 0; place + last < end; ++place)
        places |=
            static_cast<Places>(name[place] == word.front() && name[place + last] == word.back())
            << place;
#endif
    // A word that ends behind the places is none of theirs.
    return places & (~Places(0) >> last);
}

/// Where the word begins, as far as it ends within the places.
Places FindWord(std::string_view name, std::string const& word)
{
    if (word.size() > kPlaceCount)
        return 0;
    Places places = FindEnds(name, word);
    for (Places left = word.size() > 2 ? places : 0; left; left &= left - 1) {
        std::size_t const place = FirstOf(left);
        if (name.compare(place, word.size(), word) != 0)
            places &= ~(Places(1) << place);
    }
    return places;
}

/// A word that is not wholly within the places.
bool IsFurtherOn(std::string_view name, std::string const& word)
{
    return name.size() > kPlaceCount && name.find(word) != std::string_view::npos;
}

unsigned BitsFor(std::size_t maximum)
{
    unsigned bits = 0;
    for (; maximum; maximum >>= 1)
        ++bits;
    return bits;
}

} // namespace

std::uint64_t FindWordStarts(std::string_view name)
{
    std::uint64_t starts = 0;
    std::size_t const length = std::min(name.size(), kPlaceCount);
    for (std::size_t place = 0; place < length; ++place) {
        char const before = place > 0 ? name[place - 1] : ' ';
        char const after = place + 1 < name.size() ? name[place + 1] : ' ';
        if (IsWordStart(before, name[place], after))
            starts |= std::uint64_t(1) << place;
    }
    // Whatever the name begins with: "_noise" is found at its start.
    return starts | 1;
}

LetterMask FindLetters(std::string_view text)
{
    LetterMask letters = 0;
    for (char const character : text)
        letters |= MaskOf(character);
    return letters;
}

LetterMask FindStartLetters(std::string_view text, std::uint64_t starts)
{
    LetterMask letters = 0;
    for (std::size_t place = 0; place < std::min(text.size(), kPlaceCount); ++place) {
        if (starts >> place & 1)
            letters |= MaskOf(text[place]);
    }
    return letters;
}

std::size_t CountLetters(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsLetterOrDigit));
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
        if (std::find(m_Words.begin(), m_Words.end(), word) == m_Words.end())
            m_Words.push_back(word);
        place = end;
    }
    std::copy_if(m_Text.begin(), m_Text.end(), std::back_inserter(m_Letters), IsLetterOrDigit);
    for (std::string const& word : m_Words) {
        bool const isLetter = word.size() == 1 && LetterBit(word[0]) < kFirstSharedBit;
        m_WordFacts.push_back(SWordFacts{FindLetters(word), isLetter, CountCharacters(word) == 1});
    }
    m_WordCount = static_cast<Key>(m_Words.size());
    m_PairCount = m_Words.empty() ? 0 : m_WordCount - 1;
    m_CountBits = BitsFor(m_WordCount);
    m_PairBits = BitsFor(m_PairCount);
    m_KeyBits = 3 * m_CountBits + m_PairBits + kFlagBits + kLengthBits;
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

bool NameRank::IsSpelledAlike(SSearchName const& name) const
{
    std::size_t place = 0;
    for (char const character : name.text) {
        if (IsLetterOrDigit(character) && m_Letters[place++] != character)
            return false;
    }
    return place > 0;
}

bool NameRank::IsPrefix(std::string_view name) const
{
    return BeginsWith(name, m_Joined) || BeginsWith(name, m_Text);
}

/// Most names are none of it, which their first character and length tell.
NameRank::Key NameRank::CompareWhole(SSearchName const& name) const
{
    Key flags = kNotEqual | kSpelledOtherwise | kNoPrefix;
    if (!m_Words.empty() && (name.first == m_Joined[0] || name.first == m_Text[0])
        && IsPrefix(name.text))
        flags ^= IsEqual(name.text) ? kNotEqual | kNoPrefix : kNoPrefix;
    if (name.letterCount == m_Letters.size() && IsSpelledAlike(name))
        flags ^= kSpelledOtherwise;
    return flags;
}

NameRank::SMatch NameRank::Match(SSearchName const& name) const
{
    WordMask found = 0;
    Key missing = m_WordCount;
    Key notStarts = m_WordCount;
    Key orderedPairs = 0;
    std::size_t end = kPlaceCount; // of the word before, where that was found
    for (std::size_t number = 0; number < m_WordFacts.size(); ++number) {
        SWordFacts const word = m_WordFacts[number];
        std::size_t const endBefore = std::exchange(end, kPlaceCount);
        bool isFound = (word.letters & ~name.letters) == 0;
        bool isStart = isFound && (word.letters & name.startLetters);
        if (isFound && !word.isLetter) {
            std::string const& text = m_Words[number];
            Places const places = FindWord(name.text, text);
            Places const starts = places & name.wordStarts;
            isFound = places || IsFurtherOn(name.text, text);
            isStart = starts != 0;
            // Any occurrence behind the word before will do: "rgb noise" is in order in
            // "noise rgb noise".
            orderedPairs += !word.isSingle && endBefore < kPlaceCount && places >> endBefore;
            if (places && !word.isSingle)
                end = FirstOf(starts ? starts : places) + text.size();
        }
        found |= WordMask(isFound) << number;
        missing -= isFound;
        notStarts -= isStart;
    }

    Key key = missing << kFlagBits | CompareWhole(name);
    key = key << m_CountBits | notStarts;
    key = key << m_PairBits | (m_PairCount - orderedPairs);
    key = key << m_CountBits; // words found in tags alone
    Key const length = static_cast<Key>(std::min<std::size_t>(name.characterCount, kMaximumLength));
    return {found, key << kLengthBits | length};
}

NameRank::Key NameRank::AddTags(SMatch const& match, WordMask tagWords) const
{
    Key onlyTags = 0;
    for (WordMask words = tagWords & ~match.words; words; words &= words - 1)
        ++onlyTags;
    return match.key - (onlyTags << (m_KeyBits - m_CountBits)) + (onlyTags << kLengthBits);
}

unsigned NameRank::GetKeyBits() const
{
    return m_KeyBits;
}

/// Counts instead of comparing, some bits at a time from the lowest up: a search may find a hundred
/// thousand rows, and most of their keys differ in a few bits.
void SortByKey(std::vector<SRankedRow>& rows, unsigned keyBits)
{
    unsigned const maximumBits = 13;
    unsigned const digitCount = (keyBits + maximumBits - 1) / maximumBits;
    unsigned const digitBits = (keyBits + digitCount - 1) / digitCount;
    NameRank::Key const digitMask = (1U << digitBits) - 1;
    std::vector<SRankedRow> sorted(rows.size());
    std::vector<std::uint32_t> places;
    for (unsigned shift = 0; shift < keyBits; shift += digitBits) {
        auto const digitOf = [=](SRankedRow const& row) {
            return row.key >> shift & digitMask;
        };
        places.assign(std::size_t(digitMask) + 1, 0);
        for (SRankedRow const& row : rows)
            ++places[digitOf(row)];
        std::uint32_t place = 0;
        for (std::uint32_t& next : places)
            place += std::exchange(next, place);
        for (SRankedRow const& row : rows)
            sorted[places[digitOf(row)]++] = row;
        rows.swap(sorted);
    }
}

} // namespace nodepalette
