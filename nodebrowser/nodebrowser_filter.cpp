#include "nodebrowser.h"

#include "itemkinds.h"
#include "stringutils.h"

#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>

using namespace tarno::datamodel;

namespace {

/// A candidate for a row.
struct SMatchingItem
{
    unsigned long index;
    unsigned long score;
};

/// The positions of the matches, best score first, equal scores in their order. Scores are few
/// and small, so they are counted instead of compared.
std::vector<unsigned long> OrderByScore(std::vector<SMatchingItem> const& matches)
{
    unsigned long highest = 0;
    for (SMatchingItem const& match : matches)
        highest = std::max(highest, match.score);
    std::vector<std::size_t> places(highest + 2, 0);
    for (SMatchingItem const& match : matches)
        ++places[match.score + 1];
    for (std::size_t score = 1; score < places.size(); ++score)
        places[score] += places[score - 1];

    std::vector<unsigned long> ordered(matches.size());
    for (SMatchingItem const& match : matches)
        ordered[places[match.score]++] = match.index;
    return ordered;
}

} // namespace

std::set<std::string> CNodeBrowser::GetSearchWords() const
{
    std::set<std::string> words;
    SplitString(QStringToStdString(m_SearchTextLower), words);
    return words;
}

bool CNodeBrowser::CompareToFilter(ItemAccessor& item, unsigned long* score) const
{
    if (!PassesKindFilter(GetKindFilters(item), m_ConfigType))
        return false;
    std::set<std::string> const words = GetSearchWords();
    unsigned long value = 0;
    if (!words.empty()) {
        ItemID const id = item.GetItemID();
        SearchIndex index;
        index.Append(SearchIndex::ToSearchName(m_ItemLibrary.GetItemName(id, true, nullptr)),
                     m_TagsRegistry.GetItemTags(id), 0);
        value = index.Score(words).front();
    }
    if (value == SearchIndex::kNoMatch)
        return false;
    *score = value;
    return true;
}

void CNodeBrowser::UpdateVisibleItems()
{
    m_VisibleListDirty = false;
    m_VisibleItems.clear();
    // Without a library the content height and the scroll bar stay as they were.
    if (!m_ItemTOC.IsValid())
        return;

    // A rebuild that broke off leaves items that are not indexed.
    QScopedValueRollback<bool> const use(m_IsListInUse);
    m_IsListInUse = true;
    if (m_SearchIndex.GetCount() != m_Items.size())
        IndexItems(FetchNames());
    m_VisibleItems = MatchItems();
    m_ContentHeight = static_cast<int>(m_VisibleItems.size()) * kRowHeight;
    UpdateScrollbar();
}

std::vector<unsigned long> CNodeBrowser::MatchItems() const
{
    std::set<std::string> const words = GetSearchWords();
    std::vector<unsigned long> scores;
    if (!words.empty())
        scores = m_SearchIndex.Score(words);

    std::vector<SMatchingItem> matches;
    for (unsigned long index = 0; index < m_Items.size(); ++index) {
        unsigned long const score = words.empty() ? 0 : scores[index];
        if (score != SearchIndex::kNoMatch
            && PassesKindFilter(m_SearchIndex.GetKinds(index), m_ConfigType))
            matches.push_back(SMatchingItem{index, score});
    }
    return OrderByScore(matches);
}

void CNodeBrowser::SearchTextChange(const QString& text)
{
    m_SearchText = text;
    m_SearchTextLower = text.toLower();
    m_VisibleListDirty = true;
    update();
}

void CNodeBrowser::EnterPressed()
{
    // Enter is about the rows for the text that was typed, painted already or not.
    bool const isListDue = m_ItemListDirty || m_ScStatesStale;
    if (m_VisibleListDirty && !isListDue)
        UpdateVisibleItems();
    if (m_SelectedIndex >= m_VisibleItems.size())
        m_SelectedIndex = 0;
    Q_EMIT SelectionChanged();
}

void CNodeBrowser::TabChanged(int index)
{
    m_ConfigType = static_cast<eConfigType>(index);
    m_VisibleListDirty = true;
    update();
}

void CNodeBrowser::ClearButton(bool /*in_bChecked*/)
{
    m_SearchEdit->setText(QString());
}
