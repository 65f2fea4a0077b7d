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
    else if (words.size() > kNoMatch / 2)
        SearchOneByOne(words, tagMatches, matches);
    else
        SearchAll(words, tagMatches, matches);

    // Without words the last matches are not used: memory may run out in between.
    ForgetSearch();
    // A sweep over all names is faster than looking at many of them one by one.
    if (matches.size() > m_Rows.size() / 4)
        return matches;
    m_LastMatches = matches;
    std::set<std::string>(words).swap(m_LastWords);
    return matches;
}

/// Whether only rows that the last search found can match: each word contains one of the last.
bool ItemList::IsNarrower(std::set<std::string> const& words) const
{
    // With so many words, scores of names reach that of tags.
    if (m_LastWords.empty() || m_LastWords.size() > kTagMatch / 2)
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
        // A name without any of the last words has none of these.
        bool const hasNone = last.score == kTagMatch;
        AppendMatch(last.row, hasNone ? std::string_view() : m_SearchNames.GetView(last.row), words,
                    tagMatches, matches);
    }
}

/// For thousands of words: one of them scores inside a name as no match does, so that words after
/// it may still be found in tags.
void ItemList::SearchOneByOne(std::set<std::string> const& words, TagMatches const& tagMatches,
                              std::vector<SMatch>& matches) const
{
    for (Row row = 0; row < m_Rows.size(); ++row)
        AppendMatch(row, m_SearchNames.GetView(row), words, tagMatches, matches);
}

void ItemList::AppendMatch(Row row, std::string_view name, std::set<std::string> const& words,
                           TagMatches const& tagMatches, std::vector<SMatch>& matches) const
{
    std::uint32_t const score = ScoreItem(words, name, [&](std::size_t number) {
        return m_Tags.HasAny(m_Slots[row], tagMatches[number]);
    });
    if (score != kNoMatch)
        matches.push_back(SMatch{row, score});
}

/// Word by word over all names, then over the tags of those that have no word.
void ItemList::SearchAll(std::set<std::string> const& words, TagMatches const& tagMatches,
                         std::vector<SMatch>& matches) const
{
    Scores scores(m_Rows.size(), kNoMatch);
    std::uint32_t const wordCount = static_cast<std::uint32_t>(words.size());
    std::uint32_t number = 0;
    for (std::string const& word : words) {
        m_SearchNames.ForEachEntryWith(word, [&](std::size_t row, bool isAtStart) {
            // A word at the start of the name is final; all other scores are higher.
            if (scores[row] >= wordCount)
                scores[row] = isAtStart ? number : number + wordCount;
        });
        ++number;
    }
    ScoreTags(TagIndex::Unite(tagMatches), scores);
    matches.reserve(scores.size() - CountUnmatched(scores));
    for (Row row = 0; row < scores.size(); ++row) {
        if (scores[row] != kNoMatch)
            matches.push_back(SMatch{row, scores[row]});
    }
}

std::size_t ItemList::CountUnmatched(Scores const& scores)
{
    return static_cast<std::size_t>(std::count(scores.begin(), scores.end(), kNoMatch));
}

/// `hasWord` tells of each tag whether it contains a word.
void ItemList::ScoreTags(std::vector<char> const& hasWord, Scores& scores) const
{
    if (hasWord.empty())
        return;
    // Rows and slots are in different orders: walking through the slots reads all of them, but
    // from front to back.
    if (CountUnmatched(scores) < scores.size() / 4) {
        for (Row row = 0; row < scores.size(); ++row) {
            if (scores[row] == kNoMatch && m_Tags.HasAny(m_Slots[row], hasWord))
                scores[row] = kTagMatch;
        }
        return;
    }
    for (Slot slot = 0; slot < m_Rows.size(); ++slot) {
        if (m_Tags.HasAny(slot, hasWord) && scores[m_Rows[slot]] == kNoMatch)
            scores[m_Rows[slot]] = kTagMatch;
    }
}

void ItemList::ForgetSearch()
{
    m_LastWords.clear();
    m_LastMatches.clear();
}

} // namespace nodebrowser
