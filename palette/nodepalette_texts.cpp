// The texts of a row: name, note, description and tool tip.

#include "nodepalette_p.h"

#include "itemfacts.h"
#include "palettetext.h"

#include <nodebrowser/stringutils.h>
#include <nodebrowser/textencoding.h>

#include <algorithm>
#include <set>

using namespace nodepalette;
using namespace tarno::datamodel;

namespace {

/// The maximum number of items with the same name that are compared with each other.
unsigned long const kMaximumNamesakes = 16;

} // namespace

/// How the row differs from others of its name, and why it is listed; only the first of these if
/// all together do not fit into `room` pixels. Empty for most rows.
QString CNodePalette::GetRowNote(unsigned long row, int room)
{
    if (!ItemAt(row))
        return QString();
    QStringList notes;
    auto const add = [&notes](QString const& note) {
        if (!note.isEmpty())
            notes << note;
    };
    add(TellApart(m_VisibleItems[row]));
    add(row < m_Private->recentRows ? tr("recent") : QString());
    QString const tag = GetTagNote(row);
    add(tag.isEmpty() ? QString() : tr("tag: %1").arg(tag));
    QString const all = notes.join(QStringLiteral(" · "));
    bool const isTooLong = notes.size() > 1 && fontMetrics().horizontalAdvance(all) > room;
    return isTooLong ? notes.first() : all;
}

/// Words in which the item differs from others of its name; empty when it is the only one. Items
/// of one name stand one after the other in the item list.
QString CNodePalette::TellApart(unsigned long item)
{
    std::string const name = NameOfItem(item);
    unsigned long first = item;
    while (first > 0 && item - first < kMaximumNamesakes && NameOfItem(first - 1) == name)
        --first;
    unsigned long end = item + 1;
    while (end < m_Items.size() && end - first < kMaximumNamesakes && NameOfItem(end) == name)
        ++end;
    if (end - first < 2)
        return QString();

    ItemID const id = IdOfItem(item);
    auto const known = m_Private->namesakeNotes.find(id);
    if (known != m_Private->namesakeNotes.end())
        return known->second;
    std::vector<QStringList> facts;
    for (unsigned long other = first; other < end; ++other) {
        ItemID const otherId = IdOfItem(other);
        facts.push_back(QStringList()
                        << DescribeKind(AccessorOfItem(other)) << AskDetails(otherId).category
                        << AskDataSource(otherId) << FromHost(ItemSource(*this).GetUid(other)));
    }
    return m_Private->namesakeNotes[id] = PickDifferences(facts, item - first);
}

/// The tag for which alone the row is listed; empty when its name matches.
QString CNodePalette::GetTagNote(unsigned long row) const
{
    std::vector<std::string> const words =
        NameRank(nodebrowser::ToSearchForm(m_SearchTextLower)).GetWords();
    ItemID const id = PlaceOfRow(row).id;
    if (words.empty() || id.IsNull())
        return QString();
    auto const hasWord = [&](std::string const& text) {
        std::string const searched = ToSearchForm(text);
        return std::any_of(words.begin(), words.end(), [&](std::string const& word) {
            return searched.find(word) != std::string::npos;
        });
    };
    if (hasWord(m_ItemLibrary.GetItemName(id, true, nullptr)))
        return QString();
    std::set<std::string> const tags = AskTags(id);
    auto const tag = std::find_if(tags.begin(), tags.end(), hasWord);
    return tag != tags.end() ? FromHost(*tag) : QString();
}

/// Of this item alone: the panel's registry would collect those of all items first.
std::set<std::string> CNodePalette::AskTags(ItemID const& id) const
{
    std::set<std::string> tags;
    SplitString(m_ItemLibrary.GetItemTags(id, kAppTagsCategory) + ';' + KindTag(id), ";", tags);
    return tags;
}

CNodePalette::SItemDetails CNodePalette::AskDetails(ItemID const& id) const
{
    return m_Private->detailsSource ? m_Private->detailsSource(id) : SItemDetails();
}

QString CNodePalette::GetRowName(int row)
{
    ItemID const id = GetItemAt(row);
    return FromHost(m_ItemLibrary.GetItemName(id, true, nullptr))
           + (!id.IsNull() && m_ItemLibrary.ItemIsModified(id) ? QStringLiteral("*") : QString());
}

QString CNodePalette::GetRowDescription(int row)
{
    ItemAccessor const item = AccessorAt(row);
    ItemID const id = GetItemAt(row);
    if (id.IsNull())
        return QString();
    QString const facts =
        AskItemFacts(m_ItemLibrary, item, AskTags(id), AskDetails(id)).ToDescription();
    bool const isRecent = static_cast<unsigned long>(row) < m_Private->recentRows;
    return isRecent ? tr("recent, %1").arg(facts) : facts;
}

QString CNodePalette::GetRowToolTip(int row)
{
    ItemAccessor const item = AccessorAt(row);
    ItemID const id = GetItemAt(row);
    if (id.IsNull())
        return QString();
    QString const tag = GetTagNote(static_cast<unsigned long>(row));
    return AskItemFacts(m_ItemLibrary, item, AskTags(id), AskDetails(id))
        .ToToolTip(tag.isEmpty() ? QString() : tr("Listed for its tag “%1”").arg(tag));
}
