#include "searchindex.h"

#include "qtcompat.h"
#include "stringutils.h"

#include <algorithm>
#include <locale>
#include <string.h>
#include <utility>

namespace {

/// Two texts that differ only in case, as the default locale has it, fold to the same.
std::string Fold(std::string const& text)
{
    std::locale const locale;
    std::string folded = text;
    for (char& character : folded)
        character = std::toupper(character, locale);
    return folded;
}

} // namespace

/// Scores of all rows while the words are visited.
struct SearchIndex::SScores
{
    explicit SScores(std::size_t rows)
        : values(rows, kNoMatch)
        , settled(rows, 0)
    {
    }

    std::vector<unsigned long> values;
    /// A word at the start of the name ends the row's scan.
    std::vector<char> settled;
};

void SearchIndex::STextBlock::Append(std::string const& entry)
{
    begins.push_back(text.size());
    text += entry;
    text += '\0';
}

void SearchIndex::STextBlock::Clear()
{
    text.clear();
    begins.clear();
}

/// Calls `hit(entry, atStart)` once for each entry that contains the word.
template <class Hit>
void SearchIndex::STextBlock::ForEachEntryWith(std::string const& word, Hit hit) const
{
    char const* const block = text.data();
    std::size_t position = 0;
    std::size_t entry = 0;
    while (position < text.size()) {
        void const* const found =
            memmem(block + position, text.size() - position, word.data(), word.size());
        if (!found)
            return;
        std::size_t const offset = static_cast<char const*>(found) - block;
        while (entry + 1 < begins.size() && begins[entry + 1] <= offset)
            ++entry;
        hit(entry, offset == begins[entry]);
        ++entry;
        if (entry == begins.size())
            return;
        position = begins[entry];
    }
}

std::string SearchIndex::ToSearchName(std::string const& name)
{
    return QStringToStdString(qtcompat::FromAscii(name.c_str()).toLower());
}

void SearchIndex::Clear()
{
    m_Names.Clear();
    m_Tags.Clear();
    m_TagNumbers.clear();
    m_RowTags.clear();
    m_RowTagRanges.clear();
    m_RowKinds.clear();
}

void SearchIndex::Append(std::string const& searchName, std::set<std::string> const& tags,
                         unsigned char kinds)
{
    m_Names.Append(searchName);
    m_RowTagRanges.push_back(Store(tags));
    m_RowKinds.push_back(kinds);
}

void SearchIndex::SetTags(std::size_t row, std::set<std::string> const& tags)
{
    // What the row had stays behind unused until the index is built anew.
    m_RowTagRanges[row] = Store(tags);
}

std::size_t SearchIndex::GetCount() const
{
    return m_RowKinds.size();
}

unsigned char SearchIndex::GetKinds(std::size_t row) const
{
    return m_RowKinds[row];
}

SearchIndex::TagNumber SearchIndex::NumberOf(std::string const& tag)
{
    auto const known = m_TagNumbers.find(tag);
    if (known != m_TagNumbers.end())
        return known->second;
    TagNumber const number = static_cast<TagNumber>(m_Tags.begins.size());
    m_Tags.Append(Fold(tag));
    m_TagNumbers[tag] = number;
    return number;
}

SearchIndex::STagRange SearchIndex::Store(std::set<std::string> const& tags)
{
    STagRange range = {static_cast<std::uint32_t>(m_RowTags.size()),
                      static_cast<std::uint32_t>(tags.size())};
    for (std::string const& tag : tags)
        m_RowTags.push_back(NumberOf(tag));
    return range;
}

std::vector<unsigned long> SearchIndex::Score(std::set<std::string> const& words) const
{
    SScores scores(GetCount());
    unsigned long wordNumber = 0;
    for (std::string const& word : words) {
        m_Names.ForEachEntryWith(word, [&](std::size_t row, bool atStart) {
            if (!scores.settled[row])
                scores.values[row] = atStart ? wordNumber : wordNumber + words.size();
            scores.settled[row] |= atStart;
        });
        ScoreTags(word, scores);
        ++wordNumber;
    }
    return std::move(scores.values);
}

void SearchIndex::ScoreTags(std::string const& word, SScores& scores) const
{
    std::vector<char> matches(m_Tags.begins.size(), 0);
    bool anyMatches = false;
    m_Tags.ForEachEntryWith(Fold(word), [&](std::size_t tag, bool) {
        matches[tag] = 1;
        anyMatches = true;
    });
    if (!anyMatches)
        return;

    for (std::size_t row = 0; row < scores.values.size(); ++row) {
        if (scores.values[row] != kNoMatch || scores.settled[row])
            continue;
        TagNumber const* const tags = m_RowTags.data() + m_RowTagRanges[row].begin;
        if (std::any_of(tags, tags + m_RowTagRanges[row].count,
                        [&](TagNumber tag) { return matches[tag]; }))
            scores.values[row] = kTagMatch;
    }
}
