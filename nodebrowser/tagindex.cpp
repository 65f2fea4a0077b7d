#include "tagindex.h"

#include "stringutils.h"
#include "textencoding.h"

#include <QString>

#include <algorithm>
#include <locale>
#include <utility>

namespace nodebrowser {

namespace {

char const kSeparator = ';';
/// The index is packed when its unused entries outnumber the used ones by more than this.
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

void TagIndex::BeginCollecting()
{
    m_Texts.Begin();
    m_NewRows = SRows();
}

void TagIndex::Collect(std::string const& tagString, char const* kindTag, std::size_t before)
{
    bool const isSame = before < m_Rows.rows.size() && m_Rows.rows[before].isCollected
                        && m_Texts.Get().GetView(before) == tagString;
    std::size_t const row = m_Texts.GetCollectedCount();
    m_Texts.Collect(tagString, isSame, before);
    if (m_Texts.AreKept())
        return;
    AppendKept(row);
    if (isSame)
        AppendRow(before);
    else
        m_NewRows.rows.push_back(Append(tagString, kindTag, m_NewRows.numbers));
}

void TagIndex::CollectUnknown()
{
    Collect(std::string(), "", m_Rows.rows.size());
    m_NewRows.rows.back().isCollected = false;
}

std::size_t TagIndex::GetCollectedCount() const
{
    return m_Texts.GetCollectedCount();
}

void TagIndex::Commit()
{
    std::size_t const count = m_Texts.GetCollectedCount();
    if (count != m_Rows.rows.size() || !m_Texts.AreKept() || !m_NewRows.rows.empty()) {
        AppendKept(count);
        m_Rows = std::move(m_NewRows);
        m_Unused = 0;
    }
    m_Texts.Commit();
    BeginCollecting();
    PackIfWasteful();
}

void TagIndex::SetTags(std::size_t row, std::string const& tagString, char const* kindTag)
{
    // Rows that were collected keep the tags from before the change.
    AppendKept(m_Texts.GetCollectedCount());
    SRow changed = Append(tagString, kindTag, m_Rows.numbers);
    changed.isCollected = false;
    m_Unused += m_Rows.rows[row].count;
    m_Rows.rows[row] = changed;
    // The new rows have numbers as they are.
    if (m_NewRows.rows.empty())
        PackIfWasteful();
}

/// Rows that are kept in place are copied when there is a need to: those before `end`.
void TagIndex::AppendKept(std::size_t end)
{
    while (m_NewRows.rows.size() < end)
        AppendRow(m_NewRows.rows.size());
}

void TagIndex::AppendRow(std::size_t before)
{
    auto const numbers = GetNumbers(before);
    SRow row = m_Rows.rows[before];
    row.begin = static_cast<Number>(m_NewRows.numbers.size());
    m_NewRows.numbers.insert(m_NewRows.numbers.end(), numbers.first, numbers.second);
    m_NewRows.rows.push_back(row);
}

TagIndex::SRow TagIndex::Append(std::string const& tagString, char const* kindTag,
                                std::vector<Number>& numbers)
{
    Number const first = static_cast<Number>(numbers.size());
    for (std::size_t begin = 0; begin < tagString.size(); ++begin) {
        std::size_t const end = std::min(tagString.find(kSeparator, begin), tagString.size());
        AppendPart(tagString.substr(begin, end - begin), numbers);
        begin = end;
    }
    if (m_KindTag != kindTag) {
        m_KindNumber = GetNumber(kindTag);
        m_KindTag = kindTag;
    }
    if (m_KindNumber != kNoTag)
        numbers.push_back(m_KindNumber);
    return SRow{first, static_cast<Number>(numbers.size()) - first, true};
}

void TagIndex::AppendPart(std::string const& part, std::vector<Number>& numbers)
{
    Number const number = GetNumber(part);
    if (number != kNoTag)
        numbers.push_back(number);
}

TagIndex::Number TagIndex::GetNumber(std::string const& part)
{
    auto const known = m_NumbersOfParts.find(part);
    if (known != m_NumbersOfParts.end())
        return known->second;

    std::set<std::string> tags;
    SplitString(part, std::string(1, kSeparator), tags);
    Number number = kNoTag;
    if (tags.count(part) > 0) {
        number = static_cast<Number>(m_Tags.size());
        m_Tags.push_back(STag{part, Fold(part)});
    } else if (!tags.empty()) {
        number = GetNumber(*tags.begin());
    }
    m_NumbersOfParts[part] = number;
    return number;
}

void TagIndex::PackIfWasteful()
{
    std::size_t const used = m_Rows.numbers.size() - m_Unused;
    if (m_Unused > used + kUnusedAllowed || m_NumbersOfParts.size() > 2 * used + kUnusedAllowed)
        Pack();
}

/// Leaves the numbers and tags behind that no row uses.
void TagIndex::Pack()
{
    TagIndex packed;
    for (std::size_t row = 0; row < m_Rows.rows.size(); ++row) {
        std::vector<Number>& packedNumbers = packed.m_Rows.numbers;
        Number const first = static_cast<Number>(packedNumbers.size());
        auto const numbers = GetNumbers(row);
        for (Number const* number = numbers.first; number != numbers.second; ++number)
            packed.AppendPart(m_Tags[*number].text, packedNumbers);
        packed.m_Rows.rows.push_back(SRow{first, static_cast<Number>(packedNumbers.size()) - first,
                                          m_Rows.rows[row].isCollected});
    }
    packed.m_Texts = std::move(m_Texts);
    *this = std::move(packed);
}

bool TagIndex::HasText(std::size_t row) const
{
    return m_Texts.Get().GetLength(row) > 0;
}

std::pair<TagIndex::Number const*, TagIndex::Number const*>
TagIndex::GetNumbers(std::size_t row) const
{
    Number const* const begin = m_Rows.numbers.data() + m_Rows.rows[row].begin;
    return std::make_pair(begin, begin + m_Rows.rows[row].count);
}

std::string const& TagIndex::GetTag(Number number) const
{
    return m_Tags[number].text;
}

std::size_t TagIndex::GetTagCount() const
{
    return m_Tags.size();
}

std::vector<char> TagIndex::Match(std::string const& word) const
{
    std::string const folded = Fold(word);
    std::vector<char> matches(m_Tags.size(), 0);
    std::transform(m_Tags.begin(), m_Tags.end(), matches.begin(),
                   [&](STag const& tag) { return Contains(tag.folded, folded); });
    bool const anyMatches = std::find(matches.begin(), matches.end(), 1) != matches.end();
    return anyMatches ? matches : std::vector<char>();
}

std::vector<char> TagIndex::Unite(std::vector<std::vector<char>> const& matches)
{
    std::vector<char> united;
    for (std::vector<char> const& some : matches) {
        united.resize(std::max(united.size(), some.size()), 0);
        std::transform(some.begin(), some.end(), united.begin(), united.begin(),
                       [](char left, char right) { return static_cast<char>(left | right); });
    }
    return united;
}

bool TagIndex::Match(std::set<std::string> const& tags, std::string const& word)
{
    std::string const folded = Fold(word);
    return std::any_of(tags.begin(), tags.end(),
                       [&](std::string const& tag) { return Contains(Fold(tag), folded); });
}

} // namespace nodebrowser
