#include "graphscene.h"

#include "connectionitem.h"

#include <algorithm>

using namespace embeddedhost;

namespace {

double const kPreviewLayer = 2;

} // namespace

CGraphScene::CGraphScene(CanvasColors const& colors)
    : m_Pictures(colors)
    , m_Preview(new CConnectionItem(GraphConnection(), GetColors()))
{
    m_Preview->setZValue(kPreviewLayer);
    m_Preview->setFlag(QGraphicsItem::ItemIsSelectable, false);
    m_Preview->hide();
    addItem(m_Preview);
}

void CGraphScene::SetColors(CanvasColors const& colors)
{
    m_Pictures.SetColors(colors);
    for (auto const& connection : m_Connections)
        UpdateEnds(*connection.second);
    update();
}

CanvasColors const& CGraphScene::GetColors() const
{
    return m_Pictures.GetColors();
}

NodePictures& CGraphScene::GetPictures()
{
    return m_Pictures;
}

bool CGraphScene::Show(std::vector<NodeLook> const& looks,
                       std::vector<GraphConnection> const& connections)
{
    bool const areNodesChanged = ShowNodes(looks);
    if (!areNodesChanged && connections == m_ShownConnections)
        return false;
    ShowConnections(connections);
    m_ShownConnections = connections;
    return true;
}

bool CGraphScene::ShowNodes(std::vector<NodeLook> const& looks)
{
    std::map<std::string, CNodeItem*> previous;
    // A diff against the items that are shown: those that stay keep their selection.
    previous.swap(m_Nodes);
    bool isChanged = false;
    for (NodeLook const& look : looks)
        if (ShowNode(look, previous))
            isChanged = true;
    for (auto const& gone : previous)
        delete gone.second;
    return isChanged || !previous.empty();
}

bool CGraphScene::ShowNode(NodeLook const& look, std::map<std::string, CNodeItem*>& previous)
{
    auto known = previous.extract(look.id);
    if (known.empty()) {
        CNodeItem* const item = new CNodeItem(look, m_Pictures);
        addItem(item);
        m_Nodes[look.id] = item;
        return true;
    }
    CNodeItem* const item = known.mapped();
    m_Nodes.insert(std::move(known));
    // The item may have been moved on the screen alone.
    bool const isChanged = !(item->GetLook() == look) || item->pos() != look.position;
    if (isChanged)
        item->SetLook(look);
    return isChanged;
}

void CGraphScene::ShowConnections(std::vector<GraphConnection> const& connections)
{
    std::map<GraphConnection, CConnectionItem*> previous;
    previous.swap(m_Connections);
    for (GraphConnection const& connection : connections) {
        if (!FindPort(connection.from, true) || !FindPort(connection.to, false))
            continue;
        auto known = previous.extract(connection);
        if (!known.empty()) {
            UpdateEnds(*known.mapped());
            m_Connections.insert(std::move(known));
        } else if (!m_Connections.count(connection)) {
            CConnectionItem* const item = new CConnectionItem(connection, GetColors());
            UpdateEnds(*item);
            addItem(item);
            m_Connections[connection] = item;
        }
    }
    for (auto const& gone : previous)
        delete gone.second;
}

void CGraphScene::UpdateEnds(CConnectionItem& item)
{
    GraphConnection const& connection = item.GetConnection();
    PortLook const* const from = FindPort(connection.from, true);
    PortLook const* const to = FindPort(connection.to, false);
    if (!from || !to)
        return;
    item.SetEnds(FindNode(connection.from.node)->GetPortPoint(*from, true),
                 FindNode(connection.to.node)->GetPortPoint(*to, false));
    // The more definite type of the two gives the colour.
    PortLook const& typed = from->typeName.empty() || from->typeName == "Any" ? *to : *from;
    item.SetColor(GetTypeColor(typed.type, typed.typeName, GetColors().isDark));
}

QRectF CGraphScene::GetBounds() const
{
    QRectF bounds;
    for (auto const& node : m_Nodes)
        bounds |= node.second->sceneBoundingRect();
    return bounds;
}

std::vector<std::string> CGraphScene::GetNodeIds() const
{
    std::vector<std::string> ids;
    for (auto const& node : m_Nodes)
        ids.push_back(node.first);
    return ids;
}

NodeLook const* CGraphScene::FindLook(std::string const& id) const
{
    CNodeItem const* const node = FindNode(id);
    return node ? &node->GetLook() : nullptr;
}

std::vector<GraphConnection> const& CGraphScene::GetConnections() const
{
    return m_ShownConnections;
}

QPointF CGraphScene::GetFirstNodePosition() const
{
    return m_Nodes.empty() ? QPointF() : m_Nodes.begin()->second->pos();
}

CNodeItem* CGraphScene::FindNode(std::string const& id) const
{
    auto const found = m_Nodes.find(id);
    return found == m_Nodes.end() ? nullptr : found->second;
}

