#ifndef PALETTE_NAMETABLE_H
#define PALETTE_NAMETABLE_H

#include <QtAlgorithms>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nodepalette {

/// One bit for each letter or digit of ASCII, in lower case, and one for some other characters
/// together.
typedef std::uint64_t LetterMask;

/// Bit n is for the n-th of kPlaceCount bytes.
typedef std::uint64_t Places;
constexpr std::size_t kPlaceCount = 64;

/// A word that is looked for in names: in lower case, not empty, and without a zero.
struct SSearchWord
{
    explicit SSearchWord(std::string const& word);

    std::string text;
    /// Its first bytes as a number, and the mask of those that exist.
    std::uint64_t head;
    std::uint64_t headMask;
    LetterMask letters;
    /// It is a letter or digit that has a bit of its own.
    bool isLetter;
    /// It is a single visible character, which is found nearly anywhere.
    bool isSingle;
};

/// In an SNameShape.
constexpr std::size_t kMaximumCount = 255;

/// A summary of a name, by which most names can be told from a text without comparing them.
struct SNameShape
{
    /// The first byte; zero for an empty name.
    char first;
    /// The numbers of letters and digits, and of visible characters, limited to kMaximumCount.
    std::uint8_t letterCount;
    std::uint8_t characterCount;
};

/// Bytes beyond ASCII belong to letters, whatever the encoding.
bool IsLetterOrDigit(char character);

/// Names in the form in which they are searched, one after the other in contiguous memory, so that
/// a search sweeps through them without following a pointer for each.
class NameTable
{
public:
    NameTable();

    void Clear();
    void Append(std::string const& name);

    std::size_t GetCount() const
    {
        return m_Shapes.size();
    }

    std::string_view GetText(std::size_t item) const;

    SNameShape const& GetShape(std::size_t item) const
    {
        return m_Shapes[item];
    }

    LetterMask GetLetters(std::size_t item) const
    {
        return m_Letters[item];
    }

    /// Those at word starts.
    LetterMask GetStartLetters(std::size_t item) const
    {
        return m_StartLetters[item];
    }

    /// Where words begin: at the start of the name, after anything that is neither letter nor
    /// digit, after a digit, at a number, and at a hump ("fooBar", "RGBNoise").
    Places GetWordStarts(std::size_t item) const
    {
        return m_WordStarts[item];
    }

    /// Calls `hit(item, place)` for each place in the names from `first` up to `end` at which the
    /// word begins, in their order.
    template <class Hit>
    void ForEachPlaceOf(SSearchWord const& word, std::size_t first, std::size_t end, Hit hit) const
    {
        std::size_t const textEnd = m_Begins[end];
        for (std::size_t begin = m_Begins[first]; begin < textEnd; begin += kPlaceCount) {
            for (Places places = FindWord(word, begin); places; places &= places - 1) {
                std::size_t const found = begin + FirstOf(places);
                if (found >= textEnd)
                    return;
                std::size_t item = m_ItemAt[found / kStretch];
                while (m_Begins[item + 1] <= found)
                    ++item;
                hit(item, found - m_Begins[item]);
            }
        }
    }

private:
    static constexpr std::size_t kStretch = 16;

    /// `places` are not empty.
    static std::size_t FirstOf(Places places)
    {
        return qCountTrailingZeroBits(quint64(places));
    }

    Places FindWord(SSearchWord const& word, std::size_t begin) const;

    /// In lower case, each ended by a zero; then come zeros, so that places behind each byte can
    /// be read.
    std::string m_Texts;
    /// Where they begin, and where the next one will.
    std::vector<std::size_t> m_Begins;
    /// For each stretch of them, the item that its first byte belongs to.
    std::vector<std::uint32_t> m_ItemAt;
    // By item. Apart from each other, because a search needs few of them.
    std::vector<SNameShape> m_Shapes;
    std::vector<LetterMask> m_Letters;
    std::vector<LetterMask> m_StartLetters;
    std::vector<Places> m_WordStarts;
};

} // namespace nodepalette

#endif
