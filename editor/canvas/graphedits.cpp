#include "graphedits.h"

#include "nodeids.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <tuple>

using namespace embeddedhost;

char const* const kInputsNode = "in";
char const* const kOutputsNode = "out";

namespace {

char const* const kAnyType = "Any";

bool IsUntyped(std::string const& type, std::string const& name)
{
    return type.empty() || name == kAnyType;
}

/// Uids are the same in capital and small letters.
bool IsSameUid(std::string const& left, std::string const& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return std::toupper(static_cast<unsigned char>(a))
               == std::toupper(static_cast<unsigned char>(b));
    });
}

template <class Remove>
void RemoveConnections(GraphBody& body, Remove const& remove)
{
    auto& list = body.connections;
    list.erase(std::remove_if(list.begin(), list.end(), remove), list.end());
}

void RemovePort(std::vector<GraphPort>& ports, std::string const& name)
{
    ports.erase(std::remove_if(ports.begin(), ports.end(),
                               [&name](GraphPort const& port) { return port.name == name; }),
                ports.end());
}

} // namespace

namespace embeddedhost {

bool operator==(GraphEnd const& left, GraphEnd const& right)
{
    return left.node == right.node && left.port == right.port;
}

bool operator==(GraphConnection const& left, GraphConnection const& right)
{
    return left.from == right.from && left.to == right.to;
}

bool operator<(GraphEnd const& left, GraphEnd const& right)
{
    return std::tie(left.node, left.port) < std::tie(right.node, right.port);
}

bool operator<(GraphConnection const& left, GraphConnection const& right)
{
    return std::tie(left.from, left.to) < std::tie(right.from, right.to);
}

} // namespace embeddedhost

bool AreTypesCompatible(std::string const& fromType, std::string const& fromName,
                        std::string const& toType, std::string const& toName)
{
    return IsUntyped(fromType, fromName) || IsUntyped(toType, toName)
           || IsSameUid(fromType, toType);
}

GraphNode const* FindNode(GraphBody const& body, std::string const& id)
{
    auto const found = std::find_if(body.nodes.begin(), body.nodes.end(),
                                    [&id](GraphNode const& node) { return node.id == id; });
    return found == body.nodes.end() ? nullptr : &*found;
}

std::string AddNode(GraphBody& body, std::string const& item, std::string const& itemName,
                    QPointF const& position)
{
    std::string const id = CNodeIds(body).TakeFor(itemName);
    body.nodes.push_back(GraphNode{id, item, position});
    return id;
}

void AddPort(std::vector<GraphPort>& ports, std::string const& name, std::string const& type)
{
    std::set<std::string> taken;
    for (GraphPort const& port : ports)
        taken.insert(port.name);
    std::string unique = name;
    for (int number = 2; taken.count(unique); ++number)
        unique = name + ' ' + std::to_string(number);
    ports.push_back(GraphPort{unique, type});
}

void RemoveInput(GraphBody& body, std::string const& name)
{
    RemovePort(body.inputs, name);
    RemoveConnections(body, [&name](GraphConnection const& connection) {
        return connection.from == GraphEnd{kInputsNode, name};
    });
}

void RemoveOutput(GraphBody& body, std::string const& name)
{
    RemovePort(body.outputs, name);
    RemoveConnections(body, [&name](GraphConnection const& connection) {
        return connection.to == GraphEnd{kOutputsNode, name};
    });
}

void Connect(GraphBody& body, GraphConnection const& connection)
{
    ConnectAll(body, {connection});
}

void ConnectAll(GraphBody& body, std::vector<GraphConnection> const& connections)
{
    std::set<GraphEnd> inputs;
    std::vector<GraphConnection> kept;
    // The last one into an input takes the place of those before it.
    for (auto connection = connections.rbegin(); connection != connections.rend(); ++connection)
        if (inputs.insert(connection->to).second)
            kept.push_back(*connection);
    RemoveConnections(
        body, [&inputs](GraphConnection const& other) { return inputs.count(other.to) > 0; });
    body.connections.insert(body.connections.end(), kept.rbegin(), kept.rend());
}

void Disconnect(GraphBody& body, GraphConnection const& connection)
{
    DisconnectAll(body, {connection});
}

void DisconnectAll(GraphBody& body, std::vector<GraphConnection> const& connections)
{
    std::set<GraphConnection> const gone(connections.begin(), connections.end());
    RemoveConnections(body,
                      [&gone](GraphConnection const& other) { return gone.count(other) > 0; });
}

void RemoveNodes(GraphBody& body, std::set<std::string> const& ids)
{
    body.nodes.erase(std::remove_if(body.nodes.begin(), body.nodes.end(),
                                    [&ids](GraphNode const& node) { return ids.count(node.id); }),
                     body.nodes.end());
    RemoveConnections(body, [&ids](GraphConnection const& connection) {
        return ids.count(connection.from.node) || ids.count(connection.to.node);
    });
}

std::set<std::string> FindFlow(GraphBody const& body, std::string const& id, bool isDownstream)
{
    std::multimap<std::string, std::string> next;
    for (GraphConnection const& connection : body.connections)
        if (isDownstream)
            next.emplace(connection.from.node, connection.to.node);
        else
            next.emplace(connection.to.node, connection.from.node);
    std::set<std::string> reached;
    // A stack of its own: recursion along a chain of many nodes could overflow the call stack.
    std::vector<std::string> open{id};
    while (!open.empty()) {
        std::string const node = open.back();
        open.pop_back();
        if (!reached.insert(node).second)
            continue;
        auto const range = next.equal_range(node);
        for (auto entry = range.first; entry != range.second; ++entry)
            open.push_back(entry->second);
    }
    return reached;
}

GraphBody CopyNodes(GraphBody const& body, std::set<std::string> const& ids)
{
    GraphBody copy;
    for (GraphNode const& node : body.nodes)
        if (ids.count(node.id))
            copy.nodes.push_back(node);
    for (GraphConnection const& connection : body.connections)
        if (ids.count(connection.from.node) && ids.count(connection.to.node))
            copy.connections.push_back(connection);
    return copy;
}

std::set<std::string> PasteNodes(GraphBody& body, GraphBody const& copy, QPointF const& offset)
{
    CNodeIds ids(body);
    std::map<std::string, std::string> newIds;
    std::set<std::string> pasted;
    for (GraphNode const& node : copy.nodes) {
        std::string const id = ids.TakeLike(node.id);
        body.nodes.push_back(GraphNode{id, node.item, node.position + offset});
        newIds[node.id] = id;
        pasted.insert(id);
    }
    std::vector<GraphConnection> connections;
    for (GraphConnection const& connection : copy.connections) {
        auto const from = newIds.find(connection.from.node);
        auto const to = newIds.find(connection.to.node);
        if (from != newIds.end() && to != newIds.end())
            connections.push_back(
                {{from->second, connection.from.port}, {to->second, connection.to.port}});
    }
    ConnectAll(body, connections);
    return pasted;
}
