#include "nodebrowser_p.h"

#include "stringutils.h"
#include "textencoding.h"

#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

/// The rows of the matches, best score first, equal scores in their order. Scores are few
/// and small, so they are counted instead of compared.
std::vector<unsigned long> OrderByScore(std::vector<ItemList::SMatch> const& matches)
{
    std::uint32_t highest = 0;
    for (ItemList::SMatch const& match : matches)
        highest = std::max(highest, match.score);
    std::vector<std::size_t> places(std::size_t(highest) + 2, 0);
    for (ItemList::SMatch const& match : matches)
        ++places[match.score + 1];
    for (std::size_t score = 1; score < places.size(); ++score)
        places[score] += places[score - 1];

    std::vector<unsigned long> ordered(matches.size());
    for (ItemList::SMatch const& match : matches)
        ordered[places[match.score]++] = match.row;
    return ordered;
}

} // namespace

std::set<std::string> CNodeBrowser::GetSearchWords() const
{
    std::set<std::string> words;
    SplitString(ToSearchForm(m_SearchTextLower), words);
    return words;
}

bool CNodeBrowser::CompareToFilter(ItemAccessor& item, unsigned long* score) const
{
    item.Revalidate();
    ItemID const id = item.GetItemID();
    bool const isSignature =
        id.GetType() == TarnoType::gCompound && Helpers::IsAbstractFunction(item);
    if (!PassesKindFilter(FindItemKind(id.GetType(), isSignature), m_ConfigType))
        return false;
    std::set<std::string> const words = GetSearchWords();
    unsigned long value = 0;
    if (!words.empty())
        value = ItemList::Score(
            words, ItemList::ToSearchName(m_ItemLibrary.GetItemName(id, true, nullptr)),
            m_TagsRegistry.GetItemTags(id));
    if (value == ItemList::kNoMatch)
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

    QScopedValueRollback<bool> const use(m_Private->isListInUse);
    m_Private->isListInUse = true;
    m_VisibleItems = MatchItems();
    m_ContentHeight = static_cast<int>(m_VisibleItems.size()) * kRowHeight;
    UpdateScrollbar();
}

std::vector<unsigned long> CNodeBrowser::MatchItems()
{
    ItemList const& list = m_Private->list;
    // A rebuild that broke off left items without names, and a subclass may change the items and
    // their tags.
    if (list.HasNames() && list.GetCount() == m_Items.size() && list.IsRegistryCurrent())
        return MatchList();
    std::vector<ItemList::SMatch> matches;
    for (ItemList::Row row = 0; row < m_Items.size(); ++row) {
        unsigned long score = 0;
        if (CompareToFilter(m_Items[row].m_Accessor, &score))
            matches.push_back(ItemList::SMatch{row, static_cast<std::uint32_t>(score)});
    }
    return OrderByScore(matches);
}

/// The same rows as MatchItems, found in the cached names, kinds and tags of all items at once.
std::vector<unsigned long> CNodeBrowser::MatchList()
{
    ItemList& list = m_Private->list;
    auto const passes = [&](ItemList::Row row) {
        return PassesKindFilter(list.GetKind(row), m_ConfigType);
    };
    std::set<std::string> const words = GetSearchWords();
    if (words.empty()) {
        std::vector<unsigned long> rows;
        rows.reserve(list.GetCount());
        for (ItemList::Row row = 0; row < list.GetCount(); ++row) {
            if (passes(row))
                rows.push_back(row);
        }
        return rows;
    }
    std::vector<ItemList::SMatch> matches = list.Search(words);
    auto const end =
        std::remove_if(matches.begin(), matches.end(),
                       [&](ItemList::SMatch const& match) { return !passes(match.row); });
    matches.erase(end, matches.end());
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
