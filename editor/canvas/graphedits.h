#ifndef EDITOR_CANVAS_GRAPHEDITS_H
#define EDITOR_CANVAS_GRAPHEDITS_H

#include <embeddedhost/model/graphbody.h>

#include <set>
#include <string>
#include <vector>

// Edits of a graph, as plain changes of its body. Texts are UTF-8.

/// The nodes that stand for a compound's own inputs and outputs in its connections.
extern char const* const kInputsNode;
extern char const* const kOutputsNode;

bool operator==(GraphEnd const& left, GraphEnd const& right);
bool operator==(GraphConnection const& left, GraphConnection const& right);
bool operator<(GraphEnd const& left, GraphEnd const& right);
bool operator<(GraphConnection const& left, GraphConnection const& right);

/// Whether values of one type may flow into an input of another. The name of a type counts too:
/// ports without a type, or of a type "Any", fit every other.
bool AreTypesCompatible(std::string const& fromType, std::string const& fromName,
                        std::string const& toType, std::string const& toName);

/// Null when there is none.
GraphNode const* FindNode(GraphBody const& body, std::string const& id);

/// Adds a node and returns its id, made from the item's name.
std::string AddNode(GraphBody& body, std::string const& item, std::string const& itemName,
                    QPointF const& position);

/// Adds an input or output of the compound; the name is made unique among them.
void AddPort(std::vector<GraphPort>& ports, std::string const& name, std::string const& type);

/// Take a port of the compound out, and with it its connections within.
void RemoveInput(GraphBody& body, std::string const& name);
void RemoveOutput(GraphBody& body, std::string const& name);

/// An input takes one connection: one that is there already makes room.
void Connect(GraphBody& body, GraphConnection const& connection);
/// One after the other.
void ConnectAll(GraphBody& body, std::vector<GraphConnection> const& connections);
void Disconnect(GraphBody& body, GraphConnection const& connection);
void DisconnectAll(GraphBody& body, std::vector<GraphConnection> const& connections);
/// Takes the nodes out, and with them their connections.
void RemoveNodes(GraphBody& body, std::set<std::string> const& ids);

/// The nodes into which values of the node flow, or those from which its own come, itself included.
std::set<std::string> FindFlow(GraphBody const& body, std::string const& id, bool isDownstream);

/// The nodes and the connections among them, without ports.
GraphBody CopyNodes(GraphBody const& body, std::set<std::string> const& ids);
/// Adds the nodes of a copy with new ids, which are returned, shifted by the offset.
std::set<std::string> PasteNodes(GraphBody& body, GraphBody const& copy, QPointF const& offset);

#endif
