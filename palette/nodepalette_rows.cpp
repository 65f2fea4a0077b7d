#include "nodepalette_p.h"

#include "itemfacts.h"
#include "paletteaccessible.h"
#include "palettetext.h"

#include <nodebrowser/textencoding.h>

#include <QImage>
#include <QLineEdit>
#include <QRegion>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTabBar>

#include <algorithm>
#include <limits>
#include <utility>

using namespace nodepalette;
using namespace tarno::datamodel;

namespace {

/// How many items the index asks the host about before it looks for events again: about a
/// millisecond.
std::size_t const kFillSlice = 4000;

bool HasWords(QString const& text)
{
    return !text.trimmed().isEmpty();
}

/// The order of the item list: byte by byte, ignoring ASCII case.
bool IsNameBefore(std::string const& left, std::string const& right)
{
    auto const isBefore = [](char leftByte, char rightByte) {
        return static_cast<unsigned char>(ToLowerAscii(leftByte))
               < static_cast<unsigned char>(ToLowerAscii(rightByte));
    };
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        isBefore);
}

/// Scrolls the panel beyond its last row while it exists, so that it paints none.
class ScrolledAway
{
public:
    ScrolledAway(int& offset, QScrollBar& bar)
        : m_Offset(offset)
        , m_Bar(bar)
        // The bar may be moved when its range changes, and would scroll the panel back.
        , m_Blocker(&bar)
    {
        m_Offset = std::numeric_limits<int>::max() / 2;
    }

    ~ScrolledAway()
    {
        m_Offset = m_Bar.value();
    }

private:
    int& m_Offset;
    QScrollBar& m_Bar;
    QSignalBlocker const m_Blocker;
};

} // namespace

CNodePalette::ItemSource::ItemSource(CNodePalette const& palette)
    : m_Palette(palette)
{}

std::size_t CNodePalette::ItemSource::GetCount() const
{
    return m_Palette.m_Items.size();
}

std::string CNodePalette::ItemSource::GetName(std::size_t item) const
{
    return m_Palette.NameOfItem(item);
}

std::string CNodePalette::ItemSource::GetTags(std::size_t item) const
{
    ItemID const id = m_Palette.IdOfItem(item);
    std::string const tags = m_Palette.m_ItemLibrary.GetItemTags(id, kAppTagsCategory);
    return tags + ';' + KindTag(id);
}

std::string CNodePalette::ItemSource::GetUid(std::size_t item) const
{
    char const* const uid = ItemIDUnlock::GetItemIDUID(m_Palette.IdOfItem(item));
    return uid ? uid : "";
}

bool CNodePalette::AreRowsDue() const
{
    return m_ItemListDirty || m_ScStatesStale || m_VisibleListDirty;
}

/// The rows as the next paint would show them.
void CNodePalette::EnsureRows()
{
    if (m_Private->isPainting)
        return;
    if (m_ItemListDirty || m_ScStatesStale)
        MakeList();
    else if (m_VisibleListDirty)
        ArrangeRows();
}

/// The panel makes its list when it paints, so a pixel is painted. What the host raises passes
/// around the toolkit's painting, which would not survive it.
void CNodePalette::MakeList()
{
    QImage pixel(1, 1, QImage::Format_ARGB32_Premultiplied);
    {
        QScopedValueRollback<bool> const listOnly(m_Private->isListOnly, true);
        render(&pixel, QPoint(), QRegion(0, m_HeaderHeight, 1, 1), RenderFlags());
    }
    if (m_Private->hostFault)
        std::rethrow_exception(std::exchange(m_Private->hostFault, nullptr));
}

void CNodePalette::PaintListOnly(QPaintEvent* event)
{
    QScopedValueRollback<bool> const painting(m_Private->isPainting, true);
    try {
        UpdateRows(event);
    } catch (...) {
        m_Private->hostFault = std::current_exception();
    }
}

void CNodePalette::UpdateRows(QPaintEvent* event)
{
    bool const isListDue = m_ItemListDirty || m_ScStatesStale;
    if (isListDue)
        RebuildInPaint(event);
    if (isListDue || m_VisibleListDirty)
        ArrangeRows();
}

