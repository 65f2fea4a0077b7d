#include "nametable.h"

#include "palettetext.h"

#include <algorithm>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace nodepalette {

namespace {

/// Zeros behind the last text, so that kPlaceCount places of a shorter name can be searched, and up
/// to kPlaceCount bytes read from each.
std::size_t const kTextMargin = 2 * kPlaceCount;

bool IsDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool IsUpper(char character)
{
    return character >= 'A' && character <= 'Z';
}

bool IsLower(char character)
{
    return (character >= 'a' && character <= 'z') || (static_cast<unsigned char>(character) & 0x80);
}

} // namespace

bool IsLetterOrDigit(char character)
{
    return IsUpper(character) || IsLower(character) || IsDigit(character);
}

namespace {

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

/// `name` is in its own case.
Places FindWordStarts(std::string_view name)
{
    Places starts = 0;
    std::size_t const length = std::min(name.size(), kPlaceCount);
    for (std::size_t place = 0; place < length; ++place) {
        char const before = place > 0 ? name[place - 1] : ' ';
        char const after = place + 1 < name.size() ? name[place + 1] : ' ';
        if (IsWordStart(before, name[place], after))
            starts |= Places(1) << place;
    }
    // Whatever the name begins with: "_noise" is found at its start.
    return starts | 1;
}

/// Bits below this one stand for a single character each.
unsigned const kFirstSharedBit = 36;

unsigned LetterBit(char character)
{
    if (character >= 'a' && character <= 'z')
        return static_cast<unsigned>(character - 'a');
    if (IsDigit(character))
        return 26 + static_cast<unsigned>(character - '0');
    return kFirstSharedBit + static_cast<unsigned char>(character) % (64 - kFirstSharedBit);
}

LetterMask FindLetters(std::string_view text)
{
    LetterMask letters = 0;
    for (char const character : text)
        letters |= LetterMask(1) << LetterBit(character);
    return letters;
}

LetterMask FindStartLetters(std::string_view text, Places starts)
{
    LetterMask letters = 0;
    for (std::size_t place = 0; place < std::min(text.size(), kPlaceCount); ++place) {
        if (starts >> place & 1)
            letters |= LetterMask(1) << LetterBit(text[place]);
    }
    return letters;
}

std::uint8_t Limit(std::size_t count)
{
    return static_cast<std::uint8_t>(std::min(count, kMaximumCount));
}

/// The places of `character` that have `other` at `distance` behind them.
Places FindPair(char const* text, char character, std::size_t distance, char other)
{
    Places places = 0;
#ifdef __SSE2__
    __m128i const first = _mm_set1_epi8(character);
    __m128i const second = _mm_set1_epi8(other);
    auto const blockAt = [&](std::size_t place) {
        return _mm_loadu_si128(reinterpret_cast<__m128i const*>(text + place));
    };
    for (std::size_t place = 0; place < kPlaceCount; place += sizeof(__m128i)) {
        __m128i const equal = _mm_and_si128(_mm_cmpeq_epi8(blockAt(place), first),
                                            _mm_cmpeq_epi8(blockAt(place + distance), second));
        places |= static_cast<Places>(_mm_movemask_epi8(equal)) << place;
    }
#else
    for (std::size_t place = 0; place < kPlaceCount; ++place)
        places |= static_cast<Places>(text[place] == character && text[place + distance] == other)
                  << place;
#endif
    return places;
}

} // namespace

SSearchWord::SSearchWord(std::string const& word)
    : text(word)
    , head(0)
    , headMask(0)
    , letters(FindLetters(word))
    , isLetter(word.size() == 1 && LetterBit(word[0]) < kFirstSharedBit)
    , isSingle(CountCharacters(word) == 1)
{
    std::size_t const size = std::min(word.size(), sizeof(head));
    std::memcpy(&head, word.data(), size);
    std::memset(&headMask, 0xFF, size);
}

NameTable::NameTable()
{
    Clear();
}

void NameTable::Clear()
{
    m_Texts.assign(kTextMargin, '\0');
    m_Begins.assign(1, 0);
    m_ItemAt.clear();
    m_Shapes.clear();
    m_Letters.clear();
    m_StartLetters.clear();
    m_WordStarts.clear();
}

void NameTable::Append(std::string const& name)
{
    std::string const lower = ToSearchForm(name);
    // Where lower case has another length, places in the name are no places in its search form.
    m_WordStarts.push_back(FindWordStarts(lower.size() == name.size() ? name : lower));
    m_Letters.push_back(FindLetters(lower));
    m_StartLetters.push_back(FindStartLetters(lower, m_WordStarts.back()));
    auto const letterCount = std::count_if(lower.begin(), lower.end(), IsLetterOrDigit);
    m_Shapes.push_back(SNameShape{lower.c_str()[0], Limit(static_cast<std::size_t>(letterCount)),
                                  Limit(CountCharacters(lower))});
    m_Texts.insert(m_Begins.back(), lower.c_str(), lower.size() + 1);
    m_Begins.push_back(m_Begins.back() + lower.size() + 1);
    m_ItemAt.resize((m_Begins.back() + kStretch - 1) / kStretch,
                    static_cast<std::uint32_t>(m_Shapes.size() - 1));
}

std::string_view NameTable::GetText(std::size_t item) const
{
    std::size_t const begin = m_Begins[item];
    return std::string_view(m_Texts.data() + begin, m_Begins[item + 1] - begin - 1);
}

/// The places from `begin` on at which the word begins. Candidates match in their first and last
/// bytes, which leaves few to be compared in full.
Places NameTable::FindWord(SSearchWord const& word, std::size_t begin) const
{
    char const* const text = m_Texts.data() + begin;
    std::size_t const last = std::min(word.text.size(), kPlaceCount) - 1;
    Places found = FindPair(text, word.text[0], last, word.text[last]);
    for (Places left = last > 1 ? found : 0; left; left &= left - 1) {
        std::size_t const place = FirstOf(left);
        std::uint64_t head;
        std::memcpy(&head, text + place, sizeof(head));
        if ((head & word.headMask) != word.head
            || (word.text.size() > sizeof(head)
                && m_Texts.compare(begin + place, word.text.size(), word.text) != 0))
            found &= ~(Places(1) << place);
    }
    return found;
}

} // namespace nodepalette
