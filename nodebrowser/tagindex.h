#ifndef NODEBROWSER_TAGINDEX_H
#define NODEBROWSER_TAGINDEX_H

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace nodebrowser {

/// The tags of a list of rows, for searches: tags are numbered, and each row has a stretch of
/// numbers, so that a search looks at each tag once.
class TagIndex
{
public:
    typedef std::uint32_t Number;

    // Making the rows anew: each is kept or appended, in their order.
    void BeginRows();
    void KeepRows(std::size_t firstBefore, std::size_t count);
    void AppendRow(std::set<std::string> const& tags);
    void EndRows();

    void SetTags(std::size_t row, std::set<std::string> const& tags);

    /// The numbers of a row's tags, in the order of the tags.
    std::pair<Number const*, Number const*> GetNumbers(std::size_t row) const;
    std::string const& GetTag(Number number) const;
    /// One more than the highest number.
    std::size_t GetTagCount() const;

    /// For each tag number whether the tag contains the word, whatever the case of either; empty
    /// when none does.
    std::vector<char> Match(std::string const& word) const;
    /// Whether the row has one of the tags that Match found.
    bool HasAny(std::size_t row, std::vector<char> const& matches) const;

    /// The same for tags that stand alone.
    static bool Match(std::set<std::string> const& tags, std::string const& word);

private:
    /// A stretch of m_Numbers.
    struct SRow
    {
        Number begin;
        Number count;
    };

    Number GetNumber(std::string const& tag);
    void Pack();

    std::vector<SRow> m_Rows;
    std::vector<Number> m_Numbers;
    /// What there was before, while rows are made anew.
    std::vector<SRow> m_RowsBefore;
    std::vector<Number> m_NumbersBefore;
    /// Entries of m_Numbers that no row uses any more.
    std::size_t m_Unused = 0;
    std::vector<std::string> m_Tags;
    /// The tags in the form in which they are compared.
    std::vector<std::string> m_FoldedTags;
    std::unordered_map<std::string, Number> m_NumbersOfTags;
};

} // namespace nodebrowser

#endif
