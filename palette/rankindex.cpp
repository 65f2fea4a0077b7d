#include "rankindex.h"

#include "palettetext.h"

#include <algorithm>
#include <tuple>

namespace nodepalette {

void RankIndex::Forget()
{
    m_Names.clear();
    m_Places.clear();
    ForgetTags();
}

void RankIndex::ForgetTags()
{
    m_TagsOfItems.clear();
    m_Tags.clear();
    m_TagPositions.clear();
}

bool RankIndex::Fill(Source const& source, std::size_t count)
{
    std::size_t const total = source.GetCount();
    if (m_Places.size() > total || m_TagsOfItems.size() > total)
        Forget();
    for (; count > 0 && m_Places.size() < total; --count)
        AppendName(source.GetName(m_Places.size()));
    for (; count > 0 && m_TagsOfItems.size() < total; --count)
        AppendTags(source.GetTags(m_TagsOfItems.size()));
    return m_Places.size() < total || m_TagsOfItems.size() < total;
}

void RankIndex::AppendName(std::string const& name)
{
    std::string const lower = ToSearchForm(name);
    auto const item = static_cast<std::uint32_t>(m_Places.size());
    bool const isNamesake = item > 0 && GetName(item - 1).text == lower;
    // Where lower case has another length, places in the name are no places in its search form.
    m_Places.push_back(SName{m_Names.size(),
                             FindWordStarts(lower.size() == name.size() ? name : lower),
                             FindLetters(lower), static_cast<std::uint32_t>(lower.size()),
                             static_cast<std::uint32_t>(CountCharacters(lower)),
                             isNamesake ? m_Places.back().namesake : item});
    m_Names += lower;
}

void RankIndex::AppendTags(std::string const& tags)
{
    auto const place = m_TagPositions.emplace(tags, static_cast<std::uint32_t>(m_Tags.size()));
    if (place.second)
        m_Tags.push_back(STags{ToSearchForm(tags), 0, 0});
    m_TagsOfItems.push_back(place.first->second);
}

SSearchName RankIndex::GetName(std::size_t item) const
{
    SName const& place = m_Places[item];
    return SSearchName{std::string_view(m_Names.data() + place.begin, place.length),
                       place.wordStarts, place.letters};
}

/// Each tag string is searched once, however many items carry it.
WordMask RankIndex::MatchTags(NameRank const& rank, std::size_t item)
{
    STags& tags = m_Tags[m_TagsOfItems[item]];
    if (tags.search == m_Search)
        return tags.words;
    tags.search = m_Search;
    tags.words = 0;
    for (std::size_t number = 0; number < rank.GetWords().size(); ++number) {
        if (tags.text.find(rank.GetWords()[number]) != std::string::npos)
            tags.words |= WordMask(1) << number;
    }
    return tags.words;
}

void RankIndex::Rank(Source const& source, std::string const& searchText,
                     std::vector<unsigned long>& rows)
{
    NameRank const rank(searchText);
    Fill(source, std::size_t(-1));
    bool const areKnown = std::all_of(rows.begin(), rows.end(), [&](unsigned long item) {
        return item < m_Places.size() && item < m_TagsOfItems.size();
    });
    if (rank.GetWords().empty() || !areKnown)
        return;

    ++m_Search;
    bool const isOneWord = rank.GetWords().size() == 1;
    bool hasNamesakes = false;
    std::vector<SRankedRow> ranked(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        unsigned long const item = rows[row];
        SSearchName const name = GetName(item);
        SNameMatch const match = rank.Match(name);
        WordMask tagWords = 0;
        // An item that is listed for the only word, and not for its name, has it in its tags.
        if (match.words != rank.GetAllWords())
            tagWords = isOneWord ? rank.GetAllWords() : MatchTags(rank, item);
        hasNamesakes = hasNamesakes || m_Places[item].namesake != item;
        ranked[row] = SRankedRow{rank.GetKey(match, tagWords, m_Places[item].characterCount),
                                 static_cast<std::uint32_t>(item)};
    }
    SortByKey(ranked);
    if (hasNamesakes)
        OrderNamesakes(source, ranked);
    std::transform(ranked.begin(), ranked.end(), rows.begin(),
                   [](SRankedRow const& row) { return row.item; });
}

/// The panel's order of items that share a name, whatever its case, is that in which they were
/// read. Spelling and UID make it the same in each run.
void RankIndex::OrderNamesakes(Source const& source, std::vector<SRankedRow>& rows) const
{
    for (std::size_t first = 0, end = 1; first < rows.size(); first = end, end = first + 1) {
        while (end < rows.size() && rows[first].key == rows[end].key
               && m_Places[rows[first].item].namesake == m_Places[rows[end].item].namesake)
            ++end;
        if (end - first < 2)
            continue;
        typedef std::tuple<std::string, std::string, std::uint32_t> Namesake;
        std::vector<Namesake> namesakes;
        for (std::size_t row = first; row < end; ++row) {
            std::uint32_t const item = rows[row].item;
            namesakes.emplace_back(source.GetName(item), source.GetUid(item), item);
        }
        std::sort(namesakes.begin(), namesakes.end());
        for (std::size_t row = first; row < end; ++row)
            rows[row].item = std::get<std::uint32_t>(namesakes[row - first]);
    }
}

} // namespace nodepalette
