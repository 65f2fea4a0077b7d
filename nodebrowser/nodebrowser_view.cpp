#include "nodebrowser.h"

#include "qtcompat.h"

#include <QLineEdit>
#include <QPainter>
#include <QPaintEvent>
#include <QPushButton>
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
int const kIconLeft = 9;
int const kIconHeight = 20;

QPoint GetIconPosition(RowLook const& look, QRect const& rowRect)
{
    return QPoint(look.iconLeft, rowRect.top() + (rowRect.height() - kIconHeight) / 2);
}

/// In pixels of the widget, however sharp the icon is.
QRect GetIconRect(RowLook const& look, QRect const& rowRect)
{
    return QRect(GetIconPosition(look, rowRect), qtcompat::LogicalSize(look.icon));
}

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
    int const rowAreaHeight = height() - m_HeaderHeight;
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
    int const shift = m_ScrollOffset - m_ScrollBar->value();
    m_ScrollOffset = m_ScrollBar->value();
    if (CanShiftRows())
        ShiftRows(shift);
    else
        update();
}

bool CNodeBrowser::CanShiftRows() const
{
    bool const isDirty = m_ItemListDirty || m_ScStatesStale || m_VisibleListDirty;
    // Any other background would be moved along.
    bool const isPlain = palette().brush(backgroundRole()).style() == Qt::SolidPattern;
    return !isDirty && isPlain && !m_ShownRows.empty();
}

/// Moves the rows on the screen, so that only those that come into view are painted. The next
/// paint takes care of those that have changed since they were painted.
void CNodeBrowser::ShiftRows(int shift)
{
    QRect const area = GetRowArea();
    // A tab bar may reach below the header.
    int const top =
        m_TabBar ? std::max(area.top(), m_TabBar->geometry().bottom() + 1) : area.top();
    scroll(0, shift, QRect(QPoint(area.left(), top), area.bottomRight()));
    // The row above the first one in sight reaches a pixel over it.
    update(area.left(), area.top(), area.width(), top - area.top() + std::max(0, shift) + 1);
    m_AreRowsShifted = true;
}

QRect CNodeBrowser::GetRowArea() const
{
    int const right = m_ScrollBar->isVisible() ? m_ScrollBar->x() : width();
    return QRect(0, m_HeaderHeight, right, height() - m_HeaderHeight);
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

void CNodeBrowser::paintEvent(QPaintEvent* event)
{
    ConsumeDirtyFlags();

    QPainter painter(this);
    Qt::BGMode const backgroundMode = painter.backgroundMode();
    painter.setBackgroundMode(Qt::TransparentMode);
    painter.setClipRect(QRect(QPoint(0, m_HeaderHeight), QPoint(width() - 1, height() - 1)));
    PaintRows(painter, event->region());
    painter.setBackgroundMode(backgroundMode);
}

void CNodeBrowser::ConsumeDirtyFlags()
{
    if (m_ItemListDirty || m_ScStatesStale) {
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
    std::list<qorm::QormHandle<qorm::IDbObject> > stateRequests;
    BuildAllItemList(&stateRequests);
    m_ScsTask->RequestObjectStates(stateRequests);
}

RowLook CNodeBrowser::GetRowLook(int row, Item const& item) const
{
    ItemID const id = item.GetItemID();
    bool const hasBadge = item.m_IsFactory || (m_SourceControlEnabled && item.m_HasScState);
    RowLook look;
    look.text = qtcompat::FromAscii(m_ItemLibrary.GetItemName(id, true, nullptr).c_str());
    if (m_ItemLibrary.ItemIsModified(id))
        look.text += QLatin1Char('*');
    look.icon = item.m_DisplayIcon;
    look.iconLeft = hasBadge ? kBadgedIconLeft : kIconLeft;
    look.isHighlighted = static_cast<unsigned long>(row) == m_SelectedIndex;
    return look;
}

void CNodeBrowser::PaintRows(QPainter& painter, QRegion const& exposed)
{
    ShownRows before;
    before.swap(m_ShownRows);
    ShownRows shown;
    bool areIconsInRows = true;
    // Only the rows of which something lies between the header and the lower edge.
    int const firstRow = std::max(0, m_ScrollOffset / kRowHeight);
    int const rowCount = static_cast<int>(m_VisibleItems.size());
    for (int row = firstRow; row < rowCount && GetRowRect(row).top() < height(); ++row) {
        Item const* const item = ItemAtRow(static_cast<unsigned long>(row));
        if (!item)
            continue;
        RowLook const look = GetRowLook(row, *item);
        QRect const rect = GetRowRect(row);
        QRect const iconRect = GetIconRect(look, rect);
        QRect const bounds = rect | iconRect;
        if (exposed.intersects(bounds))
            PaintRow(painter, look, rect);
        if (IsRowShown(row, look, exposed, before))
            shown[row] = look;
        else if (m_AreRowsShifted)
            update(bounds);
        areIconsInRows = areIconsInRows && bounds == rect;
    }
    m_AreRowsShifted = false;
    if (areIconsInRows)
        m_ShownRows.swap(shown);
}

bool CNodeBrowser::IsRowShown(int row, RowLook const& look, QRegion const& exposed,
                              ShownRows const& before) const
{
    ShownRows::const_iterator const found = before.find(row);
    if (found != before.end() && found->second == look)
        return true;
    QRegion const inSight = GetRowRect(row) & GetRowArea();
    return inSight.subtracted(exposed).isEmpty();
}

void CNodeBrowser::PaintRow(QPainter& painter, RowLook const& look, QRect const& rect)
{
    // The highlight is the style's own, whatever palette the widget has.
    if (look.isHighlighted)
        painter.fillRect(rect,
                         style()->standardPalette().brush(QPalette::Active, QPalette::Highlight));
    if (!look.icon.isNull())
        painter.drawPixmap(GetIconPosition(look, rect), look.icon);
    QRect const textRect(QPoint(kTextLeft, rect.top()), rect.bottomRight());
    painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter, look.text);
}
