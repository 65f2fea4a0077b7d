#include "nodebrowser_p.h"

#include "hostservices.h"
#include "qtcompat.h"
#include "textencoding.h"

#include <QApplication>
#include <QDataStream>
#include <QDrag>
#include <QHelpEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

using namespace nodebrowser;
using namespace tarno::datamodel;

namespace {

/// How far one wheel event scrolls, however far the wheel was turned: three rows, in pixels.
int const kWheelStep = 72;

/// What a drop target reads: one QString, the item's serialised identifier, in the stream's
/// default format.
QByteArray EncodeDragPayload(ItemID const& id)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream << ToQString(id.Serialize().c_str());
    return payload;
}

} // namespace

void CNodeBrowser::mousePressEvent(QMouseEvent* event)
{
    unsigned long const row = GetItemIndexAt(qtcompat::Position(event));
    m_SelectedIndex = kNoRow;
    // A press beside the rows deselects without a repaint or a signal: the highlight stays on
    // screen until the next paint.
    if (row >= m_VisibleItems.size())
        return;

    if (event->button() == Qt::LeftButton) {
        m_SelectedIndex = row;
        m_PressPos = qtcompat::Position(event);
        repaint();
        Q_EMIT SelectionChanged();
    } else if (event->button() == Qt::RightButton && m_BrowserConfig != eConfigTypes) {
        m_SelectedIndex = row;
        QPointer<CNodeBrowser> const self(this);
        PopContexMenu(qtcompat::GlobalPosition(event), row);
        if (self)
            Q_EMIT SelectionChanged();
    }
}

void CNodeBrowser::mouseMoveEvent(QMouseEvent* event)
{
    ItemAccessor const item = AccessorAtRow(m_SelectedIndex);
    if (!item.IsValid() || m_Private->isDragging || !(event->buttons() & Qt::LeftButton))
        return;
    QPoint const distance = qtcompat::Position(event) - m_PressPos;
    if (distance.manhattanLength() < QApplication::startDragDistance())
        return;

    QPointer<CNodeBrowser> const self(this);
    QByteArray const payload = EncodeDragPayload(AskItemID(item));
    if (!self)
        return;
    QMimeData* const mimeData = new QMimeData;
    mimeData->setData(QLatin1String("tarno/toc.key"), payload);
    QDrag* const drag = new QDrag(this);
    drag->setMimeData(mimeData);
    // Runs an event loop: neither the item nor the browser need be there afterwards.
    m_Private->isDragging = true;
    drag->exec(Qt::CopyAction);
    if (self)
        m_Private->isDragging = false;
}

void CNodeBrowser::mouseDoubleClickEvent(QMouseEvent* event)
{
    ItemAccessor const item = AccessorAtRow(GetItemIndexAt(qtcompat::Position(event)));
    ItemLibraryAccessor const library(m_ItemLibrary);
    ItemID const id = AskItemID(item);
    if (id.GetType() != TarnoType::gCompound)
        return;
    CompoundAccessor compound;
    compound.SetFrom(library.GetModel(id, nullptr));
    Helpers::SetGlobalTarnoCompoundTarget(compound, CompoundAccessor());
}

bool CNodeBrowser::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        ShowRowToolTip(static_cast<QHelpEvent*>(event));
        return true;
    }
    if (event->type() == QEvent::Wheel && ScrollByWheel(static_cast<QWheelEvent*>(event)))
        return true;
    return QWidget::event(event);
}

void CNodeBrowser::ShowRowToolTip(QHelpEvent* event)
{
    ItemID const id = AskItemID(AccessorAtRow(GetItemIndexAt(event->pos())));
    if (id.GetType() != TarnoType::gCompound) {
        QToolTip::showText(QPoint(0, 0), QString());
        event->ignore();
        return;
    }
    qorm::QormHandle<qorm::IDbObject> const object = FindDbObject(FindRevisionControlHelper(), id);
    if (object.IsValid())
        QToolTip::showText(event->globalPos(),
                           ScsUtils::GetToolTip(object, QLatin1String(":compound.png")));
}

bool CNodeBrowser::ScrollByWheel(QWheelEvent* event)
{
    if (!GetRowArea().contains(qtcompat::Position(event)))
        return false;
    // A hidden scroll bar keeps its range, so that rows which all fit still scroll by it. A delta
    // of 0 counts as down.
    int const step = qtcompat::WheelDelta(event) > 0 ? -kWheelStep : kWheelStep;
    m_ScrollBar->setValue(m_ScrollOffset + step);
    event->accept();
    return true;
}

ItemID CNodeBrowser::GetSelection()
{
    return AskItemID(AccessorAtRow(m_SelectedIndex));
}

bool CNodeBrowser::IsSelectionType()
{
    ItemLibraryAccessor const library(m_ItemLibrary);
    if (!library.IsValid())
        return false;
    ItemID const id = GetSelection();
    if (!id.IsValid())
        return false;
    TypeDescriptorAccessor descriptor;
    descriptor.SetFrom(library.GetModel(id, nullptr));
    return descriptor.IsValid();
}
