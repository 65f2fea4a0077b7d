#include "textblock.h"

#include <ctype.h>
#include <strings.h>

namespace nodebrowser {

namespace {

/// Places that a search looks at in one step.
std::size_t const kStep = 64;

/// Whether the word's first and last letter stand in the right distance from one of the places.
/// A compiler makes a few vector instructions of it, many times faster than a search.
bool MayBegin(std::string const& word, char const* places)
{
    char const first = word.front();
    char const last = word.back();
    char const* const ends = places + word.size() - 1;
    unsigned char any = 0;
    for (std::size_t place = 0; place < kStep; ++place)
        any |= static_cast<unsigned char>((places[place] == first) & (ends[place] == last));
    return any != 0;
}

/// A text on its way into the order.
struct SText
{
    /// The first letters as a number that orders as strcasecmp orders the texts.
    std::uint64_t prefix;
    char const* text;
    std::uint32_t entry;

    bool operator<(SText const& other) const
    {
        if (prefix != other.prefix)
            return prefix < other.prefix;
        int const order = strcasecmp(text, other.text);
        return order != 0 ? order < 0 : entry < other.entry;
    }
};

class Sorter
{
public:
    explicit Sorter(TextBlock const& block)
        : m_Block(block)
    {
        for (int letter = 0; letter < 256; ++letter)
            m_Lower[letter] = static_cast<unsigned char>(tolower(letter));
    }

    SText Get(std::uint32_t entry) const
    {
        char const* const text = m_Block.Get(entry);
        return SText{GetPrefix(text), text, entry};
    }

    std::vector<SText> Sort(std::vector<std::uint32_t> const& entries) const
    {
        std::vector<SText> sorted;
        sorted.reserve(entries.size());
        for (std::uint32_t const entry : entries)
            sorted.push_back(Get(entry));
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

private:
    std::uint64_t GetPrefix(char const* text) const
    {
        std::uint64_t prefix = 0;
        for (std::size_t letter = 0; letter < sizeof(prefix); ++letter) {
            prefix = prefix << 8 | m_Lower[static_cast<unsigned char>(*text)];
            if (*text)
                ++text;
        }
        return prefix;
    }

    TextBlock const& m_Block;
    unsigned char m_Lower[256];
};

} // namespace

void TextBlock::Append(TextBlock const& other, std::size_t first, std::size_t count)
{
    std::size_t const begin = other.m_Begins[first];
    std::size_t const last = first + count - 1;
    std::size_t const end = other.m_Begins[last] + other.GetLength(last) + 1;
    for (std::size_t entry = first; entry <= last; ++entry)
        m_Begins.push_back(other.m_Begins[entry] - begin + m_Text.size());
    m_Text.append(other.m_Text, begin, end - begin);
}

std::size_t TextBlock::Find(std::string const& word, std::size_t begin) const
{
    std::string_view const text = m_Text;
    std::size_t const reach = kStep + word.size() - 1;
    for (; begin + reach <= text.size(); begin += kStep) {
        if (!MayBegin(word, text.data() + begin))
            continue;
        std::size_t const found = text.substr(begin, reach).find(word);
        if (found != std::string_view::npos)
            return begin + found;
    }
    return text.find(word, begin);
}

void CollectedTexts::Begin()
{
    m_NewTexts = TextBlock();
    m_KeptCount = 0;
    m_AreKept = true;
}

void CollectedTexts::Collect(std::string const& text, bool isSame, std::size_t before)
{
    if (m_AreKept && isSame && before == m_KeptCount) {
        ++m_KeptCount;
        return;
    }
    StopKeeping();
    m_NewTexts.Append(text);
}

std::size_t CollectedTexts::GetCollectedCount() const
{
    return m_AreKept ? m_KeptCount : m_NewTexts.GetCount();
}

bool CollectedTexts::AreKept() const
{
    return m_AreKept;
}

TextBlock const& CollectedTexts::GetCollected()
{
    if (m_KeptCount < m_Texts.GetCount())
        StopKeeping();
    return m_AreKept ? m_Texts : m_NewTexts;
}

void CollectedTexts::Commit()
{
    GetCollected();
    if (!m_AreKept)
        m_Texts.Swap(m_NewTexts);
    Begin();
}

void CollectedTexts::Clear()
{
    Begin();
    m_Texts.Clear();
}

void CollectedTexts::StopKeeping()
{
    if (!m_AreKept)
        return;
    m_AreKept = false;
    m_NewTexts.Reserve(m_Texts.GetCount(), m_Texts.GetBytes());
    if (m_KeptCount > 0)
        m_NewTexts.Append(m_Texts, 0, m_KeptCount);
}

std::vector<std::uint32_t> MergeByText(TextBlock const& block,
                                       std::vector<std::uint32_t> const& ordered,
                                       std::vector<std::uint32_t> const& added)
{
    Sorter const sorter(block);
    std::vector<std::uint32_t> all;
    all.reserve(ordered.size() + added.size());
    auto from = ordered.begin();
    // Few are added as a rule.
    for (SText const& text : sorter.Sort(added)) {
        auto const to = std::upper_bound(
            from, ordered.end(), text,
            [&](SText const& left, std::uint32_t right) { return left < sorter.Get(right); });
        all.insert(all.end(), from, to);
        all.push_back(text.entry);
        from = to;
    }
    all.insert(all.end(), from, ordered.end());
    return all;
}

} // namespace nodebrowser
