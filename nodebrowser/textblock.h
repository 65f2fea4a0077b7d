#ifndef NODEBROWSER_TEXTBLOCK_H
#define NODEBROWSER_TEXTBLOCK_H

#include <cstddef>
#include <string.h>
#include <string>
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

    void Append(std::string const& text)
    {
        Append(text.data(), text.size());
    }

    /// A stretch of another block.
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

    bool Has(std::size_t entry, std::string const& text) const
    {
        return GetLength(entry) == text.size()
               && text.compare(0, text.size(), Get(entry), text.size()) == 0;
    }

    /// Calls `hit(entry, isAtStart)` once for each entry that contains the word, which is not
    /// empty and holds no zero.
    template <class Hit>
    void ForEachEntryWith(std::string const& word, Hit hit) const
    {
        char const* const block = m_Text.data();
        std::size_t entry = 0;
        for (std::size_t position = 0; position < m_Text.size(); position = m_Begins[entry]) {
            void const* const found =
                memmem(block + position, m_Text.size() - position, word.data(), word.size());
            if (!found)
                return;
            std::size_t const offset = static_cast<char const*>(found) - block;
            while (entry + 1 < m_Begins.size() && m_Begins[entry + 1] <= offset)
                ++entry;
            hit(entry, offset == m_Begins[entry]);
            if (++entry == m_Begins.size())
                return;
        }
    }

private:
    std::string m_Text;
    std::vector<std::size_t> m_Begins;
};

} // namespace nodebrowser

#endif
