// The selection of the scene.

#include "connectionitem.h"
#include "graphscene.h"

#include <algorithm>

using namespace embeddedhost;

std::set<std::string> CGraphScene::GetSelectedNodes() const
{
    std::set<std::string> ids;
    for (auto const& node : m_Nodes)
        if (node.second->isSelected())
            ids.insert(node.first);
    return ids;
}

bool CGraphScene::IsAnyNodeSelected() const
{
    return std::any_of(m_Nodes.begin(), m_Nodes.end(),
                       [](auto const& node) { return node.second->isSelected(); });
}

std::vector<GraphConnection> CGraphScene::GetSelectedConnections() const
{
    std::vector<GraphConnection> connections;
    for (auto const& connection : m_Connections)
        if (connection.second->isSelected())
            connections.push_back(connection.second->GetConnection());
    return connections;
}

bool CGraphScene::IsNodeSelected(std::string const& id) const
{
    CNodeItem const* const node = FindNode(id);
    return node && node->isSelected();
}

void CGraphScene::SelectNodes(std::set<std::string> const& ids)
{
    clearSelection();
    for (std::string const& id : ids)
        if (CNodeItem* const node = FindNode(id))
            node->setSelected(true);
}

void CGraphScene::ToggleNode(std::string const& id)
{
    if (CNodeItem* const node = FindNode(id))
        node->setSelected(!node->isSelected());
}

void CGraphScene::SelectConnection(GraphConnection const& connection, bool isAdded)
{
    if (!isAdded)
        clearSelection();
    auto const found = m_Connections.find(connection);
    if (found != m_Connections.end())
        found->second->setSelected(true);
}

void CGraphScene::SelectNodesIn(QRectF const& rect, std::set<std::string> const& kept)
{
    std::set<std::string> ids = kept;
    for (auto const& node : m_Nodes)
        if (rect.intersects(GetNodeRect(node.second->GetLook()).translated(node.second->pos())))
            ids.insert(node.first);
    // Called for each move of the mouse; an unchanged selection must not be announced again.
    if (ids != GetSelectedNodes())
        SelectNodes(ids);
}
