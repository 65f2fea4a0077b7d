#include "nodepalette_p.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTabBar>
#include <QToolTip>

#include <algorithm>

using namespace nodepalette;
using namespace tarno::datamodel;

namespace {

// All in pixels; the first six are the panel's.
int const kTabBarTop = 20;
int const kScrollBarWidth = 20;
int const kNameLeft = 35;
int const kIconLeft = 9;
int const kBadgedIconLeft = 2;
int const kIconTop = 2;
int const kNoteGap = 10;
int const kCountMargin = 4;

/// Tips stay until they are dismissed, in practice.
int const kTipTime = 60000;

QPoint PositionOf(QMouseEvent const* event)
{
#if QT_VERSION >= 0x060000
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

} // namespace

void CNodePalette::paintEvent(QPaintEvent* event)
{
    if (m_Private->isListOnly) {
        PaintListOnly(event);
        return;
    }
    {
        QScopedValueRollback<bool> const painting(m_Private->isPainting, true);
        UpdateRows(event);
        CNodeBrowser::paintEvent(event);
        QPainter painter(this);
        painter.setClipRect(GetRowArea());
        PaintSelection(painter);
        PaintRowNotes(painter);
    }
    RememberRows();
}

void CNodePalette::resizeEvent(QResizeEvent* event)
{
    CNodeBrowser::resizeEvent(event);
    LayOut();
}

void CNodePalette::changeEvent(QEvent* event)
{
    CNodeBrowser::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange)
        LayOut();
}

bool CNodePalette::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ToolTip: {
        auto const* const help = static_cast<QHelpEvent*>(event);
        ShowTip(help->globalPos(), GetRowAt(help->pos()));
        return true;
    }
    case QEvent::Wheel:
        // The panel scrolls rows that all fit by the range of a bar that is hidden.
        if (m_ScrollBar->isHidden())
            return QWidget::event(event);
        break;
    case QEvent::ShortcutOverride:
        // From a child other than the search field. Typing goes to the search there, too.
        if (TakesKey(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::Polish:
    case QEvent::Show:
    case QEvent::LayoutRequest:
        LayOut();
        break;
    default:
        break;
    }
    return CNodeBrowser::event(event);
}

/// Over what the panel lays out: the header has room for the tabs of any style, and the tabs stay
/// inside the palette.
void CNodePalette::LayOut()
{
    if (m_TabBar) {
        QSize const hint = m_TabBar->sizeHint();
        m_TabBar->resize(std::min(hint.width(), width()), hint.height());
        m_HeaderHeight = std::max(m_Private->panelHeaderHeight, kTabBarTop + hint.height());
    }
    m_ScrollBar->setGeometry(width() - kScrollBarWidth, m_HeaderHeight, kScrollBarWidth,
                             height() - m_HeaderHeight);
    UpdateScrollbar();
    m_Private->notice->setGeometry(0, m_HeaderHeight, width(), height() - m_HeaderHeight);
    update();
}

/// Shows the number of rows at the right end of the search field, and the notice if there are none.
void CNodePalette::UpdateCount()
{
    QLabel& label = *m_Private->countLabel;
    auto const count = static_cast<qulonglong>(m_VisibleItems.size());
    QString const text = QLocale().toString(count);
    label.setText(text);
    label.setAccessibleName(count == 1 ? tr("1 item") : tr("%1 items").arg(text));
    label.setToolTip(tr("%1 of %2 items")
                         .arg(text, QLocale().toString(static_cast<qulonglong>(m_Items.size()))));
    label.adjustSize();
    m_SearchEdit->setTextMargins(0, 0, label.width() + kCountMargin, 0);
    PlaceCount();

    CEmptyNotice& notice = *m_Private->notice;
    if (m_VisibleItems.empty())
        notice.Describe(m_SearchText, m_Private->rowsUnderAll);
    notice.setVisible(m_VisibleItems.empty());
    // Screen readers speak a new description of what has the focus.
    QString description = m_VisibleItems.empty() ? notice.GetText() : label.accessibleName();
    try {
        if (HasSelection() && !m_SearchText.isEmpty())
            description += QLatin1String(", ") + GetRowName(static_cast<int>(m_SelectedIndex));
    } catch (...) {
        // Exceptions must not pass through the event loop; the name is left out.
    }
    m_SearchEdit->setAccessibleDescription(description);
}

void CNodePalette::PlaceCount()
{
    QLabel& label = *m_Private->countLabel;
    label.move(m_SearchEdit->width() - label.width() - kCountMargin,
               (m_SearchEdit->height() - label.height()) / 2);
}

/// Half as strong as the text of the field, whichever colours it has.
void CNodePalette::ColourCount()
{
    QPalette colours = m_SearchEdit->palette();
    QColor const text = colours.color(QPalette::Text);
    QColor const base = colours.color(QPalette::Base);
    colours.setColor(QPalette::Text,
                     QColor((text.red() + base.red()) / 2, (text.green() + base.green()) / 2,
                            (text.blue() + base.blue()) / 2));
    m_Private->countLabel->setPalette(colours);
}

