// Which rows there are, and in which order.

#include "nodepalette_p.h"

#include "paletteaccessible.h"
#include "palettetext.h"

#include <nodebrowser/textencoding.h>

#include <QImage>
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

/// The panel makes its list when it paints, so a single pixel is painted. An exception of the host
/// is kept and thrown again afterwards, because the toolkit's painting code is not exception-safe.
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
    // The rows stay dirty if the host throws before they are arranged.
    m_VisibleListDirty = true;
    CNodeBrowser::paintEvent(event);
}

/// If the host throws, the rows stay dirty.
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

/// Filters the list if that is due, and sorts the rows that the panel found. The selected item and
/// the first visible one stay the same unless the text is new.
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
    RestoreSelection(isTextNew, isFilterNew);
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

void CNodePalette::FillIndex()
{
    bool isMissing = false;
    try {
        // A pending rebuild would make the answers obsolete.
        isMissing = !m_ItemListDirty && !m_ScStatesStale
                    && m_Private->index.Fill(ItemSource(*this), kFillSlice);
    } catch (...) {
        // Ignored here: the next search asks again, and passes the exception on.
    }
    if (!isMissing)
        m_Private->fillTimer.stop();
}

/// Listeners are notified from the event loop, because rows are arranged while painting.
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
