#include "nodebrowser_p.h"

#include "textencoding.h"

#include <QLineEdit>
#include <QPainter>
#include <QPaintEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>

#include <algorithm>

using namespace tarno::datamodel;

namespace {

// All in pixels.
int const kSearchFieldHeight = 20;
int const kTabBarTop = 20;
int const kScrollBarWidth = 20;
int const kTextLeft = 35;
/// An icon with a badge strip starts further left by the width of the strip, so that the icons
/// proper of all rows stand in one column.
int const kBadgedIconLeft = 2;
int const kIconLeft = kBadgedIconLeft + ScsUtils::kStateStripWidth;
int const kIconHeight = 20;

} // namespace

void CNodeBrowser::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    int const searchFieldWidth = width() - kClearButtonSize.width();
    m_SearchEdit->move(0, 0);
    m_SearchEdit->resize(searchFieldWidth, kSearchFieldHeight);
    m_ClearButton->move(searchFieldWidth, 0);
    m_ClearButton->resize(kClearButtonSize);
    if (m_TabBar)
        m_TabBar->move(0, kTabBarTop);
    m_ScrollBar->move(width() - kScrollBarWidth, m_HeaderHeight);
    m_ScrollBar->resize(kScrollBarWidth, height() - m_HeaderHeight);
    UpdateScrollbar();
}

void CNodeBrowser::UpdateScrollbar()
{
    int const rowAreaHeight = GetRowArea().height();
    if (rowAreaHeight >= m_ContentHeight) {
        m_ScrollBar->setValue(0);
        m_ScrollBar->hide();
        return;
    }
    m_ScrollBar->setPageStep(rowAreaHeight);
    m_ScrollBar->setMinimum(0);
    m_ScrollBar->setMaximum(m_ContentHeight - rowAreaHeight);
    m_ScrollBar->show();
}

void CNodeBrowser::SliderValueChanged(int /*value*/)
{
    m_ScrollOffset = m_ScrollBar->value();
    update();
}

QRect CNodeBrowser::GetRowArea() const
{
    return QRect(QPoint(0, m_HeaderHeight), QPoint(width() - 1, height() - 1));
}

QRect CNodeBrowser::GetRowRect(int row) const
{
    int const top = m_HeaderHeight - m_ScrollOffset + row * kRowHeight;
    // Corner points, so each rectangle is a pixel higher than the pitch and overlaps the next row.
    return QRect(QPoint(0, top), QPoint(width(), top + kRowHeight));
}

unsigned long CNodeBrowser::GetItemIndexAt(QPoint const& point) const
{
    if (point.x() > width() - 1)
        return kNoRow;
    // The pixel row at the header's height still counts as header.
    if (point.y() <= m_HeaderHeight)
        return kNoRow;
    int const row = (m_ScrollOffset - m_HeaderHeight + point.y()) / kRowHeight;
    return static_cast<unsigned long>(row);
}

void CNodeBrowser::paintEvent(QPaintEvent* /*event*/)
{
    ConsumeDirtyFlags();

    QPainter painter(this);
    Qt::BGMode const backgroundMode = painter.backgroundMode();
    painter.setBackgroundMode(Qt::TransparentMode);
    painter.setClipRect(GetRowArea());
    PaintRows(painter);
    painter.setBackgroundMode(backgroundMode);
}

void CNodeBrowser::ConsumeDirtyFlags()
{
    if (m_ItemListDirty || m_ScStatesStale) {
        m_Private->isFresh = m_Private->isFresh && !m_ItemListDirty;
        m_ItemListDirty = false;
        RebuildItemList();
    }
    if (m_VisibleListDirty)
        UpdateVisibleItems();
}

void CNodeBrowser::RebuildItemList()
{
    if (!m_ScStatesStale) {
        BuildAllItemList(nullptr);
        return;
    }
    m_ScStatesStale = false;
    StateRequests stateRequests;
    if (CanRequestStates())
        RequestStates(stateRequests);
    else
        BuildAllItemList(&stateRequests);
    m_ScsTask->RequestObjectStates(stateRequests);
}

/// Only the rows of which something lies between the header and the lower edge.
void CNodeBrowser::PaintRows(QPainter& painter)
{
    QScopedValueRollback<bool> const use(m_Private->isListInUse);
    m_Private->isListInUse = true;
    int const firstRow = std::max(0, m_ScrollOffset / kRowHeight);
    int const rowCount = static_cast<int>(m_VisibleItems.size());
    for (int row = firstRow; row < rowCount && GetRowRect(row).top() < height(); ++row) {
        if (Item const* const item = ItemAtRow(static_cast<unsigned long>(row)))
            PaintRow(painter, row, *item);
    }
}

void CNodeBrowser::PaintRow(QPainter& painter, int row, Item const& item)
{
    QRect const rect = GetRowRect(row);
    ItemID const id = item.GetItemID();
    QString text = nodebrowser::ToQString(m_ItemLibrary.GetItemName(id, true, nullptr).c_str());
    // The highlight is from the style's standard palette, whatever palette the widget has.
    if (static_cast<unsigned long>(row) == m_SelectedIndex)
        painter.fillRect(rect,
                         style()->standardPalette().brush(QPalette::Active, QPalette::Highlight));
    if (!item.m_DisplayIcon.isNull()) {
        bool const hasBadge = item.m_IsFactory || (m_SourceControlEnabled && item.m_HasScState);
        int const inset = (rect.height() - kIconHeight) / 2;
        painter.drawPixmap(hasBadge ? kBadgedIconLeft : kIconLeft, rect.top() + inset,
                           item.m_DisplayIcon);
    }
    if (m_ItemLibrary.ItemIsModified(id))
        text += QLatin1Char('*');
    QRect const textRect(QPoint(kTextLeft, rect.top()), rect.bottomRight());
    painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter, text);
}
