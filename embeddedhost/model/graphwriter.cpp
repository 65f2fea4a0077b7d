#include "model/graphwriter.h"

#include "base/text8.h"
#include "model/objectchange.h"

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <unordered_map>

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

/// Tells connections apart: a port may be called anything, so that lengths keep the texts apart.
std::string JoinEnds(std::initializer_list<std::string const*> texts)
{
    std::string joined;
    for (std::string const* const text : texts)
        joined += std::to_string(text->size()) + ':' + *text;
    return joined;
}

bool IsEnd(ordered_json const& end)
{
    return end.is_array() && end.size() == 2 && end[0].is_string() && end[1].is_string();
}

/// Empty for an entry that is not in the form in which connections are written.
std::string JoinEntryEnds(ordered_json const& entry)
{
    auto const from = entry.find("from");
    auto const to = entry.find("to");
    if (from == entry.end() || to == entry.end() || !IsEnd(*from) || !IsEnd(*to))
        return std::string();
    auto const get = [](ordered_json const& text) {
        return text.get_ptr<std::string const*>();
    };
    return JoinEnds({get((*from)[0]), get((*from)[1]), get((*to)[0]), get((*to)[1])});
}

/// What a list of the object holds already, by what tells its entries apart. Of entries that are
/// alike the first counts.
class PreviousEntries
{
public:
    typedef std::string (*GetKey)(ordered_json const& entry);

    PreviousEntries(ordered_json const& object, char const* list, GetKey getKey)
    {
        auto const found = object.find(list);
        if (found == object.end() || !found->is_array())
            return;
        for (ordered_json const& entry : *found) {
            if (entry.is_object())
                m_Entries.emplace(getKey(entry), &entry);
        }
    }

    /// A copy of the entry, or an empty one.
    ordered_json Get(std::string const& key) const
    {
        auto const found = m_Entries.find(key);
        return found == m_Entries.end() ? ordered_json::object() : *found->second;
    }

private:
    std::unordered_map<std::string, ordered_json const*> m_Entries;
};

ordered_json MakePorts(std::vector<GraphPort> const& ports, ordered_json const& object,
                       char const* key)
{
    PreviousEntries const previous(
        object, key, [](ordered_json const& entry) { return GetText(entry, "name"); });
    ordered_json list = ordered_json::array();
    for (GraphPort const& port : ports) {
        ordered_json entry = previous.Get(port.name);
        entry["name"] = port.name;
        entry["type"] = port.type;
        list.push_back(std::move(entry));
    }
    return list;
}

ordered_json MakeNodes(std::vector<GraphNode> const& nodes, ordered_json const& object)
{
    PreviousEntries const previous(object, "nodes",
                                   [](ordered_json const& entry) { return GetText(entry, "id"); });
    ordered_json list = ordered_json::array();
    for (GraphNode const& node : nodes) {
        ordered_json entry = previous.Get(node.id);
        // An id that the file has as a number stays one.
        if (!entry.contains("id"))
            entry["id"] = node.id;
        entry["item"] = node.item;
        entry["position"] =
            ordered_json::array({MakeNumber(node.position.x()), MakeNumber(node.position.y())});
        list.push_back(std::move(entry));
    }
    return list;
}

ordered_json MakeConnections(std::vector<GraphConnection> const& connections,
                             ordered_json const& object)
{
    PreviousEntries const previous(object, "connections", JoinEntryEnds);
    ordered_json list = ordered_json::array();
    for (GraphConnection const& connection : connections) {
        GraphEnd const& from = connection.from;
        GraphEnd const& to = connection.to;
        ordered_json entry = previous.Get(JoinEnds({&from.node, &from.port, &to.node, &to.port}));
        entry["from"] = MakeEnd(from);
        entry["to"] = MakeEnd(to);
        list.push_back(std::move(entry));
    }
    return list;
}

/// Some text of the body is like that.
template <class IsLike>
bool HasText(GraphBody const& body, IsLike isLike)
{
    auto const hasPort = [&](GraphPort const& port) {
        return isLike(port.name) || isLike(port.type);
    };
    auto const hasNode = [&](GraphNode const& node) {
        return isLike(node.id) || isLike(node.item);
    };
    auto const hasEnd = [&](GraphEnd const& end) {
        return isLike(end.node) || isLike(end.port);
    };
    auto const hasConnection = [&](GraphConnection const& connection) {
        return hasEnd(connection.from) || hasEnd(connection.to);
    };
    return std::any_of(body.inputs.begin(), body.inputs.end(), hasPort)
           || std::any_of(body.outputs.begin(), body.outputs.end(), hasPort)
           || std::any_of(body.nodes.begin(), body.nodes.end(), hasNode)
           || std::any_of(body.connections.begin(), body.connections.end(), hasConnection);
}

/// An empty list is left out where the object has none.
void SetList(ordered_json& object, char const* key, ordered_json list)
{
    if (!list.empty() || object.contains(key))
        SetKey(object, key, std::move(list));
}

} // namespace

QString FindBodyFault(GraphBody const& body)
{
    for (GraphNode const& node : body.nodes) {
        if (!std::isfinite(node.position.x()) || !std::isfinite(node.position.y()))
            return QStringLiteral("the position of the node \"%1\" is not a finite number")
                .arg(QString::fromStdString(node.id));
    }
    if (HasText(body, [](std::string const& text) { return !IsUtf8(text); }))
        return QStringLiteral("it has a text that is not UTF-8");
    if (HasText(body, IsTooLong))
        return QStringLiteral("it has a text of more than %1 characters").arg(kMaxTextLength);
    return QString();
}

void WriteGraphBody(GraphBody const& body, ordered_json& object)
{
    SetList(object, "inputs", MakePorts(body.inputs, object, "inputs"));
    SetList(object, "outputs", MakePorts(body.outputs, object, "outputs"));
    SetList(object, "nodes", MakeNodes(body.nodes, object));
    SetList(object, "connections", MakeConnections(body.connections, object));
}

} // namespace embeddedhost
