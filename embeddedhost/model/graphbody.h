#ifndef EMBEDDEDHOST_GRAPHBODY_H
#define EMBEDDEDHOST_GRAPHBODY_H

#include <QPointF>

#include <optional>
#include <string>
#include <vector>

namespace embeddedhost {

/// An input or output of an item. Texts are UTF-8.
struct GraphPort
{
    /// By which connections name it.
    std::string name;
    /// The uid of a type.
    std::string type;
};

/// A node of a compound's graph.
struct GraphNode
{
    /// Unique among the nodes of one body.
    std::string id;
    /// The uid of the item that the node stands for.
    std::string item;
    /// On the canvas, in pixels without zoom.
    QPointF position;
};

/// One end of a connection. The nodes "in" and "out" are the compound's own inputs and outputs,
/// seen from within.
struct GraphEnd
{
    std::string node; ///< the id of a node
    std::string port; ///< the name of one of its ports
};

/// From an output of one node to an input of another.
struct GraphConnection
{
    GraphEnd from; ///< an output of a node, or an input of the compound
    GraphEnd to;   ///< an input of a node, or an output of the compound
};

/// An item's ports and, for a compound, its graph.
struct GraphBody
{
    std::vector<GraphPort> inputs;            ///< in the order shown
    std::vector<GraphPort> outputs;           ///< in the order shown
    std::vector<GraphNode> nodes;             ///< in the order of the file
    std::vector<GraphConnection> connections; ///< their order means nothing
    // Without a position the editor puts them at the left and the right of the graph.
    std::optional<QPointF> inputsPosition = {};  ///< of the node "in"
    std::optional<QPointF> outputsPosition = {}; ///< of the node "out"
};

} // namespace embeddedhost

#endif
