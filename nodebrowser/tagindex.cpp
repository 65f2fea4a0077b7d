#include "tagindex.h"

#include "textencoding.h"

#include <QString>

#include <algorithm>
#include <cstddef>
#include <locale>
#include <utility>

namespace nodebrowser {

namespace {

/// How many entries may lie unused, beside those in use, before the index is packed.
std::size_t const kUnusedAllowed = 1000;

/// Two texts that differ only in case, as the default locale has it, fold to the same.
std::string Fold(std::string const& text)
{
    if (GetTextEncoding() == eUtf8Texts)
        return ToSearchForm(ToQString(text.c_str()).toLower());
    std::locale const locale;
    std::string folded = text;
    for (char& character : folded)
        character = std::toupper(character, locale);
    return folded;
}

bool Contains(std::string const& text, std::string const& word)
{
    return text.find(word) != std::string::npos;
}

} // namespace

void TagIndex::BeginRows()
{
    m_RowsBefore.clear();
    m_NumbersBefore.clear();
    m_RowsBefore.swap(m_Rows);
    m_NumbersBefore.swap(m_Numbers);
    m_Unused = 0;
}

void TagIndex::KeepRows(std::size_t firstBefore, std::size_t count)
{
    for (std::size_t before = firstBefore; before < firstBefore + count; ++before) {
        SRow const& row = m_RowsBefore[before];
        auto const begin = m_NumbersBefore.begin() + std::ptrdiff_t(row.begin);
        m_Rows.push_back(SRow{static_cast<Number>(m_Numbers.size()), row.count});
        m_Numbers.insert(m_Numbers.end(), begin, begin + std::ptrdiff_t(row.count));
    }
}

void TagIndex::AppendRow(std::set<std::string> const& tags)
{
    m_Rows.push_back(SRow());
    SetTags(m_Rows.size() - 1, tags);
}

void TagIndex::EndRows()
{
    std::vector<SRow>().swap(m_RowsBefore);
    std::vector<Number>().swap(m_NumbersBefore);
    if (m_Tags.size() > m_Numbers.size() + kUnusedAllowed)
        Pack();
}

void TagIndex::SetTags(std::size_t row, std::set<std::string> const& tags)
{
    m_Unused += m_Rows[row].count;
    m_Rows[row] = SRow{static_cast<Number>(m_Numbers.size()), static_cast<Number>(tags.size())};
    for (std::string const& tag : tags)
        m_Numbers.push_back(GetNumber(tag));
    if (m_Unused > m_Numbers.size() / 2 + kUnusedAllowed)
        Pack();
}

std::pair<TagIndex::Number const*, TagIndex::Number const*>
TagIndex::GetNumbers(std::size_t row) const
{
    Number const* const begin = m_Numbers.data() + m_Rows[row].begin;
    return std::make_pair(begin, begin + m_Rows[row].count);
}

std::string const& TagIndex::GetTag(Number number) const
{
    return m_Tags[number];
}

std::size_t TagIndex::GetTagCount() const
{
    return m_Tags.size();
}

/// Leaves the numbers and tags behind that no row uses.
void TagIndex::Pack()
{
    TagIndex packed;
    for (SRow const& row : m_Rows) {
        packed.m_Rows.push_back(SRow{static_cast<Number>(packed.m_Numbers.size()), row.count});
        for (Number tag = row.begin; tag < row.begin + row.count; ++tag)
            packed.m_Numbers.push_back(packed.GetNumber(m_Tags[m_Numbers[tag]]));
    }
    *this = std::move(packed);
}

TagIndex::Number TagIndex::GetNumber(std::string const& tag)
{
    auto const known = m_NumbersOfTags.find(tag);
    if (known != m_NumbersOfTags.end())
        return known->second;
    Number const number = static_cast<Number>(m_Tags.size());
    m_Tags.push_back(tag);
    m_FoldedTags.push_back(Fold(tag));
    m_NumbersOfTags[tag] = number;
    return number;
}

std::vector<char> TagIndex::Match(std::string const& word) const
{
    std::string const folded = Fold(word);
    std::vector<char> matches(m_Tags.size(), 0);
    std::transform(m_FoldedTags.begin(), m_FoldedTags.end(), matches.begin(),
                   [&](std::string const& tag) { return Contains(tag, folded); });
    bool const anyMatches = std::find(matches.begin(), matches.end(), 1) != matches.end();
    return anyMatches ? matches : std::vector<char>();
}

bool TagIndex::HasAny(std::size_t row, std::vector<char> const& matches) const
{
    if (matches.empty())
        return false;
    auto const numbers = GetNumbers(row);
    return std::any_of(numbers.first, numbers.second,
                       [&](Number tag) { return matches[tag] != 0; });
}

bool TagIndex::Match(std::set<std::string> const& tags, std::string const& word)
{
    std::string const folded = Fold(word);
    return std::any_of(tags.begin(), tags.end(),
                       [&](std::string const& tag) { return Contains(Fold(tag), folded); });
}

} // namespace nodebrowser
