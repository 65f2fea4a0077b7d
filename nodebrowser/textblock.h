#ifndef NODEBROWSER_TEXTBLOCK_H
#define NODEBROWSER_TEXTBLOCK_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nodebrowser {

/// Lets the processor fetch memory that is used soon, where the order of use is not that of the
/// memory. Always inline: a compiler takes a function that only prefetches for one without effect,
/// and drops the calls.
#ifdef __GNUC__
__attribute__((always_inline)) inline void Prefetch(void const* memory, std::size_t bytes)
{
    char const* const begin = static_cast<char const*>(memory);
    std::size_t const cacheLine = 64;
    for (std::size_t offset = 0; offset < bytes; offset += cacheLine)
        __builtin_prefetch(begin + offset);
    __builtin_prefetch(begin + bytes - 1);
}
#else
inline void Prefetch(void const*, std::size_t) {}
#endif

/// Texts one after the other in contiguous memory, each ended by a zero, so that a search sweeps
/// through them without following a pointer for each. When memory runs out in Append, the block
/// is of no use any more.
class TextBlock
{
public:
    void Reserve(std::size_t count, std::size_t bytes)
    {
        m_Begins.reserve(count);
        m_Text.reserve(bytes);
    }

    /// A text that contains a zero ends there for readers of zero-terminated texts.
    void Append(std::string_view text)
    {
        m_Begins.push_back(m_Text.size());
        m_Text.append(text);
        m_Text.push_back('\0');
    }

    /// Each byte of the text as `change` gives it.
    template <class Change>
    void Append(std::string_view text, Change change)
    {
        Append(text);
        auto const begin = m_Text.begin() + static_cast<std::ptrdiff_t>(m_Begins.back());
        std::transform(begin, m_Text.end() - 1, begin, change);
    }

    /// `count` entries of another block, from `first` on.
    void Append(TextBlock const& other, std::size_t first, std::size_t count);

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

    void Prefetch(std::size_t entry) const
    {
        nodebrowser::Prefetch(Get(entry), 1);
    }

    std::size_t GetLength(std::size_t entry) const
    {
        return GetEnd(entry) - m_Begins[entry] - 1;
    }

    std::string_view GetView(std::size_t entry) const
    {
        return std::string_view(Get(entry), GetLength(entry));
    }

    /// Calls `hit(entry, isAtStart)` once for each entry that contains the word, which is not
    /// empty and holds no zero.
    template <class Hit>
    void ForEachEntryWith(std::string const& word, Hit hit) const
    {
        std::size_t entry = 0;
        std::size_t next = 0; // behind the last entry that was hit
        for (std::size_t begin = 0; begin < m_Text.size(); begin += kPlaceCount) {
            Places places = FindWord(word, begin);
            for (; places; places &= places - 1) {
                std::size_t const place = begin + FirstOf(places);
                if (place < next)
                    continue;
                while (entry + 1 < m_Begins.size() && m_Begins[entry + 1] <= place)
                    ++entry;
                hit(entry, place == m_Begins[entry]);
                next = m_Begins[entry] + GetLength(entry);
            }
        }
    }

private:
    /// Bit n is for the n-th of kPlaceCount places that follow each other in the text.
    typedef std::uint64_t Places;
    static constexpr std::size_t kPlaceCount = 64;

    /// `places` are not empty.
    static std::size_t FirstOf(Places places)
    {
#ifdef __GNUC__
        return static_cast<std::size_t>(__builtin_ctzll(places));
#else
        std::size_t first = 0;
        while (!(places >> first & 1))
            ++first;
        return first;
#endif
    }

    /// Behind the zero of the entry.
    std::size_t GetEnd(std::size_t entry) const
    {
        return entry + 1 < m_Begins.size() ? m_Begins[entry + 1] : m_Text.size();
    }

    Places FindWord(std::string const& word, std::size_t begin) const;
    Places FindWordAtEnd(std::string const& word, std::size_t begin) const;

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

    void Begin();
    /// The next text; `isSame` if it is that of entry `before`.
    void Collect(std::string const& text, bool isSame, std::size_t before);
    std::size_t GetCollectedCount() const;
    /// All texts collected so far are what they were, and where.
    bool AreKept() const;
    /// Those that were collected, all of them by now.
    TextBlock const& GetCollected();
    void Commit();

private:
    void AppendKept();

    TextBlock m_Texts;
    TextBlock m_NewTexts;
    /// Entries of m_Texts that come behind the new texts. They are copied together, and not before
    /// there is a need to.
    std::size_t m_FirstKept = 0;
    std::size_t m_KeptCount = 0;
};

/// Merges entries of the block into others that are in order already. The order is that of
/// strcasecmp; texts that differ in nothing but case are in the order of the block.
std::vector<std::uint32_t> MergeByText(TextBlock const& block,
                                       std::vector<std::uint32_t> const& ordered,
                                       std::vector<std::uint32_t> const& added);

} // namespace nodebrowser

#endif
