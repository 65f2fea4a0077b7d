#include "model/graphjson.h"

#include "model/itemkeys.h"

#include <optional>
#include <set>
#include <utility>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// Walks one list of a body.
class ListReader
{
public:
    ListReader(ordered_json const& object, char const* key, BodyFault const& fault)
        : m_Key(key)
        , m_Fault(fault)
    {
        auto const found = object.find(key);
        if (found == object.end())
            return;
        if (found->is_array())
            m_List = &*found;
        else
            fault(key, "must be an array");
    }

    /// `read(object)` returns nothing for a malformed entry.
    template <class T, class Read>
    std::vector<T> ReadAll(Read const& read)
    {
        std::vector<T> all;
        for (m_Position = 0; m_List && m_Position < m_List->size(); ++m_Position) {
            ordered_json const& entry = (*m_List)[m_Position];
            if (!entry.is_object())
                Report("", "must be an object");
            else if (std::optional<T> const value = read(entry))
                all.push_back(*value);
        }
        return all;
    }

    void Report(std::string const& member, std::string const& reason) const
    {
        std::string const entry = m_Key + '[' + std::to_string(m_Position) + ']';
        m_Fault(member.empty() ? entry : entry + '.' + member, reason);
    }

    std::optional<std::string> Text(ordered_json const& entry, char const* member) const
    {
        auto const found = entry.find(member);
        if (found != entry.end() && found->is_string())
            return found->get<std::string>();
        Report(member, "must be a text");
        return std::nullopt;
    }

private:
    std::string const m_Key;
    BodyFault const& m_Fault;
    ordered_json const* m_List = nullptr;
    std::size_t m_Position = 0;
};

/// A text, or a whole number as its digits.
std::optional<std::string> Name(ordered_json const& value)
{
    if (value.is_string())
        return value.get<std::string>();
    if (value.is_number_integer())
        return value.dump();
    return std::nullopt;
}

std::vector<GraphPort> ReadPorts(ordered_json const& object, char const* key,
                                 BodyFault const& fault)
{
    ListReader list(object, key, fault);
    return list.ReadAll<GraphPort>([&](ordered_json const& entry) -> std::optional<GraphPort> {
        auto const name = list.Text(entry, Keys::Port::kName);
        auto const type = list.Text(entry, Keys::Port::kType);
        if (!name || !type)
            return std::nullopt;
        return GraphPort{*name, *type};
    });
}

char const* const kPositionRule = "must be an array of two numbers";

std::optional<QPointF> ReadPosition(ordered_json const& entry, char const* member)
{
    auto const found = entry.find(member);
    if (found == entry.end() || !found->is_array() || found->size() != 2 || !(*found)[0].is_number()
        || !(*found)[1].is_number())
        return std::nullopt;
    return QPointF((*found)[0].get<double>(), (*found)[1].get<double>());
}

std::vector<GraphNode> ReadNodes(ordered_json const& object, BodyFault const& fault)
{
    ListReader list(object, Keys::kNodes, fault);
    std::set<std::string> ids = {kInputsNode, kOutputsNode};
    return list.ReadAll<GraphNode>([&](ordered_json const& entry) -> std::optional<GraphNode> {
        auto const found = entry.find(Keys::Node::kId);
        auto const id = found == entry.end() ? std::nullopt : Name(*found);
        auto const item = list.Text(entry, Keys::Node::kItem);
        auto const position = ReadPosition(entry, Keys::Node::kPosition);
        bool const isFree = id && ids.insert(*id).second;
        if (!isFree) {
            list.Report(Keys::Node::kId,
                        "must be a text or a whole number that no other node has, and not "
                        "\"in\" or \"out\"");
        }
        if (!position)
            list.Report(Keys::Node::kPosition, kPositionRule);
        if (!isFree || !item || !position)
            return std::nullopt;
        return GraphNode{*id, *item, *position};
    });
}

std::optional<GraphEnd> ReadEnd(ordered_json const& entry, char const* member)
{
    auto const found = entry.find(member);
    if (found == entry.end() || !found->is_array() || found->size() != 2)
        return std::nullopt;
    auto const node = Name((*found)[0]);
    auto const port = Name((*found)[1]);
    if (!node || !port)
        return std::nullopt;
    return GraphEnd{*node, *port};
}

std::vector<GraphConnection> ReadConnections(ordered_json const& object, BodyFault const& fault)
{
    ListReader list(object, Keys::kConnections, fault);
    auto const read = [&](ordered_json const& entry) -> std::optional<GraphConnection> {
        auto const from = ReadEnd(entry, Keys::Connection::kFrom);
        auto const to = ReadEnd(entry, Keys::Connection::kTo);
        char const* const reason = "must be an array of a node's id and a port's name";
        if (!from)
            list.Report(Keys::Connection::kFrom, reason);
        if (!to)
            list.Report(Keys::Connection::kTo, reason);
        if (!from || !to)
            return std::nullopt;
        return GraphConnection{*from, *to};
    };
    return list.ReadAll<GraphConnection>(read);
}

void ReadPortNodes(ordered_json const& object, BodyFault const& fault, GraphBody& body)
{
    auto const found = object.find(Keys::kPortNodes);
    if (found == object.end())
        return;
    if (!found->is_object()) {
        fault(Keys::kPortNodes, "must be an object");
        return;
    }
    for (auto const& [node, position] : {std::pair(kInputsNode, &body.inputsPosition),
                                         std::pair(kOutputsNode, &body.outputsPosition)}) {
        *position = ReadPosition(*found, node);
        if (!*position && found->contains(node))
            fault(std::string(Keys::kPortNodes) + '.' + node, kPositionRule);
    }
}

} // namespace

GraphBody ReadGraphBody(ordered_json const& object, BodyFault const& fault)
{
    GraphBody body = {ReadPorts(object, Keys::kInputs, fault),
                      ReadPorts(object, Keys::kOutputs, fault), ReadNodes(object, fault),
                      ReadConnections(object, fault)};
    ReadPortNodes(object, fault, body);
    return body;
}

} // namespace embeddedhost