/// Has the panel make its list and filter it, and paint nothing yet: the rows still have to be
/// arranged.
void CNodePalette::RebuildInPaint(QPaintEvent* event)
{
    m_Private->index.Forget();
    m_Private->namesakeNotes.clear();
    ScrolledAway const scrolledAway(m_ScrollOffset, *m_ScrollBar);
    // Due until they are arranged, should the host raise something before.
    m_VisibleListDirty = true;
    CNodeBrowser::paintEvent(event);
}

/// When the host raises something in between, the rows stay due.
void CNodePalette::ArrangeRows()
{
    try {
        FilterAndOrderRows();
        RememberRows();
    } catch (...) {
        m_VisibleListDirty = true;
        throw;
    }
    m_Private->searchText = m_SearchText;
    m_Private->filter = m_ConfigType;
    ScheduleRowNews();
}

/// Filters what is not filtered yet, and brings the rows that the panel found into order. The
/// selected item and the first one in sight stay what they are, unless the text is new.
void CNodePalette::FilterAndOrderRows()
{
    bool const isTextNew = m_SearchText != m_Private->searchText;
    bool const isFilterNew = m_ConfigType != m_Private->filter;
    {
        QSignalBlocker const blocker(m_ScrollBar);
        if (m_VisibleListDirty)
            UpdateVisibleItems();
        CountRowsUnderAll();
    }
    m_ScrollOffset = m_ScrollBar->value();

    m_Private->recentRows = 0;
    if (!HasWords(m_SearchText))
        m_Private->recentRows = PutRecentItemsFirst();
    else if (m_Private->ranking == eNameRanking)
        m_Private->index.Rank(ItemSource(*this), nodebrowser::ToSearchForm(m_SearchTextLower),
                              m_VisibleItems);
    if (m_Private->ranking == eNameRanking)
        m_Private->fillTimer.start();
    RestoreSelection(isTextNew);
    RestoreScrolling(isTextNew, isFilterNew);
}

/// Returns how many there are among the rows.
std::size_t CNodePalette::PutRecentItemsFirst()
{
    std::vector<unsigned long> recent;
    for (ItemID const& id : m_Private->recentItems) {
        unsigned long const row = FindRow(SPlace{id, kNoRow});
        if (row >= m_VisibleItems.size())
            continue;
        unsigned long const item = m_VisibleItems[row];
        if (std::find(recent.begin(), recent.end(), item) == recent.end())
            recent.push_back(item);
    }
    auto const isRecent = [&](unsigned long item) {
        return std::find(recent.begin(), recent.end(), item) != recent.end();
    };
    if (recent.empty())
        return 0;
    m_VisibleItems.erase(std::remove_if(m_VisibleItems.begin(), m_VisibleItems.end(), isRecent),
                         m_VisibleItems.end());
    m_VisibleItems.insert(m_VisibleItems.begin(), recent.begin(), recent.end());
    return recent.size();
}

/// What the tab "All" would show, where this one shows nothing.
void CNodePalette::CountRowsUnderAll()
{
    m_Private->rowsUnderAll = 0;
    if (!m_VisibleItems.empty() || !m_TabBar || m_ConfigType == eConfigAll)
        return;
    {
        QScopedValueRollback<eConfigType> const all(m_ConfigType, eConfigAll);
        UpdateVisibleItems();
        m_Private->rowsUnderAll = m_VisibleItems.size();
    }
    UpdateVisibleItems();
}

/// Null for a row that does not exist, or whose item is gone since a rebuild broke off.
CNodeBrowser::Item const* CNodePalette::ItemAt(unsigned long row) const
{
    if (row >= m_VisibleItems.size() || m_VisibleItems[row] >= m_Items.size())
        return nullptr;
    return &m_Items[m_VisibleItems[row]];
}

/// A copy, which outlives the list; invalid for a row without an item.
ItemAccessor CNodePalette::AccessorAt(int row)
{
    EnsureRows();
    Item const* const item = ItemAt(static_cast<unsigned long>(row));
    return item ? item->m_Accessor : ItemAccessor();
}

/// By position in the item list; a copy, because a host may replace the library, and with it the
/// list, whenever it is asked something. Invalid for an item that is gone.
ItemAccessor CNodePalette::AccessorOfItem(unsigned long item) const
{
    return item < m_Items.size() ? m_Items[item].m_Accessor : ItemAccessor();
}

ItemID CNodePalette::IdOfItem(unsigned long item) const
{
    return item < m_Items.size() ? m_Items[item].GetItemID() : ItemID();
}

