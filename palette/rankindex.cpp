#include "rankindex.h"

#include "palettetext.h"

#include <nodebrowser/stringutils.h>

#include <algorithm>
#include <set>
#include <tuple>

namespace nodepalette {

void RankIndex::Forget()
{
    m_Names.Clear();
    m_Namesakes.clear();
    m_HasNamesakes = false;
    ForgetTags();
}

void RankIndex::ForgetTags()
{
    m_Tags.clear();
    m_TagPositions.clear();
    m_TaggedCount = 0;
}

bool RankIndex::Fill(Source const& source, std::size_t count)
{
    std::size_t const total = source.GetCount();
    if (m_Names.GetCount() > total || m_TaggedCount > total)
        Forget();
    for (; count > 0 && m_Names.GetCount() < total; --count)
        AppendName(source.GetName(m_Names.GetCount()));
    for (; count > 0 && m_TaggedCount < total; --count) {
        PlaceNamesakes(source, static_cast<std::uint32_t>(m_TaggedCount));
        AppendTags(source.GetTags(m_TaggedCount));
    }
    return m_TaggedCount < total;
}

void RankIndex::AppendName(std::string const& name)
{
    auto const item = static_cast<std::uint32_t>(m_Names.GetCount());
    m_Names.Append(name);
    bool const isNamesake = item > 0 && m_Names.GetText(item - 1) == m_Names.GetText(item);
    m_Namesakes.push_back(SNamesake{isNamesake ? m_Namesakes.back().first : item, item});
    m_HasNamesakes = m_HasNamesakes || isNamesake;
}

void RankIndex::AppendTags(std::string const& tags)
{
    std::set<std::string> distinct;
    SplitString(tags, ";", distinct);
    for (std::string const& tag : distinct)
        m_Tags[FindTag(tag)].items.push_back(m_TaggedCount);
    ++m_TaggedCount;
}

std::uint32_t RankIndex::FindTag(std::string const& tag)
{
    auto const place = m_TagPositions.emplace(tag, static_cast<std::uint32_t>(m_Tags.size()));
    if (place.second)
        m_Tags.push_back(STag{ToSearchForm(tag), {}});
    return place.first->second;
}

/// Namesakes differ in case at most. The panel's order, which ignores the case of ASCII alone,
/// leaves some of them as they were read; spelling and UID make it the same in each run.
void RankIndex::PlaceNamesakes(Source const& source, std::uint32_t first)
{
    std::uint32_t end = first + 1;
    while (end < m_Names.GetCount() && m_Namesakes[end].first == first)
        ++end;
    if (end - first < 2)
        return;
    typedef std::tuple<std::string, std::string, std::string, std::uint32_t> Namesake;
    std::vector<Namesake> namesakes;
    for (std::uint32_t item = first; item < end; ++item) {
        std::string const name = source.GetName(item);
        std::string listed = name;
        std::transform(listed.begin(), listed.end(), listed.begin(), ToLowerAscii);
        namesakes.emplace_back(listed, name, source.GetUid(item), item);
    }
    std::sort(namesakes.begin(), namesakes.end());
    for (std::uint32_t place = 0; place < namesakes.size(); ++place)
        m_Namesakes[std::get<std::uint32_t>(namesakes[place])].place = place;
}

void RankIndex::Rank(Source const& source, std::string const& searchText,
                     std::vector<unsigned long>& rows)
{
    NameRank const rank(searchText);
    Fill(source, std::size_t(-1));
    std::size_t const count = std::min<std::size_t>(m_Names.GetCount(), m_TaggedCount);
    bool const areKnown =
        std::all_of(rows.begin(), rows.end(), [=](unsigned long item) { return item < count; });
    if (rows.empty() || rank.GetWords().empty() || !areKnown)
        return;

    OrderNamesakes(rows);
    m_Keys.Begin(m_Names, rank, rows);
    for (std::string const& word : rank.GetWords()) {
        m_Keys.FindInNames(SSearchWord(word));
        if (rank.GetGains().inTag)
            AddTagged(word);
    }
    SortByKey(rows, m_Keys.Get(), rank.GetKeyBits());
}

/// Each tag is searched once, however many items carry it.
void RankIndex::AddTagged(std::string const& word)
{
    for (STag const& tag : m_Tags) {
        if (tag.text.find(word) != std::string::npos)
            m_Keys.AddTagged(tag.items);
    }
}

/// The panel lists them one after the other, because they match alike. Sorting by key, which comes
/// later, is stable and so keeps the order that they get here.
void RankIndex::OrderNamesakes(std::vector<unsigned long>& rows) const
{
    if (!m_HasNamesakes)
        return;
    for (std::size_t first = 0, end = 1; first < rows.size(); first = end, end = first + 1) {
        while (end < rows.size() && m_Namesakes[rows[first]].first == m_Namesakes[rows[end]].first)
            ++end;
        if (end - first > 1)
            std::sort(rows.begin() + std::ptrdiff_t(first), rows.begin() + std::ptrdiff_t(end),
                      [this](unsigned long left, unsigned long right) {
                          return m_Namesakes[left].place < m_Namesakes[right].place;
                      });
    }
}

} // namespace nodepalette