/// Paints the selected row again: the panel keeps the text's colour on the highlight, where some
/// styles make it unreadable.
void CNodePalette::PaintSelection(QPainter& painter)
{
    Item const* const item = ItemAt(m_SelectedIndex);
    if (!item)
        return;
    int const row = static_cast<int>(m_SelectedIndex);
    QRect const rect = GetRowRect(row).adjusted(0, 0, 0, 1);
    painter.fillRect(rect, palette().brush(QPalette::Active, QPalette::Highlight));
    bool const hasBadge = item->m_IsFactory || (m_SourceControlEnabled && item->m_HasScState);
    painter.drawPixmap(hasBadge ? kBadgedIconLeft : kIconLeft, rect.top() + kIconTop,
                       item->m_DisplayIcon);
    painter.setPen(palette().color(QPalette::Active, QPalette::HighlightedText));
    painter.drawText(rect.adjusted(kNameLeft, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                     GetRowName(row));
}

/// Paints the notes behind the names of some rows, the elided ends of long names, and the line
/// below recent items.
void CNodePalette::PaintRowNotes(QPainter& painter)
{
    int const right = width() - (m_ScrollBar->isHidden() ? 0 : kScrollBarWidth) - kCountMargin;
    unsigned long const first = static_cast<unsigned long>(m_ScrollOffset / kRowHeight);
    unsigned long const end = std::min<unsigned long>(
        m_VisibleItems.size(), first + static_cast<unsigned long>(RowsInSight()) + 2);
    for (unsigned long row = first; row < end; ++row) {
        QRect rect = GetRowRect(static_cast<int>(row)).adjusted(0, 0, 0, 1);
        rect.setRight(right);
        PaintRowText(painter, row, rect.adjusted(kNameLeft, 0, 0, 0));
        if (row > 0 && row == m_Private->recentRows) {
            painter.setPen(palette().color(QPalette::PlaceholderText));
            painter.drawLine(rect.left() + kNoteGap, rect.top(), right - kNoteGap, rect.top());
        }
    }
}

/// Paints over the panel's name, which may run on to the edge: a name that is too long is elided. A
/// note takes up to half of the room while the name needs the rest.
void CNodePalette::PaintRowText(QPainter& painter, unsigned long row, QRect const& room)
{
    QString const name = GetRowName(static_cast<int>(row));
    QFontMetrics const metrics = fontMetrics();
    int const nameWidth = metrics.horizontalAdvance(name);
    QString const note =
        GetRowNote(row, std::max(room.width() / 2, room.width() - nameWidth) - kNoteGap);
    int const noteWidth =
        note.isEmpty() ? 0 : std::min(kNoteGap + metrics.horizontalAdvance(note), room.width() / 2);
    QRect nameRect = room;
    nameRect.setWidth(std::min(nameWidth, room.width() - noteWidth));
    bool const isSelected = row == m_SelectedIndex;
    if (nameWidth > nameRect.width()) {
        // Highlights of other rows reach into the first line of pixels and the one below.
        painter.fillRect(room.adjusted(0, 1, width() - room.right(), -1),
                         isSelected ? palette().brush(QPalette::Active, QPalette::Highlight)
                                    : palette().brush(backgroundRole()));
        painter.setPen(isSelected ? palette().color(QPalette::Active, QPalette::HighlightedText)
                                  : palette().color(foregroundRole()));
        painter.drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter,
                         metrics.elidedText(name, Qt::ElideRight, nameRect.width()));
    }
    if (note.isEmpty())
        return;
    QRect noteRect = room;
    noteRect.setLeft(nameRect.right() + kNoteGap);
    painter.setPen(isSelected ? palette().color(QPalette::Active, QPalette::HighlightedText)
                              : palette().color(QPalette::PlaceholderText));
    painter.drawText(noteRect, Qt::AlignLeft | Qt::AlignVCenter,
                     // In the middle, because two UIDs may differ at their ends.
                     metrics.elidedText(note, Qt::ElideMiddle, noteRect.width()));
}

QRect CNodePalette::GetRowRect(int row)
{
    EnsureRows();
    if (static_cast<unsigned long>(row) >= m_VisibleItems.size())
        return QRect();
    return QRect(0, m_HeaderHeight - m_ScrollOffset + row * kRowHeight, width(), kRowHeight);
}

QRect CNodePalette::GetRowArea() const
{
    return QRect(QPoint(0, m_HeaderHeight), QPoint(width() - 1, height() - 1));
}

int CNodePalette::GetRowAt(QPoint const& point)
{
    EnsureRows();
    unsigned long const row = GetRowArea().contains(point) ? GetItemIndexAt(point) : kNoRow;
    return ItemAt(row) ? static_cast<int>(row) : -1;
}

void CNodePalette::ShowTip(QPoint const& globalPos, int row)
{
    QRect const area = GetRowRect(row);
    QToolTip::showText(globalPos, GetRowToolTip(row), this, area, kTipTime);
}

void CNodePalette::mousePressEvent(QMouseEvent* event)
{
    // Before the panel notes the row: rows that are arranged later restore the last selection.
    EnsureRows();
    // The panel paints for the left button only, and runs its menu in the middle of this.
    update();
    QPointer<CNodePalette> const self(this);
    CNodeBrowser::mousePressEvent(event);
    if (!self)
        return;
    update();
    // The panel sends no signal for a press that selects no row.
    TellSelection();
}

void CNodePalette::mouseDoubleClickEvent(QMouseEvent* event)
{
    ItemID const id = PlaceOfRow(static_cast<unsigned long>(GetRowAt(PositionOf(event)))).id;
    QPointer<CNodePalette> const self(this);
    CNodeBrowser::mouseDoubleClickEvent(event);
    if (self && !id.IsNull() && event->button() == Qt::LeftButton)
        Q_EMIT ItemActivated(id, eByDoubleClick);
}