std::string CNodePalette::NameOfItem(unsigned long item) const
{
    return m_ItemLibrary.GetItemName(IdOfItem(item), true, nullptr);
}

CNodePalette::SPlace CNodePalette::PlaceOfRow(unsigned long row) const
{
    Item const* const item = ItemAt(row);
    return item ? SPlace{item->GetItemID(), m_VisibleItems[row]} : SPlace();
}

/// Where the item stands in the item list now; kNoRow when it is not there. The list is sorted by
/// name, so that few items are looked at.
unsigned long CNodePalette::FindItem(SPlace const& place) const
{
    if (place.id.IsNull())
        return kNoRow;
    if (IdOfItem(place.item) == place.id)
        return place.item;
    std::string const name = m_ItemLibrary.GetItemName(place.id, true, nullptr);
    // Positions instead of iterators: the host is asked for each name.
    unsigned long first = 0;
    for (unsigned long end = m_Items.size(); first < end;) {
        unsigned long const middle = first + (end - first) / 2;
        if (IsNameBefore(NameOfItem(middle), name))
            first = middle + 1;
        else
            end = middle;
    }
    for (; first < m_Items.size() && !IsNameBefore(name, NameOfItem(first)); ++first) {
        if (IdOfItem(first) == place.id)
            return first;
    }
    return kNoRow;
}

/// The row that shows the item; kNoRow for none.
unsigned long CNodePalette::FindRow(SPlace const& place) const
{
    unsigned long const item = FindItem(place);
    if (item == kNoRow)
        return kNoRow;
    auto const row = std::find(m_VisibleItems.begin(), m_VisibleItems.end(), item);
    return row != m_VisibleItems.end() ? static_cast<unsigned long>(row - m_VisibleItems.begin())
                                       : kNoRow;
}

/// As the panel's rows have one for the right mouse button.
bool CNodePalette::HasRowMenus() const
{
    return m_BrowserConfig != eConfigTypes;
}

bool CNodePalette::HasSelection() const
{
    return m_SelectedIndex < m_VisibleItems.size();
}

void CNodePalette::RestoreSelection(bool isTextNew)
{
    if (isTextNew && HasWords(m_SearchText))
        m_SelectedIndex = m_VisibleItems.empty() ? kNoRow : 0;
    else
        m_SelectedIndex = FindRow(m_Private->selected);
}

void CNodePalette::RestoreScrolling(bool isTextNew, bool isFilterNew)
{
    int offset = m_ScrollOffset;
    if (isTextNew || isFilterNew) {
        offset = 0;
        // What was selected under another text or tab is shown where it stands now.
        if (HasSelection())
            offset = static_cast<int>(m_SelectedIndex) * kRowHeight
                     - (RowsInSight() - 1) / 2 * kRowHeight;
        if (m_SelectedIndex < static_cast<unsigned long>(RowsInSight()))
            offset = 0;
    } else {
        unsigned long const row = FindRow(m_Private->firstInSight);
        if (row != kNoRow)
            offset = static_cast<int>(row) * kRowHeight + m_Private->firstInset;
    }
    // The bar of a list that fits is hidden, and keeps its range.
    if (m_ContentHeight <= height() - m_HeaderHeight)
        offset = 0;
    QSignalBlocker const blocker(m_ScrollBar);
    m_ScrollBar->setValue(offset);
    m_ScrollOffset = m_ScrollBar->value();
}

void CNodePalette::RememberRows()
{
    m_Private->selected = PlaceOfRow(m_SelectedIndex);
    m_Private->firstInSight = PlaceOfRow(static_cast<unsigned long>(m_ScrollOffset / kRowHeight));
    m_Private->firstInset = m_ScrollOffset % kRowHeight;
}

/// Listeners are told from the event loop, because rows are arranged while painting.
void CNodePalette::ScheduleRowNews()
{
    if (m_Private->isNewsScheduled)
        return;
    m_Private->isNewsScheduled = true;
    QMetaObject::invokeMethod(
        this, [this] { TellRowNews(); }, Qt::QueuedConnection);
}

