#ifndef EDITOR_CANVAS_NODEWIRING_H
#define EDITOR_CANVAS_NODEWIRING_H

#include "nodeitem.h"

#include <embeddedhost/model/graphbody.h>

#include <optional>

// How a node is wired to ports of others. It has the id of its look.

/// The node's first input that takes the port's values, or its first output whose values the port
/// takes.
std::optional<std::size_t> FindFit(PortPick const& port, NodeLook const& node);
/// Between the port and that input or output of the node.
embeddedhost::GraphConnection JoinPorts(PortPick const& port, NodeLook const& node,
                                        std::size_t fit);

/// Leads the connection, whose ends are the ports, through the node. False, with nothing done,
/// when the node has no input and output for that.
bool InsertNode(embeddedhost::GraphBody& body, PortPick const& from, PortPick const& to,
                NodeLook const& node);

#endif
