#include "graphedits.h"

#include <QString>

#include <algorithm>
#include <cctype>
#include <map>

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

std::string ToUpper(std::string text)
{
    for (char& character : text)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    return text;
}

/// "Vector Length" -> "vector-length".
std::string MakeIdStem(std::string const& name)
{
    QString stem;
    for (QChar const character : QString::fromStdString(name).toLower()) {
        if (character.isLetterOrNumber())
            stem += character;
        else if (!stem.isEmpty() && !stem.endsWith(QLatin1Char('-')))
            stem += QLatin1Char('-');
    }
    while (stem.endsWith(QLatin1Char('-')))
        stem.chop(1);
    return stem.isEmpty() ? "node" : stem.toStdString();
}

template <class IsTaken>
std::string MakeUnique(std::string const& stem, std::string const& separator,
                       IsTaken const& isTaken)
{
    std::string text = stem;
    for (int number = 2; isTaken(text); ++number)
        text = stem + separator + std::to_string(number);
    return text;
}

std::set<std::string> GetTakenIds(GraphBody const& body)
{
    std::set<std::string> ids{kInputsNode, kOutputsNode};
    for (GraphNode const& node : body.nodes)
        ids.insert(node.id);
    return ids;
}

std::string MakeNodeId(std::set<std::string> const& taken, std::string const& stem)
{
    return MakeUnique(stem, "-", [&taken](std::string const& id) { return taken.count(id); });
}

/// Without the number that an earlier copy got.
std::string StripNumber(std::string const& id)
{
    std::size_t const dash = id.find_last_of('-');
    bool const isNumbered =
        dash != std::string::npos && dash > 0 && dash + 1 < id.size()
        && std::all_of(id.begin() + static_cast<std::ptrdiff_t>(dash) + 1, id.end(),
                       [](unsigned char digit) { return std::isdigit(digit); });
    return isNumbered ? id.substr(0, dash) : id;
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

bool ContainsItem(std::string const& uid, std::string const& other, BodyOf const& bodyOf,
                  std::set<std::string>& visited)
{
    if (IsSameUid(uid, other))
        return true;
    // Libraries made by other means may hold compounds that contain themselves already.
    if (!visited.insert(ToUpper(uid)).second)
        return false;
    GraphBody const body = bodyOf(uid);
    return std::any_of(body.nodes.begin(), body.nodes.end(), [&](GraphNode const& node) {
        return ContainsItem(node.item, other, bodyOf, visited);
    });
}

} // namespace

bool operator==(GraphEnd const& left, GraphEnd const& right)
{
    return left.node == right.node && left.port == right.port;
}

bool operator==(GraphConnection const& left, GraphConnection const& right)
{
    return left.from == right.from && left.to == right.to;
}

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
    std::string const id = MakeNodeId(GetTakenIds(body), MakeIdStem(itemName));
    body.nodes.push_back(GraphNode{id, item, position});
    return id;
}

void AddPort(std::vector<GraphPort>& ports, std::string const& name, std::string const& type)
{
    auto const isTaken = [&ports](std::string const& text) {
        return std::any_of(ports.begin(), ports.end(),
                           [&text](GraphPort const& port) { return port.name == text; });
    };
    ports.push_back(GraphPort{MakeUnique(name, " ", isTaken), type});
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
    RemoveConnections(
        body, [&connection](GraphConnection const& other) { return other.to == connection.to; });
    body.connections.push_back(connection);
}

void Disconnect(GraphBody& body, GraphConnection const& connection)
{
    RemoveConnections(body,
                      [&connection](GraphConnection const& other) { return other == connection; });
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

bool ContainsItem(std::string const& uid, std::string const& other, BodyOf const& bodyOf)
{
    std::set<std::string> visited;
    return ContainsItem(uid, other, bodyOf, visited);
}

GraphBody CopyNodes(GraphBody const& body, std::set<std::string> const& ids)
{
    GraphBody copy;
    for (GraphNode const& node : body.nodes)
        if (ids.count(node.id))
            copy.nodes.push_back(node);
    for (GraphConnection const& connection : body.connections)
        if (FindNode(copy, connection.from.node) && FindNode(copy, connection.to.node))
            copy.connections.push_back(connection);
    return copy;
}

std::set<std::string> PasteNodes(GraphBody& body, GraphBody const& copy, QPointF const& offset)
{
    std::map<std::string, std::string> newIds;
    std::set<std::string> taken = GetTakenIds(body);
    std::set<std::string> pasted;
    for (GraphNode const& node : copy.nodes) {
        std::string const id = MakeNodeId(taken, StripNumber(node.id));
        taken.insert(id);
        body.nodes.push_back(GraphNode{id, node.item, node.position + offset});
        newIds[node.id] = id;
        pasted.insert(id);
    }
    for (GraphConnection const& connection : copy.connections) {
        auto const from = newIds.find(connection.from.node);
        auto const to = newIds.find(connection.to.node);
        if (from != newIds.end() && to != newIds.end())
            Connect(body, {{from->second, connection.from.port}, {to->second, connection.to.port}});
    }
    return pasted;
}