void CNodePalette::TellRowNews()
{
    m_Private->isNewsScheduled = false;
    // The next paint has other news.
    if (AreRowsDue())
        return;
    UpdateCount();
    AnnounceRows(*this);
    QPointer<CNodePalette> const self(this);
    if (m_VisibleItems.size() != m_Private->toldCount) {
        m_Private->toldCount = m_VisibleItems.size();
        Q_EMIT RowCountChanged(static_cast<int>(m_VisibleItems.size()));
    }
    if (self)
        TellSelection();
}

void CNodePalette::FillIndex()
{
    bool isMissing = false;
    try {
        // A rebuild that is due makes what would be asked for obsolete.
        isMissing = !m_ItemListDirty && !m_ScStatesStale
                    && m_Private->index.Fill(ItemSource(*this), kFillSlice);
    } catch (...) {
        // The search that needs the answer asks again, and lets what is raised pass.
    }
    if (!isMissing)
        m_Private->fillTimer.stop();
}

int CNodePalette::RowsInSight() const
{
    return std::max(1, (height() - m_HeaderHeight) / kRowHeight);
}

void CNodePalette::ScrollTo(int offset)
{
    if (m_ContentHeight > height() - m_HeaderHeight)
        m_ScrollBar->setValue(offset);
}

void CNodePalette::ShowRow(unsigned long row)
{
    int const top = static_cast<int>(row) * kRowHeight;
    int const rowArea = height() - m_HeaderHeight;
    if (top < m_ScrollOffset || rowArea < kRowHeight)
        ScrollTo(top);
    else if (top + kRowHeight > m_ScrollOffset + rowArea)
        ScrollTo(top + kRowHeight - rowArea);
}

/// By the user, or by whoever stands for one.
void CNodePalette::ChangeSelection(unsigned long row)
{
    if (row >= m_VisibleItems.size())
        return;
    m_SelectedIndex = row;
    ShowRow(row);
    update();
    QPointer<CNodePalette> const self(this);
    TellSelection();
    if (self)
        AnnounceFocusedRow(*this);
}

/// Says that another item is selected, unless that has been said.
void CNodePalette::TellSelection()
{
    if (PlaceOfRow(m_SelectedIndex).id == m_Private->toldSelection)
        return;
    QPointer<CNodePalette> const self(this);
    Q_EMIT SelectionChanged();
    if (self)
        AnnounceSelection(*this);
}

int CNodePalette::GetRowCount()
{
    EnsureRows();
    return static_cast<int>(m_VisibleItems.size());
}

int CNodePalette::GetSelectedRow()
{
    EnsureRows();
    return HasSelection() ? static_cast<int>(m_SelectedIndex) : -1;
}

ItemID CNodePalette::GetItemAt(int row)
{
    ItemAccessor const item = AccessorAt(row);
    return item.IsValid() && item.Revalidate() ? item.GetItemID() : ItemID();
}

int CNodePalette::FindRowOf(ItemID const& id)
{
    EnsureRows();
    unsigned long const row = FindRow(SPlace{id, kNoRow});
    return row < m_VisibleItems.size() ? static_cast<int>(row) : -1;
}

void CNodePalette::SelectRow(int row)
{
    EnsureRows();
    ChangeSelection(static_cast<unsigned long>(row));
}

void CNodePalette::ActivateRow(int row)
{
    EnsureRows();
    if (static_cast<unsigned long>(row) >= m_VisibleItems.size())
        return;
    m_SelectedIndex = static_cast<unsigned long>(row);
    ConfirmRow();
}

void CNodePalette::ShowRowMenu(int row)
{
    EnsureRows();
    QPointer<CNodePalette> const self(this);
    ChangeSelection(static_cast<unsigned long>(row));
    if (!self || !HasRowMenus() || static_cast<unsigned long>(row) >= m_VisibleItems.size())
        return;
    PopContexMenu(mapToGlobal(GetRowRect(row).center()), static_cast<unsigned long>(row));
    if (self)
        update();
}

/// As the panel's Enter key, and then the item is activated.
void CNodePalette::ConfirmRow()
{
    EnsureRows();
    if (!HasSelection())
        m_SelectedIndex = 0;
    // What is meant now: listeners may search for something else.
    ItemID const id = PlaceOfRow(m_SelectedIndex).id;
    ShowRow(m_SelectedIndex);
    QPointer<CNodePalette> const self(this);
    EnterPressed();
    if (self && !id.IsNull())
        Q_EMIT ItemActivated(id, eByKey);
}
