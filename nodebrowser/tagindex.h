#ifndef NODEBROWSER_TAGINDEX_H
#define NODEBROWSER_TAGINDEX_H

#include "textblock.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace nodebrowser {

/// The tags of a list of rows, for searches: tags are numbered, and each row has a stretch of
/// numbers, so that each tag is split, folded and searched once, however many rows have it. When
/// memory runs out in Collect, CollectUnknown or Commit, the index has to be made anew.
class TagIndex
{
public:
    typedef std::uint32_t Number;

    // Making the rows anew, in their order. The rows from before stay until Commit.

    void BeginCollecting();
    /// The next row by its tag string and the tag of its kind, a literal; both may be empty. Row
    /// `before` probably had the same; it need not exist.
    void Collect(std::string const& tagString, char const* kindTag, std::size_t before);
    /// The next row's tags are not known.
    void CollectUnknown();
    std::size_t GetCollectedCount() const;
    void Commit();

    /// Tags of one row that changed outside a rebuild.
    void SetTags(std::size_t row, std::string const& tagString, char const* kindTag);

    /// The row had a tag string when it was collected.
    bool HasText(std::size_t row) const;
    /// The numbers of a row's tags; a tag may come twice.
    std::pair<Number const*, Number const*> GetNumbers(std::size_t row) const;
    std::string const& GetTag(Number number) const;
    /// One more than the highest number.
    std::size_t GetTagCount() const;

    /// For each tag number whether the tag contains the word, whatever the case of either; empty
    /// when none does.
    std::vector<char> Match(std::string const& word) const;
    /// The tags that Match found for any of several words.
    static std::vector<char> Unite(std::vector<std::vector<char>> const& matches);
    /// Whether the row has one of the tags that Match found.
    bool HasAny(std::size_t row, std::vector<char> const& matches) const
    {
        if (matches.empty())
            return false;
        SRow const& stretch = m_Rows.rows[row];
        Number const* const begin = m_Rows.numbers.data() + stretch.begin;
        // Far shorter than what the algorithms of the library are made for.
        for (Number const* tag = begin; tag != begin + stretch.count; ++tag) {
            if (matches[*tag])
                return true;
        }
        return false;
    }

    /// The same for tags that stand alone.
    static bool Match(std::set<std::string> const& tags, std::string const& word);

private:
    /// A stretch of numbers.
    struct SRow
    {
        Number begin;
        Number count;
        /// They are those of the text that was collected.
        bool isCollected;
    };

    struct STag
    {
        std::string text;
        /// In the form in which tags are compared.
        std::string folded;
    };

    struct SRows
    {
        std::vector<SRow> rows;
        std::vector<Number> numbers;
    };

    static constexpr Number kNoTag = 0xFFFFFFFFU;

    SRow Append(std::string const& tagString, char const* kindTag, std::vector<Number>& numbers);
    void AppendPart(std::string const& part, std::vector<Number>& numbers);
    void AppendKept(std::size_t end);
    void AppendRow(std::size_t before);
    Number GetNumber(std::string const& part);
    void PackIfWasteful();
    void Pack();

    /// The tag strings.
    CollectedTexts m_Texts;
    SRows m_Rows;
    /// While rows are made anew. Behind those that it has, rows were kept in place.
    SRows m_NewRows;
    /// Entries of m_Rows.numbers that no row uses any more.
    std::size_t m_Unused = 0;
    /// By number.
    std::vector<STag> m_Tags;
    /// By part of a tag string, in which the tag may have blanks around it; kNoTag for a part
    /// without a tag.
    std::unordered_map<std::string, Number> m_NumbersOfParts;
    /// The kind's tag that was used last, a literal, and its number.
    char const* m_KindTag = nullptr;
    Number m_KindNumber = kNoTag;
};

} // namespace nodebrowser

#endif
