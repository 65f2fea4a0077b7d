#include "model/graphwriter.h"

#include "base/text8.h"
#include "model/itemkeys.h"

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <unordered_map>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// 2^53, the maximum up to which a double holds every whole number exactly.
constexpr double kMostExact = 9007199254740992.0;

/// Written without a decimal point if it is a whole number.
ordered_json MakeNumber(double value)
{
    bool const isWhole = std::abs(value) <= kMostExact && std::floor(value) == value;
    return isWhole ? ordered_json(static_cast<std::int64_t>(value)) : ordered_json(value);
}

ordered_json MakePosition(QPointF const& position)
{
    return ordered_json::array({MakeNumber(position.x()), MakeNumber(position.y())});
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

/// The identity of a connection as one text. Lengths delimit the parts, because names of ports may
/// contain any separator.
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

/// Empty for a malformed entry.
std::string JoinEntryEnds(ordered_json const& entry)
{
    auto const from = entry.find(Keys::Connection::kFrom);
    auto const to = entry.find(Keys::Connection::kTo);
    if (from == entry.end() || to == entry.end() || !IsEnd(*from) || !IsEnd(*to))
        return std::string();
    auto const get = [](ordered_json const& text) {
        return text.get_ptr<std::string const*>();
    };
    return JoinEnds({get((*from)[0]), get((*from)[1]), get((*to)[0]), get((*to)[1])});
}

/// The entries of a list before the change, by their identity. Of duplicates the first counts.
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
        object, key, [](ordered_json const& entry) { return GetText(entry, Keys::Port::kName); });
    ordered_json list = ordered_json::array();
    for (GraphPort const& port : ports) {
        ordered_json entry = previous.Get(port.name);
        entry[Keys::Port::kName] = port.name;
        entry[Keys::Port::kType] = port.type;
        list.push_back(std::move(entry));
    }
    return list;
}

ordered_json MakeNodes(std::vector<GraphNode> const& nodes, ordered_json const& object)
{
    PreviousEntries const previous(object, Keys::kNodes, [](ordered_json const& entry) {
        return GetText(entry, Keys::Node::kId);
    });
    ordered_json list = ordered_json::array();
    for (GraphNode const& node : nodes) {
        ordered_json entry = previous.Get(node.id);
        // An id that the file has as a number stays one.
        if (!entry.contains(Keys::Node::kId))
            entry[Keys::Node::kId] = node.id;
        entry[Keys::Node::kItem] = node.item;
        entry[Keys::Node::kPosition] = MakePosition(node.position);
        list.push_back(std::move(entry));
    }
    return list;
}

ordered_json MakeConnections(std::vector<GraphConnection> const& connections,
                             ordered_json const& object)
{
    PreviousEntries const previous(object, Keys::kConnections, JoinEntryEnds);
    ordered_json list = ordered_json::array();
    for (GraphConnection const& connection : connections) {
        GraphEnd const& from = connection.from;
        GraphEnd const& to = connection.to;
        ordered_json entry = previous.Get(JoinEnds({&from.node, &from.port, &to.node, &to.port}));
        entry[Keys::Connection::kFrom] = MakeEnd(from);
        entry[Keys::Connection::kTo] = MakeEnd(to);
        list.push_back(std::move(entry));
    }
    return list;
}

ordered_json MakePortNodes(GraphBody const& body, ordered_json const& object)
{
    auto const found = object.find(Keys::kPortNodes);
    ordered_json nodes =
        found != object.end() && found->is_object() ? *found : ordered_json::object();
    auto const set = [&nodes](char const* node, std::optional<QPointF> const& position) {
        if (position)
            nodes[node] = MakePosition(*position);
        else
            nodes.erase(node);
    };
    set(kInputsNode, body.inputsPosition);
    set(kOutputsNode, body.outputsPosition);
    return nodes;
}

bool IsFinite(QPointF const& position)
{
    return std::isfinite(position.x()) && std::isfinite(position.y());
}

/// Whether the predicate is true for some text of the body.
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

/// Writes an empty part only if the object has the key already.
void SetPart(ordered_json& object, char const* key, ordered_json part)
{
    if (!part.empty() || object.contains(key))
        SetKey(object, key, std::move(part));
}

} // namespace

QString FindBodyFault(GraphBody const& body)
{
    auto const explain = [](std::string const& node) {
        return QStringLiteral("the position of the node \"%1\" is not a finite number")
            .arg(QString::fromStdString(node));
    };
    for (GraphNode const& node : body.nodes) {
        if (!IsFinite(node.position))
            return explain(node.id);
    }
    if (!IsFinite(body.inputsPosition.value_or(QPointF())))
        return explain(kInputsNode);
    if (!IsFinite(body.outputsPosition.value_or(QPointF())))
        return explain(kOutputsNode);
    if (HasText(body, [](std::string const& text) { return !IsUtf8(text); }))
        return QStringLiteral("it has a text that is not UTF-8");
    if (HasText(body, IsTooLong))
        return QStringLiteral("it has a text of more than %1 characters").arg(kMaxTextLength);
    return QString();
}

void WriteGraphBody(GraphBody const& body, ordered_json& object)
{
    SetPart(object, Keys::kInputs, MakePorts(body.inputs, object, Keys::kInputs));
    SetPart(object, Keys::kOutputs, MakePorts(body.outputs, object, Keys::kOutputs));
    SetPart(object, Keys::kNodes, MakeNodes(body.nodes, object));
    SetPart(object, Keys::kConnections, MakeConnections(body.connections, object));
    SetPart(object, Keys::kPortNodes, MakePortNodes(body, object));
}

} // namespace embeddedhost
