#include "rankindex.h"

#include "palettetext.h"

#include <nodebrowser/stringutils.h>

#include <algorithm>
#include <set>
#include <tuple>

namespace nodepalette {

namespace {

/// How many rows ahead the memory of an item is asked for.
std::size_t const kLookAhead = 12;

} // namespace

void RankIndex::Forget()
{
    m_Names.clear();
    m_Texts.release();
    m_Namesakes.clear();
    m_HasNamesakes = false;
    ForgetTags();
}

void RankIndex::ForgetTags()
{
    m_Tags.clear();
    m_TagMatches.clear();
    m_TagPositions.clear();
    m_TagsOfItems.clear();
    m_TagEnds.clear();
}

bool RankIndex::Fill(Source const& source, std::size_t count)
{
    std::size_t const total = source.GetCount();
    if (m_Names.size() > total || m_TagEnds.size() > total)
        Forget();
    for (; count > 0 && m_Names.size() < total; --count)
        AppendName(source.GetName(m_Names.size()));
    for (; count > 0 && m_TagEnds.size() < total; --count) {
        PlaceNamesakes(source, static_cast<std::uint32_t>(m_TagEnds.size()));
        AppendTags(source.GetTags(m_TagEnds.size()));
    }
    return m_TagEnds.size() < total;
}

void RankIndex::AppendName(std::string const& name)
{
    std::string const lower = ToSearchForm(name);
    auto const item = static_cast<std::uint32_t>(m_Names.size());
    bool const isNamesake = item > 0 && m_Names.back().text == lower;
    SSearchName entry;
    entry.text = KeepText(lower);
    // Where lower case has another length, places in the name are no places in its search form.
    entry.wordStarts = FindWordStarts(lower.size() == name.size() ? name : lower);
    entry.letters = FindLetters(lower);
    entry.startLetters = FindStartLetters(lower, entry.wordStarts);
    entry.letterCount = static_cast<std::uint32_t>(CountLetters(lower));
    entry.characterCount = static_cast<std::uint32_t>(CountCharacters(lower));
    entry.first = lower.c_str()[0];
    m_Namesakes.push_back(SNamesake{isNamesake ? m_Namesakes.back().first : item, item});
    m_Names.push_back(entry);
    m_HasNamesakes = m_HasNamesakes || isNamesake;
}

/// With the zeros that SSearchName wants.
std::string_view RankIndex::KeepText(std::string const& text)
{
    std::size_t const size = text.size() + SSearchName::kBlockSize;
    auto* const kept = static_cast<char*>(m_Texts.allocate(size, 1));
    std::fill(std::copy(text.begin(), text.end(), kept), kept + size, '\0');
    return std::string_view(kept, text.size());
}

void RankIndex::AppendTags(std::string const& tags)
{
    std::set<std::string> distinct;
    SplitString(tags, ";", distinct);
    for (std::string const& tag : distinct)
        m_TagsOfItems.push_back(FindTag(tag));
    m_TagEnds.push_back(static_cast<std::uint32_t>(m_TagsOfItems.size()));
}

std::uint32_t RankIndex::FindTag(std::string const& tag)
{
    auto const place = m_TagPositions.emplace(tag, static_cast<std::uint32_t>(m_Tags.size()));
    if (place.second)
        m_Tags.push_back(ToSearchForm(tag));
    return place.first->second;
}

/// Namesakes differ in case at most. The panel's order, which ignores the case of ASCII alone,
/// leaves some of them as they were read; spelling and UID make it the same in each run.
void RankIndex::PlaceNamesakes(Source const& source, std::uint32_t first)
{
    std::uint32_t end = first + 1;
    while (end < m_Names.size() && m_Namesakes[end].first == first)
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

/// Each tag is searched once, however many items carry it.
void RankIndex::MatchTag(NameRank const& rank, std::size_t tag)
{
    STagMatch& match = m_TagMatches[tag];
    match = STagMatch{0, m_Search};
    for (std::size_t number = 0; number < rank.GetWords().size(); ++number) {
        if (m_Tags[tag].find(rank.GetWords()[number]) != std::string::npos)
            match.words |= WordMask(1) << number;
    }
}

WordMask RankIndex::MatchTags(NameRank const& rank, std::size_t item)
{
    WordMask words = 0;
    for (std::uint32_t i = item > 0 ? m_TagEnds[item - 1] : 0; i < m_TagEnds[item]; ++i) {
        STagMatch const& match = m_TagMatches[m_TagsOfItems[i]];
        if (match.search != m_Search)
            MatchTag(rank, m_TagsOfItems[i]);
        words |= match.words;
    }
    return words;
}

void RankIndex::Prefetch(std::size_t item) const
{
#ifdef __GNUC__
    __builtin_prefetch(&m_Names[item]);
    __builtin_prefetch(&m_TagEnds[item]);
#endif
}

void RankIndex::Rank(Source const& source, std::string const& searchText,
                     std::vector<unsigned long>& rows)
{
    NameRank const rank(searchText);
    Fill(source, std::size_t(-1));
    std::size_t const count = std::min(m_Names.size(), m_TagEnds.size());
    bool const areKnown =
        std::all_of(rows.begin(), rows.end(), [=](unsigned long item) { return item < count; });
    if (rank.GetWords().empty() || !areKnown)
        return;

    m_TagMatches.resize(m_Tags.size());
    ++m_Search;
    OrderNamesakes(rows);
    WordMask const allWords = rank.GetAllWords();
    bool const isOneWord = rank.GetWords().size() == 1;
    std::vector<SRankedRow> ranked(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        // Items that have a rare word lie far apart.
        if (row + kLookAhead < rows.size())
            Prefetch(rows[row + kLookAhead]);
        unsigned long const item = rows[row];
        NameRank::SMatch const match = rank.Match(m_Names[item]);
        NameRank::Key key = match.key;
        // An item that is listed for the only word, and not for its name, has it in its tags.
        if (match.words != allWords)
            key = rank.AddTags(match, isOneWord ? allWords : MatchTags(rank, item));
        ranked[row] = SRankedRow{key, static_cast<std::uint32_t>(item)};
    }
    SortByKey(ranked, rank.GetKeyBits());
    std::transform(ranked.begin(), ranked.end(), rows.begin(),
                   [](SRankedRow const& row) { return row.item; });
}

/// The panel lists them one after the other, because they match alike. What is sorted by key
/// later keeps the order that they get here.
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
