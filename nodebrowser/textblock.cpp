#include "textblock.h"

#include <ctype.h>
#include <strings.h>
#include <utility>

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

SText MakeText(TextBlock const& block, std::uint32_t entry)
{
    SText made = {0, block.Get(entry), entry};
    char const* letter = made.text;
    for (std::size_t count = 0; count < sizeof(made.prefix); ++count) {
        unsigned char const lower =
            static_cast<unsigned char>(tolower(static_cast<unsigned char>(*letter)));
        made.prefix = made.prefix << 8 | lower;
        if (*letter)
            ++letter;
    }
    return made;
}

} // namespace

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
        m_Texts = std::move(m_NewTexts);
    Begin();
}

void CollectedTexts::StopKeeping()
{
    if (!m_AreKept)
        return;
    m_AreKept = false;
    m_NewTexts.Reserve(m_Texts.GetCount(), m_Texts.GetBytes());
    for (std::size_t entry = 0; entry < m_KeptCount; ++entry)
        m_NewTexts.Append(m_Texts.GetView(entry));
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
            from, ordered.end(), text,
            [&](SText const& left, std::uint32_t right) { return left < MakeText(block, right); });
        all.insert(all.end(), from, to);
        all.push_back(text.entry);
        from = to;
    }
    all.insert(all.end(), from, ordered.end());
    return all;
}

} // namespace nodebrowser
