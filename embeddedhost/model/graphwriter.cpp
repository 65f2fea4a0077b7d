#include "model/graphwriter.h"

#include "model/objectchange.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Up to here every whole number has a double of its own.
constexpr double kMostExact = 9007199254740992.0;

/// A number without a fraction where it has none, as people write positions.
ordered_json MakeNumber(double value)
{
    bool const isWhole = std::abs(value) <= kMostExact && std::floor(value) == value;
    return isWhole ? ordered_json(static_cast<std::int64_t>(value)) : ordered_json(value);
}

ordered_json MakeEnd(GraphEnd const& end)
{
    return ordered_json::array({end.node, end.port});
}

std::string GetText(ordered_json const& entry, char const* key)
{
    auto const found = entry.find(key);
    if (found == entry.end())
        return std::string();
    return found->is_string() ? found->get<std::string>() : found->dump();
}

/// The entry of the previous list that `isSame` picks, or an empty one.
template <class IsSame>
ordered_json TakePrevious(ordered_json const& object, char const* key, IsSame const& isSame)
{
    auto const list = object.find(key);
    if (list == object.end() || !list->is_array())
        return ordered_json::object();
    auto const found = std::find_if(list->begin(), list->end(), [&](ordered_json const& entry) {
        return entry.is_object() && isSame(entry);
    });
    return found == list->end() ? ordered_json::object() : *found;
}

ordered_json MakePorts(std::vector<GraphPort> const& ports, ordered_json const& object,
                       char const* key)
{
    ordered_json list = ordered_json::array();
    for (GraphPort const& port : ports) {
        ordered_json entry = TakePrevious(object, key, [&](ordered_json const& previous) {
            return GetText(previous, "name") == port.name;
        });
        entry["name"] = port.name;
        entry["type"] = port.type;
        list.push_back(std::move(entry));
    }
    return list;
}

ordered_json MakeNodes(std::vector<GraphNode> const& nodes, ordered_json const& object)
{
    ordered_json list = ordered_json::array();
    for (GraphNode const& node : nodes) {
        ordered_json entry = TakePrevious(object, "nodes", [&](ordered_json const& previous) {
            return GetText(previous, "id") == node.id;
        });
        // An id that the file has as a number stays one.
        if (!entry.contains("id"))
            entry["id"] = node.id;
        entry["item"] = node.item;
        entry["position"] = ordered_json::array(
            {MakeNumber(node.position.x()), MakeNumber(node.position.y())});
        list.push_back(std::move(entry));
    }
    return list;
}

ordered_json MakeConnections(std::vector<GraphConnection> const& connections,
                             ordered_json const& object)
{
    ordered_json list = ordered_json::array();
    for (GraphConnection const& connection : connections) {
        ordered_json const from = MakeEnd(connection.from);
        ordered_json const to = MakeEnd(connection.to);
        ordered_json entry =
            TakePrevious(object, "connections", [&](ordered_json const& previous) {
                return previous.value("from", ordered_json()) == from
                       && previous.value("to", ordered_json()) == to;
            });
        entry["from"] = from;
        entry["to"] = to;
        list.push_back(std::move(entry));
    }
    return list;
}

/// An empty list is left out where the object has none.
void SetList(ordered_json& object, char const* key, ordered_json list)
{
    if (!list.empty() || object.contains(key))
        SetKey(object, key, std::move(list));
}

} // namespace

void WriteGraphBody(GraphBody const& body, ordered_json& object)
{
    SetList(object, "inputs", MakePorts(body.inputs, object, "inputs"));
    SetList(object, "outputs", MakePorts(body.outputs, object, "outputs"));
    SetList(object, "nodes", MakeNodes(body.nodes, object));
    SetList(object, "connections", MakeConnections(body.connections, object));
}

} // namespace embeddedhost
