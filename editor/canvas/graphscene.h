#ifndef EDITOR_CANVAS_GRAPHSCENE_H
#define EDITOR_CANVAS_GRAPHSCENE_H

#include "canvascolors.h"
#include "graphedits.h"
#include "nodeitem.h"
#include "nodelook.h"

#include <embeddedhost/model/graphbody.h>

#include <QGraphicsScene>

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

class CConnectionItem;

/// The nodes and connections of one graph. Callers get ids and copies, because items come and
/// go with each change of the graph.
class CGraphScene : public QGraphicsScene
{
    Q_OBJECT

public:
    explicit CGraphScene(CanvasColors const& colors);

    void SetColors(CanvasColors const& colors);
    CanvasColors const& GetColors() const;
    /// The cache of pictures that nodes are painted from.
    NodePictures& GetPictures();

    /// Shows another graph. Items that are in both stay, and stay selected. False when it is shown
    /// already.
    bool Show(std::vector<NodeLook> const& looks,
              std::vector<embeddedhost::GraphConnection> const& connections);
    QRectF GetBounds() const;
    /// Sorted.
    std::vector<std::string> GetNodeIds() const;
    /// Null for an unknown node.
    NodeLook const* FindLook(std::string const& id) const;
    /// All, also those of which an end is not there.
    std::vector<embeddedhost::GraphConnection> const& GetConnections() const;
    /// The position of the first node by id; (0, 0) without nodes.
    QPointF GetFirstNodePosition() const;

    /// The item at the point; a connection may be as far as `reach` away from it.
    std::optional<NodeLook> FindNodeAt(QPointF const& point) const;
    /// Some node reaches into the rectangle.
    bool IsNodeIn(QRectF const& rect) const;
    /// The position at which the node is shown; null for an unknown one.
    std::optional<QPointF> FindNodePosition(std::string const& id) const;
    std::optional<PortPick> FindPortAt(QPointF const& point) const;
    std::optional<embeddedhost::GraphConnection> FindConnectionAt(QPointF const& point,
                                                                  double reach) const;
    std::optional<PortPick> GetPort(embeddedhost::GraphEnd const& end, bool isOutput) const;

    /// None for an unknown node.
    std::vector<PortPick> GetOutputs(std::string const& node) const;

    std::set<std::string> GetSelectedNodes() const;
    bool IsAnyNodeSelected() const;
    std::vector<embeddedhost::GraphConnection> GetSelectedConnections() const;
    bool IsNodeSelected(std::string const& id) const;
    void SelectNodes(std::set<std::string> const& ids);
    void ToggleNode(std::string const& id);
    void SelectConnection(embeddedhost::GraphConnection const& connection, bool isAdded);
    void SelectNodesIn(QRectF const& rect, std::set<std::string> const& kept);

    void SetConnectionVisible(embeddedhost::GraphConnection const& connection, bool isVisible);
    /// Moves nodes on the screen alone.
    void ShowNodesAt(std::map<std::string, QPointF> const& positions);

    /// A connection that is being drawn.
    void ShowPreview(QPointF const& from, QPointF const& to, QColor const& color, bool isRefused);
    void HidePreview();
    void MarkPort(embeddedhost::GraphEnd const& end, bool isOutput, ePortMark mark);
    void UnmarkPort();
    /// Until the node is shown anew.
    void FadePorts(std::function<bool(PortPick const&)> const& isFaded);

private:
    /// False when they are shown already.
    bool ShowNodes(std::vector<NodeLook> const& looks);
    /// Adds it, or takes it over from the nodes that were shown; answers whether that is a change.
    bool ShowNode(NodeLook const& look, std::map<std::string, CNodeItem*>& previous);
    void ShowConnections(std::vector<embeddedhost::GraphConnection> const& connections);
    void UpdateEnds(CConnectionItem& item);
    CNodeItem* FindNode(std::string const& id) const;
    PortLook const* FindPort(embeddedhost::GraphEnd const& end, bool isOutput) const;
    QList<CNodeItem*> GetNodesNear(QPointF const& point) const;

    NodePictures m_Pictures;
    // Owned by the scene.
    std::map<std::string, CNodeItem*> m_Nodes;
    std::map<embeddedhost::GraphConnection, CConnectionItem*> m_Connections;
    /// All connections given to Show, also those that have no item because they cannot be seen.
    std::vector<embeddedhost::GraphConnection> m_ShownConnections;
    CConnectionItem* m_Preview;
    std::string m_MarkedNode;
};

#endif
