// Items that become nodes.

#include "canvas.h"

#include "containment.h"
#include "graphedits.h"

#include <embeddedhost.h>

using namespace tarno::datamodel;

namespace {

/// Between the side of the view and what is brought into it, in pixels.
int const kViewMargin = 20;

} // namespace

QString CCanvas::GetItemName(ItemID const& id) const
{
    return QString::fromLatin1(m_Host.GetLibrary().GetItemName(id, true, nullptr).c_str());
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

bool CCanvas::CheckItem(ItemID const& id)
{
    QString reason;
    if (m_Compound.IsNull())
        reason = tr("Open a compound first: nodes are added to it.");
    else if (id.IsNull() || id.GetType() == LibType::gType)
        reason = tr("\"%1\" cannot become a node.").arg(GetItemName(id));
    else
        return CheckContainment({ItemIDUnlock::GetItemIDUID(id)});
    m_Host.GetMessages().Post(eSeverity::kInformation, reason);
    return false;
}

void CCanvas::AddItem(ItemID const& id)
{
    if (!CheckItem(id))
        return;
    NodeLook const look = m_Looks.GetItemLook(ItemIDUnlock::GetItemIDUID(id));
    AddNodeAt(id, FindRoom(look, GetCenter() - QPointF(look.width, kHeaderHeight) / 2));
}

void CCanvas::AddNodeAt(ItemID const& id, QPointF const& topLeft)
{
    GraphBody body = m_Body;
    std::string const node = AddNode(body, ItemIDUnlock::GetItemIDUID(id),
                                     GetItemName(id).toStdString(), SnapToGrid(topLeft));
    CommitNewNodes(body, {node}, "Add Node");
}

QPointF CCanvas::FindRoom(NodeLook const& look, QPointF const& topLeft) const
{
    QRectF rect = GetNodeRect(look).translated(SnapToGrid(topLeft));
    while (m_Scene.IsNodeIn(rect))
        rect.translate(0, kGridPitch);
    return rect.topLeft();
}

void CCanvas::BringIntoView(QRectF const& sceneRect)
{
    if (!mapToScene(viewport()->rect()).boundingRect().contains(sceneRect))
        ensureVisible(sceneRect, kViewMargin, kViewMargin);
}
