#include "textblock.h"

#include <cstring>
#include <ctype.h>
#include <strings.h>
#include <utility>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace nodebrowser {

namespace {

/// Which of 64 bytes are the character, one bit each.
std::uint64_t FindCharacter(char const* bytes, char character)
{
    std::uint64_t found = 0;
#ifdef __SSE2__
    __m128i const pattern = _mm_set1_epi8(character);
    for (unsigned begin = 0; begin < 64; begin += sizeof(__m128i)) {
        __m128i const block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(bytes + begin));
        int const equal = _mm_movemask_epi8(_mm_cmpeq_epi8(block, pattern));
        found |= static_cast<std::uint64_t>(equal) << begin;
    }
#else
    for (unsigned place = 0; place < 64; ++place)
        found |= static_cast<std::uint64_t>(bytes[place] == character) << place;
#endif
    return found;
}

/// A text on its way into the order.
struct SText
{
    /// The first letters as numbers that order as strcasecmp orders the texts.
    std::uint64_t prefix;
    std::uint64_t nextPrefix;
    char const* text;
    std::uint32_t entry;

    bool operator<(SText const& other) const
    {
        if (prefix != other.prefix)
            return prefix < other.prefix;
        if (nextPrefix != other.nextPrefix)
            return nextPrefix < other.nextPrefix;
        int const order = strcasecmp(text, other.text);
        return order != 0 ? order < 0 : entry < other.entry;
    }
};

/// The next eight letters in lower case as a number, the first in the highest byte. Moves the
/// pointer behind them.
std::uint64_t TakePrefix(char const*& letter)
{
    std::uint64_t prefix = 0;
    for (std::size_t count = 0; count < sizeof(prefix); ++count) {
        unsigned char const lower =
            static_cast<unsigned char>(tolower(static_cast<unsigned char>(*letter)));
        prefix = prefix << 8 | lower;
        if (*letter)
            ++letter;
    }
    return prefix;
}

SText MakeText(TextBlock const& block, std::uint32_t entry)
{
    SText made = {0, 0, block.Get(entry), entry};
    char const* letter = made.text;
    made.prefix = TakePrefix(letter);
    made.nextPrefix = TakePrefix(letter);
    return made;
}

} // namespace

/// The places from `begin` on at which the word begins. Few that begin and end like it are others.
TextBlock::Places TextBlock::FindWord(std::string const& word, std::size_t begin) const
{
    if (m_Text.size() - begin < kPlaceCount + word.size() - 1)
        return FindWordAtEnd(word, begin);
    char const* const text = m_Text.data() + begin;
    std::size_t const last = word.size() - 1;
    Places found = FindCharacter(text, word[0]);
    if (found && last > 0)
        found &= FindCharacter(text + last, word[last]);
    for (Places left = last > 1 ? found : 0; left; left &= left - 1) {
        std::size_t const place = FirstOf(left);
        if (std::memcmp(text + place, word.data(), last) != 0)
            found &= ~(Places(1) << place);
    }
    return found;
}

/// Not all of the places, or of the bytes that follow them, are in the text.
TextBlock::Places TextBlock::FindWordAtEnd(std::string const& word, std::size_t begin) const
{
    Places found = 0;
    std::size_t const end = std::min(m_Text.size(), begin + kPlaceCount);
    for (std::size_t place = begin; place < end; ++place)
        found |= static_cast<Places>(m_Text.compare(place, word.size(), word) == 0)
                 << (place - begin);
    return found;
}

void TextBlock::Append(TextBlock const& other, std::size_t first, std::size_t count)
{
    if (count == 0)
        return;
    std::size_t const from = other.m_Begins[first];
    std::size_t const to = m_Text.size();
    for (std::size_t entry = first; entry < first + count; ++entry)
        m_Begins.push_back(other.m_Begins[entry] - from + to);
    m_Text.append(other.m_Text, from, other.GetEnd(first + count - 1) - from);
}

void CollectedTexts::Begin()
{
    m_NewTexts = TextBlock();
    m_FirstKept = 0;
    m_KeptCount = 0;
}

void CollectedTexts::Collect(std::string const& text, bool isSame, std::size_t before)
{
    if (isSame && before == m_FirstKept + m_KeptCount) {
        ++m_KeptCount;
        return;
    }
    AppendKept();
    if (isSame) {
        m_FirstKept = before;
        m_KeptCount = 1;
    } else {
        // What comes next is probably what came next before.
        m_FirstKept = before + 1;
        m_NewTexts.Append(text);
    }
}

std::size_t CollectedTexts::GetCollectedCount() const
{
    return m_NewTexts.GetCount() + m_KeptCount;
}

bool CollectedTexts::AreKept() const
{
    return m_FirstKept == 0 && m_NewTexts.GetCount() == 0;
}

TextBlock const& CollectedTexts::GetCollected()
{
    if (AreKept() && m_KeptCount == m_Texts.GetCount())
        return m_Texts;
    AppendKept();
    return m_NewTexts;
}

void CollectedTexts::Commit()
{
    if (&GetCollected() == &m_NewTexts)
        m_Texts = std::move(m_NewTexts);
    Begin();
}

void CollectedTexts::AppendKept()
{
    if (m_NewTexts.GetCount() == 0)
        m_NewTexts.Reserve(m_Texts.GetCount(), m_Texts.GetBytes());
    m_NewTexts.Append(m_Texts, m_FirstKept, m_KeptCount);
    m_FirstKept = 0;
    m_KeptCount = 0;
}

std::vector<std::uint32_t> MergeByText(TextBlock const& block,
                                       std::vector<std::uint32_t> const& ordered,
                                       std::vector<std::uint32_t> const& added)
{
    std::vector<SText> texts;
    texts.reserve(added.size());
    for (std::uint32_t const entry : added)
        texts.push_back(MakeText(block, entry));
    std::sort(texts.begin(), texts.end());

    std::vector<std::uint32_t> all;
    all.reserve(ordered.size() + added.size());
    auto from = ordered.begin();
    // Few are added as a rule.
    for (SText const& text : texts) {
        auto const to = std::upper_bound(
            from, ordered.end(), text, [&](SText const& left, std::uint32_t right) {
                char const* letter = block.Get(right);
                std::uint64_t const prefix = TakePrefix(letter);
                return left.prefix != prefix ? left.prefix < prefix : left < MakeText(block, right);
            });
        all.insert(all.end(), from, to);
        all.push_back(text.entry);
        from = to;
    }
    all.insert(all.end(), from, ordered.end());
    return all;
}

} // namespace nodebrowser
