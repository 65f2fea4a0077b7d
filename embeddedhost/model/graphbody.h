#ifndef EMBEDDEDHOST_GRAPHBODY_H
#define EMBEDDEDHOST_GRAPHBODY_H

#include <QPointF>

#include <string>
#include <vector>

namespace embeddedhost {

/// An input or output of an item. Texts are UTF-8.
struct GraphPort
{
    std::string name;
    /// The uid of a type.
    std::string type;
};

struct GraphNode
{
    /// Unique among the nodes of one body.
    std::string id;
    /// The uid of the item that the node stands for.
    std::string item;
    QPointF position;
};

/// One end of a connection. The nodes "in" and "out" are the compound's own inputs and outputs,
/// seen from within.
struct GraphEnd
{
    std::string node;
    std::string port;
};

struct GraphConnection
{
    GraphEnd from;
    GraphEnd to;
};

/// An item's ports and, for a compound, its graph.
struct GraphBody
{
    std::vector<GraphPort> inputs;
    std::vector<GraphPort> outputs;
    std::vector<GraphNode> nodes;
    std::vector<GraphConnection> connections;
};

} // namespace embeddedhost

#endif
