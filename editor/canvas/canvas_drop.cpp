// Items that are dragged onto the canvas.

#include "canvas.h"

#include "itempayload.h"

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/textencoding.h>

#include <QDragEnterEvent>
#include <QDropEvent>

using namespace tarno::datamodel;

namespace {

QPoint PositionOf(QDropEvent const* event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

} // namespace

ItemID CCanvas::FindDraggedItem(QMimeData const* data) const
{
    std::string const serialized = ReadItemPayload(data);
    ItemID const id = m_Host.FindItem(GetPayloadUid(serialized));
    // An item of another library may have the same uid but another kind.
    if (id.IsNull() || id.Serialize() != serialized || id.GetType() == LibType::gType)
        return ItemID();
    return id;
}

void CCanvas::AnswerDrag(QDragMoveEvent* event)
{
    bool const isWanted = !m_Compound.IsNull() && (event->possibleActions() & Qt::CopyAction)
                          && !FindDraggedItem(event->mimeData()).IsNull();
    if (!isWanted) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void CCanvas::dragEnterEvent(QDragEnterEvent* event)
{
    AnswerDrag(event);
}

void CCanvas::dragMoveEvent(QDragMoveEvent* event)
{
    AnswerDrag(event);
}

void CCanvas::dragLeaveEvent(QDragLeaveEvent*)
{
    // The scene never saw the drag enter, so the base class must not tell it that it left.
}

void CCanvas::dropEvent(QDropEvent* event)
{
    ItemID const id = FindDraggedItem(event->mimeData());
    if (m_Compound.IsNull() || id.IsNull()) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // The next keys, such as undo, should reach the graph.
    setFocus(Qt::MouseFocusReason);
    if (CheckItem(id))
        AddNodeAt(id, mapToScene(PositionOf(event)));
}