PortLook const* CGraphScene::FindPort(GraphEnd const& end, bool isOutput) const
{
    CNodeItem const* const node = FindNode(end.node);
    return node ? node->FindPort(end.port, isOutput) : nullptr;
}

QList<CNodeItem*> CGraphScene::GetNodesNear(QPointF const& point) const
{
    QRectF const around =
        QRectF(point, point).adjusted(-kPortReach, -kPortReach, kPortReach, kPortReach);
    QList<CNodeItem*> nodes;
    // By bounding rectangle, which is quick, topmost item first; callers do the exact hit test.
    for (QGraphicsItem* const item : items(around, Qt::IntersectsItemBoundingRect))
        if (CNodeItem* const node = qgraphicsitem_cast<CNodeItem*>(item))
            nodes.append(node);
    return nodes;
}

std::optional<NodeLook> CGraphScene::FindNodeAt(QPointF const& point) const
{
    for (CNodeItem* const node : GetNodesNear(point))
        if (node->contains(node->mapFromScene(point)))
            return node->GetLook();
    return std::nullopt;
}

bool CGraphScene::IsNodeIn(QRectF const& rect) const
{
    QList<QGraphicsItem*> const found = items(rect, Qt::IntersectsItemBoundingRect);
    return std::any_of(found.begin(), found.end(), [&rect](QGraphicsItem* item) {
        CNodeItem const* const node = qgraphicsitem_cast<CNodeItem*>(item);
        return node && GetNodeRect(node->GetLook()).translated(node->pos()).intersects(rect);
    });
}

std::optional<QPointF> CGraphScene::FindNodePosition(std::string const& id) const
{
    CNodeItem const* const node = FindNode(id);
    return node ? std::make_optional(node->pos()) : std::nullopt;
}

std::optional<PortPick> CGraphScene::FindPortAt(QPointF const& point) const
{
    for (CNodeItem* const node : GetNodesNear(point))
        if (auto const port = node->FindPort(point))
            return port;
    return std::nullopt;
}

std::optional<GraphConnection> CGraphScene::FindConnectionAt(QPointF const& point,
                                                             double reach) const
{
    QRectF const around = QRectF(point, point).adjusted(-reach, -reach, reach, reach);
    for (QGraphicsItem* const item : items(around, Qt::IntersectsItemBoundingRect)) {
        auto const connection = qgraphicsitem_cast<CConnectionItem*>(item);
        if (connection && connection != m_Preview && connection->GetDistance(point) <= reach)
            return connection->GetConnection();
    }
    return std::nullopt;
}

std::optional<PortPick> CGraphScene::GetPort(GraphEnd const& end, bool isOutput) const
{
    CNodeItem const* const node = FindNode(end.node);
    return node ? node->GetPort(end.port, isOutput) : std::nullopt;
}

std::vector<PortPick> CGraphScene::GetOutputs(std::string const& node) const
{
    std::vector<PortPick> outputs;
    CNodeItem const* const item = FindNode(node);
    for (PortLook const& port : item ? item->GetLook().outputs : std::vector<PortLook>())
        outputs.push_back(*item->GetPort(port.name, true));
    return outputs;
}

void CGraphScene::ShowNodesAt(std::map<std::string, QPointF> const& positions)
{
    for (auto const& position : positions)
        if (CNodeItem* const node = FindNode(position.first))
            node->setPos(position.second);
    for (auto const& connection : m_Connections) {
        GraphConnection const& ends = connection.second->GetConnection();
        if (positions.count(ends.from.node) || positions.count(ends.to.node))
            UpdateEnds(*connection.second);
    }
}

void CGraphScene::SetConnectionVisible(GraphConnection const& connection, bool isVisible)
{
    auto const found = m_Connections.find(connection);
    if (found != m_Connections.end())
        found->second->setVisible(isVisible);
}

void CGraphScene::ShowPreview(QPointF const& from, QPointF const& to, QColor const& color,
                              bool isRefused)
{
    m_Preview->SetEnds(from, to);
    m_Preview->SetColor(color);
    m_Preview->SetRefused(isRefused);
    m_Preview->show();
}

void CGraphScene::HidePreview()
{
    m_Preview->hide();
}

void CGraphScene::MarkPort(GraphEnd const& end, bool isOutput, ePortMark mark)
{
    UnmarkPort();
    if (CNodeItem* const node = FindNode(end.node)) {
        node->MarkPort(end.port, isOutput, mark);
        m_MarkedNode = end.node;
    }
}

void CGraphScene::FadePorts(std::function<bool(PortPick const&)> const& isFaded)
{
    for (auto const& node : m_Nodes)
        node.second->FadePorts(isFaded);
}

void CGraphScene::UnmarkPort()
{
    if (CNodeItem* const node = FindNode(m_MarkedNode))
        node->UnmarkPort();
    m_MarkedNode.clear();
}

#include "moc_graphscene.cpp"
