// Items that become nodes.

#include "canvas.h"

#include "containment.h"
#include "graphedits.h"
#include "nodewiring.h"

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/textencoding.h>

#include <QCursor>

#include <algorithm>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

/// The margin between a rectangle that is brought into view and the edge of the view, in pixels.
int const kViewMargin = 20;
/// The distance between an output and a node that is added behind it, in scene units.
int const kNodeGap = 4 * kGridPitch;
/// The point of a new node, from its top left, that is put at the wanted position.
QPointF const kHeaderMiddle(kSmallestNodeWidth / 2.0, kHeaderHeight / 2.0);

} // namespace

QString CCanvas::GetItemName(ItemID const& id) const
{
    return nodebrowser::ToQString(m_Host.GetLibrary().GetItemName(id, true, nullptr).c_str());
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
        reason = tr("Open a compound first, by Alt+Down or a double click: nodes are added to it.");
    else if (id.IsNull() || id.GetType() == LibType::gType)
        reason = tr("\"%1\" cannot become a node.").arg(GetItemName(id));
    else
        return CheckContainment({ItemIDUnlock::GetItemIDUID(id)});
    m_Host.GetMessages().Post(eSeverity::kInformation, reason);
    return false;
}

CCanvas::NewNode CCanvas::MakeNode(ItemID const& id)
{
    std::string const item = ItemIDUnlock::GetItemIDUID(id);
    NewNode node = {id, m_Looks.GetItemLook(item), m_Body};
    node.look.id = AddNode(node.body, item, GetItemName(id).toStdString(), QPointF());
    return node;
}

void CCanvas::CommitNode(NewNode node, QPointF const& topLeft)
{
    node.body.nodes.back().position = SnapToGrid(topLeft);
    if (CommitNewNodes(node.body, {node.look.id}, "Add Node"))
        Q_EMIT NodeAdded(node.item);
}

void CCanvas::AddItem(ItemID const& id)
{
    if (!CheckItem(id))
        return;
    NewNode const node = MakeNode(id);
    CommitNode(node, FindRoom(node.look, GetCenter() - kHeaderMiddle));
}

void CCanvas::AddNodeAt(ItemID const& id, QPointF const& point)
{
    NewNode node = MakeNode(id);
    InsertIntoConnection(node.body, node.look, point);
    CommitNode(node, point - kHeaderMiddle);
}

bool CCanvas::InsertIntoConnection(GraphBody& body, NodeLook const& node,
                                   QPointF const& point) const
{
    auto const connection = m_Scene.FindConnectionAt(point, GetConnectionReach());
    auto const from = connection ? m_Scene.GetPort(connection->from, true) : std::nullopt;
    auto const to = connection ? m_Scene.GetPort(connection->to, false) : std::nullopt;
    return from && to && InsertNode(body, *from, *to, node);
}

void CCanvas::InsertMovedNode(GraphBody& body, std::string const& id, QPointF const& point)
{
    GraphNode const* const node = FindNode(body, id);
    bool const isConnected = std::any_of(
        body.connections.begin(), body.connections.end(), [&id](GraphConnection const& connection) {
            return connection.from.node == id || connection.to.node == id;
        });
    if (!node || isConnected)
        return;
    NodeLook look = m_Looks.GetItemLook(node->item);
    look.id = id;
    InsertIntoConnection(body, look, point);
}

void CCanvas::AddConnectedNode(ItemID const& id, std::vector<PortPick> const& ports,
                               QPointF const& point)
{
    NewNode node = MakeNode(id);
    for (PortPick const& port : ports) {
        auto const fit = FindFit(port, node.look);
        if (!fit)
            continue;
        Connect(node.body, JoinPorts(port, node.look, *fit));
        CommitNode(node, point - GetPortPosition(node.look, *fit, !port.isOutput));
        return;
    }
    QString const type = nodebrowser::ToQString(ports.front().port.typeName.c_str());
    m_Host.GetMessages().Post(eSeverity::kInformation,
                              (ports.front().isOutput
                                   ? tr("\"%1\" has no input that takes %2: it is not connected.")
                                   : tr("\"%1\" has no output that gives %2: it is not connected."))
                                  .arg(node.look.title, type));
    CommitNode(node, point - kHeaderMiddle);
}

void CCanvas::WantNode()
{
    QPoint const mouse = viewport()->mapFromGlobal(QCursor::pos());
    if (CanChange() && m_Gesture == eGesture::kNone)
        WantNodeAt({viewport()->underMouse() ? mapToScene(mouse) : GetCenter()});
}

std::vector<PortPick> CCanvas::GetOutputsOfSelection() const
{
    std::set<std::string> const ids = m_Scene.GetSelectedNodes();
    return ids.size() == 1 ? m_Scene.GetOutputs(*ids.begin()) : std::vector<PortPick>();
}

bool CCanvas::CanContinue() const
{
    return CanChange() && !GetOutputsOfSelection().empty();
}

void CCanvas::WantConnectedNode()
{
    std::vector<PortPick> const outputs = GetOutputsOfSelection();
    if (!CanChange() || m_Gesture != eGesture::kNone || outputs.empty())
        return;
    // As far beside the output as there is room for a small node.
    QPointF const middle(0, kHeaderHeight + kPortRowHeight / 2.0);
    QPointF const beside = outputs.front().position + QPointF(kNodeGap, 0);
    QPointF const point = FindRoom(NodeLook(), beside - middle) + middle;
    BringIntoView(QRectF(point, QSizeF(kSmallestNodeWidth, kHeaderHeight)));
    WantNodeAt({point, outputs});
}

void CCanvas::WantNodeAt(WantedNode const& wanted)
{
    ForgetWantedNode();
    m_WantedNode = wanted;
    if (!wanted.ports.empty())
        ShowLooseConnection(wanted.ports.front(), wanted.point, false);
    Q_EMIT NodeWanted(viewport()->mapToGlobal(mapFromScene(wanted.point)));
}

void CCanvas::ForgetWantedNode()
{
    if (m_WantedNode && !m_WantedNode->ports.empty())
        m_Scene.HidePreview();
    m_WantedNode.reset();
}

void CCanvas::AddWantedNode(ItemID const& id)
{
    // A copy, since the wanted node is forgotten whether or not the item can be added.
    std::optional<WantedNode> const wanted = m_WantedNode;
    ForgetWantedNode();
    if (!wanted || !CheckItem(id))
        return;
    std::vector<PortPick> ports;
    // The graph may have been changed meanwhile.
    for (PortPick const& port : wanted->ports)
        if (auto const found = m_Scene.GetPort({port.node, port.port.name}, port.isOutput))
            ports.push_back(*found);
    if (ports.empty())
        AddNodeAt(id, wanted->point);
    else
        AddConnectedNode(id, ports, wanted->point);
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
