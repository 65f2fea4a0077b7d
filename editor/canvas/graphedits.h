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

// Beside the types, where containers and algorithms look for them.
namespace embeddedhost {
bool operator==(GraphEnd const& left, GraphEnd const& right);
bool operator==(GraphConnection const& left, GraphConnection const& right);
bool operator<(GraphEnd const& left, GraphEnd const& right);
bool operator<(GraphConnection const& left, GraphConnection const& right);
} // namespace embeddedhost

/// Whether values of one type may flow into an input of another. The name of a type counts too:
/// ports without a type, or of a type "Any", fit every other.
bool AreTypesCompatible(std::string const& fromType, std::string const& fromName,
                        std::string const& toType, std::string const& toName);

/// Null when there is none.
embeddedhost::GraphNode const* FindNode(embeddedhost::GraphBody const& body, std::string const& id);

/// Adds a node and returns its id, made from the item's name.
std::string AddNode(embeddedhost::GraphBody& body, std::string const& item,
                    std::string const& itemName, QPointF const& position);

/// Adds an input or output of the compound; the name is made unique among them.
void AddPort(std::vector<embeddedhost::GraphPort>& ports, std::string const& name,
             std::string const& type);

/// Take a port of the compound out, and with it its connections within.
void RemoveInput(embeddedhost::GraphBody& body, std::string const& name);
void RemoveOutput(embeddedhost::GraphBody& body, std::string const& name);

/// An input takes one connection: one that is there already makes room.
void Connect(embeddedhost::GraphBody& body, embeddedhost::GraphConnection const& connection);
/// One after the other.
void ConnectAll(embeddedhost::GraphBody& body,
                std::vector<embeddedhost::GraphConnection> const& connections);
void Disconnect(embeddedhost::GraphBody& body, embeddedhost::GraphConnection const& connection);
void DisconnectAll(embeddedhost::GraphBody& body,
                   std::vector<embeddedhost::GraphConnection> const& connections);
/// Takes the nodes out, and with them their connections.
void RemoveNodes(embeddedhost::GraphBody& body, std::set<std::string> const& ids);

/// The nodes into which values of the node flow, or those from which its own come, itself included.
std::set<std::string> FindFlow(embeddedhost::GraphBody const& body, std::string const& id,
                               bool isDownstream);

/// The nodes and the connections among them, without ports.
embeddedhost::GraphBody CopyNodes(embeddedhost::GraphBody const& body,
                                  std::set<std::string> const& ids);
/// Adds the nodes of a copy with new ids, which are returned, shifted by the offset.
std::set<std::string> PasteNodes(embeddedhost::GraphBody& body, embeddedhost::GraphBody const& copy,
                                 QPointF const& offset);

#endif
