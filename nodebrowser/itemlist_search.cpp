#include "itemlist.h"

#include "textencoding.h"

#include <QString>

#include <algorithm>
#include <string_view>

namespace nodebrowser {

namespace {

bool IsAscii(char const* text)
{
    while (*text && static_cast<unsigned char>(*text) < 0x80)
        ++text;
    return !*text;
}

char ToLowerAscii(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
}

/// `hasTag(number)` tells whether a tag contains the word of that number.
template <class HasTag>
std::uint32_t ScoreItem(std::set<std::string> const& words, std::string_view name, HasTag hasTag)
{
    std::uint32_t score = ItemList::kNoMatch;
    std::uint32_t number = 0;
    for (std::string const& word : words) {
        std::size_t const found = name.find(word);
        if (found == 0)
            return number;
        if (found != std::string_view::npos)
            score = number + static_cast<std::uint32_t>(words.size());
        else if (score == ItemList::kNoMatch && hasTag(number))
            score = ItemList::kTagMatch;
        ++number;
    }
    return score;
}

} // namespace

std::string ItemList::ToSearchName(std::string const& name)
{
    // What the toolkit does, without its detour over 16-bit characters.
    if (IsAscii(name.c_str())) {
        std::string lower = name.substr(0, name.find('\0'));
        std::transform(lower.begin(), lower.end(), lower.begin(), ToLowerAscii);
        return lower;
    }
    return ToSearchForm(ToQString(name.c_str()).toLower());
}

void ItemList::AppendSearchName(TextBlock& names, char const* name)
{
    if (IsAscii(name))
        names.Append(name, ToLowerAscii);
    else
        names.Append(ToSearchName(name));
}

unsigned long ItemList::Score(std::set<std::string> const& words, std::string const& searchName,
                              std::set<std::string> const& tags)
{
    std::vector<std::string> const numbered(words.begin(), words.end());
    return ScoreItem(words, searchName,
                     [&](std::size_t number) { return TagIndex::Match(tags, numbered[number]); });
}

std::vector<ItemList::SMatch> ItemList::Search(std::set<std::string> const& words)
{
    TagMatches tagMatches;
    for (std::string const& word : words)
        tagMatches.push_back(m_Tags.Match(word));
    std::vector<SMatch> matches;
    if (IsNarrower(words))
        SearchLastMatches(words, tagMatches, matches);
    else
        SearchAll(words, tagMatches, matches);

    // Without words the last matches are not used: memory may run out in between.
    ForgetSearch();
    m_LastMatches = matches;
    std::set<std::string>(words).swap(m_LastWords);
    return matches;
}

/// Whether only rows that the last search found can match: each word contains one of the last.
bool ItemList::IsNarrower(std::set<std::string> const& words) const
{
    // A sweep over all names is faster than looking at many of them one by one.
    if (m_LastWords.empty() || m_LastMatches.size() > m_Rows.size() / 8)
        return false;
    // With so many words, scores of names reach that of tags.
    if (m_LastWords.size() > kTagMatch / 2)
        return false;
    return std::all_of(words.begin(), words.end(), [&](std::string const& word) {
        return std::any_of(m_LastWords.begin(), m_LastWords.end(), [&](std::string const& last) {
            return word.find(last) != std::string::npos;
        });
    });
}

void ItemList::SearchLastMatches(std::set<std::string> const& words, TagMatches const& tagMatches,
                                 std::vector<SMatch>& matches) const
{
    for (SMatch const& last : m_LastMatches) {
        Row const row = last.row;
        // A name without any of the last words has none of these.
        std::string_view const name =
            last.score == kTagMatch ? std::string_view() : m_SearchNames.GetView(row);
        std::uint32_t const score = ScoreItem(words, name, [&](std::size_t number) {
            return m_Tags.HasAny(m_Slots[row], tagMatches[number]);
        });
        if (score != kNoMatch)
            matches.push_back(SMatch{row, score});
    }
}

/// Word by word over all rows.
void ItemList::SearchAll(std::set<std::string> const& words, TagMatches const& tagMatches,
                         std::vector<SMatch>& matches) const
{
    std::vector<std::uint32_t> scores(m_Rows.size(), kNoMatch);
    // A word at the start of the name ends the row's scan.
    std::vector<char> settled(m_Rows.size(), 0);
    std::size_t number = 0;
    for (std::string const& word : words) {
        // The names come last, because they overwrite what a tag gave.
        std::vector<char> const& hasTag = tagMatches[number];
        for (Slot slot = 0; !hasTag.empty() && slot < m_Rows.size(); ++slot) {
            Row const row = m_Rows[slot];
            if (scores[row] == kNoMatch && !settled[row] && m_Tags.HasAny(slot, hasTag))
                scores[row] = kTagMatch;
        }
        m_SearchNames.ForEachEntryWith(word, [&](std::size_t row, bool isAtStart) {
            if (!settled[row])
                scores[row] =
                    static_cast<std::uint32_t>(isAtStart ? number : number + words.size());
            settled[row] |= isAtStart;
        });
        ++number;
    }
    for (Row row = 0; row < m_Rows.size(); ++row) {
        if (scores[row] != kNoMatch)
            matches.push_back(SMatch{row, scores[row]});
    }
}

} // namespace nodebrowser
