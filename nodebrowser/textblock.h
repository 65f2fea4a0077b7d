#ifndef NODEBROWSER_TEXTBLOCK_H
#define NODEBROWSER_TEXTBLOCK_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace nodebrowser {

/// Texts one after the other in contiguous memory, each ended by a zero, so that a search sweeps
/// through them without following a pointer for each.
class TextBlock
{
public:
    void Clear()
    {
        m_Text.clear();
        m_Begins.clear();
    }

    void Reserve(std::size_t count, std::size_t bytes)
    {
        m_Begins.reserve(count);
        m_Text.reserve(bytes);
    }

    /// A text that contains a zero ends there for readers of zero-terminated texts.
    void Append(char const* text, std::size_t length)
    {
        m_Begins.push_back(m_Text.size());
        m_Text.append(text, length);
        m_Text.push_back('\0');
    }

    /// Each byte of it as `change` gives it.
    template <class Change>
    void Append(std::string_view text, Change change)
    {
        m_Begins.push_back(m_Text.size());
        m_Text.append(text);
        std::transform(m_Text.end() - static_cast<std::ptrdiff_t>(text.size()), m_Text.end(),
                       m_Text.end() - static_cast<std::ptrdiff_t>(text.size()), change);
        m_Text.push_back('\0');
    }

    void Append(std::string const& text)
    {
        Append(text.data(), text.size());
    }

    /// A stretch of another block, which is not empty.
    void Append(TextBlock const& other, std::size_t first, std::size_t count)
    {
        std::size_t const begin = other.m_Begins[first];
        std::size_t const last = first + count - 1;
        std::size_t const end = other.m_Begins[last] + other.GetLength(last) + 1;
        for (std::size_t entry = first; entry <= last; ++entry)
            m_Begins.push_back(other.m_Begins[entry] - begin + m_Text.size());
        m_Text.append(other.m_Text, begin, end - begin);
    }

    void Swap(TextBlock& other)
    {
        m_Text.swap(other.m_Text);
        m_Begins.swap(other.m_Begins);
    }

    std::size_t GetCount() const
    {
        return m_Begins.size();
    }

    /// With the zeros.
    std::size_t GetBytes() const
    {
        return m_Text.size();
    }

    char const* Get(std::size_t entry) const
    {
        return m_Text.data() + m_Begins[entry];
    }

    std::size_t GetLength(std::size_t entry) const
    {
        std::size_t const end = entry + 1 < m_Begins.size() ? m_Begins[entry + 1] : m_Text.size();
        return end - m_Begins[entry] - 1;
    }

    std::string_view GetView(std::size_t entry) const
    {
        return std::string_view(Get(entry), GetLength(entry));
    }

    bool Has(std::size_t entry, std::string const& text) const
    {
        return GetView(entry) == text;
    }

    /// Calls `hit(entry, isAtStart)` once for each entry that contains the word, which is not
    /// empty and holds no zero.
    template <class Hit>
    void ForEachEntryWith(std::string const& word, Hit hit) const
    {
        for (std::size_t entry = 0; entry < m_Begins.size(); ++entry) {
            std::size_t const found = Find(word, m_Begins[entry]);
            if (found == std::string::npos)
                return;
            while (entry + 1 < m_Begins.size() && m_Begins[entry + 1] <= found)
                ++entry;
            hit(entry, found == m_Begins[entry]);
        }
    }

private:
    /// Places that are looked at in one step.
    static constexpr std::size_t kStep = 64;

    std::size_t Find(std::string const& word, std::size_t begin) const
    {
        std::size_t const reach = kStep + word.size() - 1;
        std::string_view const text = m_Text;
        for (; begin + reach <= text.size(); begin += kStep) {
            if (!MayBegin(word, text.data() + begin))
                continue;
            std::size_t const found = text.substr(begin, reach).find(word);
            if (found != std::string_view::npos)
                return begin + found;
        }
        return text.find(word, begin);
    }

    /// Whether the word's first and last letter stand in the right distance from one of the places.
    /// A compiler makes a few vector instructions of it, many times faster than a search.
    static bool MayBegin(std::string const& word, char const* places)
    {
        char const first = word.front();
        char const last = word.back();
        char const* const ends = places + word.size() - 1;
        unsigned char any = 0;
        for (std::size_t place = 0; place < kStep; ++place)
            any |= static_cast<unsigned char>((places[place] == first) & (ends[place] == last));
        return any != 0;
    }

    std::string m_Text;
    std::vector<std::size_t> m_Begins;
};

/// Texts that are collected anew from time to time. As long as they come as they were, nothing is
/// copied.
class CollectedTexts
{
public:
    TextBlock const& Get() const
    {
        return m_Texts;
    }

    void Begin()
    {
        m_NewTexts = TextBlock();
        m_KeptCount = 0;
        m_AreKept = true;
    }

    /// The next text; `isSame` if it is that of entry `before`.
    void Collect(std::string const& text, bool isSame, std::size_t before)
    {
        if (m_AreKept && isSame && before == m_KeptCount) {
            ++m_KeptCount;
            return;
        }
        StopKeeping();
        m_NewTexts.Append(text);
    }

    /// All texts collected so far are what they were, and where.
    bool AreKept() const
    {
        return m_AreKept;
    }

    std::size_t GetCollectedCount() const
    {
        return m_AreKept ? m_KeptCount : m_NewTexts.GetCount();
    }

    /// All that were collected.
    TextBlock const& GetCollected()
    {
        if (m_KeptCount < m_Texts.GetCount())
            StopKeeping();
        return m_AreKept ? m_Texts : m_NewTexts;
    }

    void Commit()
    {
        GetCollected();
        if (!m_AreKept)
            m_Texts.Swap(m_NewTexts);
        m_NewTexts = TextBlock();
    }

    void Clear()
    {
        Begin();
        m_Texts.Clear();
    }

private:
    void StopKeeping()
    {
        if (!m_AreKept)
            return;
        m_AreKept = false;
        m_NewTexts.Reserve(m_Texts.GetCount(), m_Texts.GetBytes());
        if (m_KeptCount > 0)
            m_NewTexts.Append(m_Texts, 0, m_KeptCount);
    }

    TextBlock m_Texts;
    TextBlock m_NewTexts;
    /// So many were collected as they were.
    std::size_t m_KeptCount = 0;
    /// All of them so far; the new texts are empty then.
    bool m_AreKept = true;
};

} // namespace nodebrowser

#endif
