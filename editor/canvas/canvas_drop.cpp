// Items that are dragged onto the canvas.

#include "canvas.h"

#include "containment.h"
#include "graphedits.h"
#include "itempayload.h"

#include <embeddedhost.h>
#include <textencoding.h>

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
    // Of another kind than the library's item of that uid: from another library.
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
    // The next keys, undo above all, are meant for the graph.
    setFocus(Qt::MouseFocusReason);
    AddDroppedNode(id, mapToScene(PositionOf(event)));
}

QString CCanvas::GetItemName(ItemID const& id) const
{
    return nodebrowser::ToQString(m_Host.GetLibrary().GetItemName(id, true, nullptr).c_str());
}

void CCanvas::AddDroppedNode(ItemID const& id, QPointF const& scenePoint)
{
    std::string const item = ItemIDUnlock::GetItemIDUID(id);
    if (!CheckContainment({item}))
        return;
    GraphBody body = m_Body;
    // The header comes under the mouse.
    QPointF const topLeft = scenePoint - QPointF(kSmallestNodeWidth, kHeaderHeight) / 2;
    std::string const node =
        AddNode(body, item, GetItemName(id).toStdString(), SnapToGrid(topLeft));
    CommitNewNodes(body, {node}, "Add Node");
}

bool CCanvas::CheckContainment(std::set<std::string> const& items)
{
    auto const bodyOf = [this](std::string const& uid) {
        return m_Host.GetBody(m_Host.FindItem(uid));
    };
    std::string const compound = ItemIDUnlock::GetItemIDUID(m_Compound);
    std::string const* const item = FindContainer(items, compound, bodyOf);
    if (!item)
        return true;
    ItemID const id = m_Host.FindItem(*item);
    m_Host.GetMessages().Post(eSeverity::kWarning,
                              id == m_Compound
                                  ? tr("\"%1\" cannot be put into itself.").arg(GetItemName(id))
                                  : tr("\"%1\" cannot be put into \"%2\", which it contains.")
                                        .arg(GetItemName(id), GetItemName(m_Compound)));
    return false;
}
