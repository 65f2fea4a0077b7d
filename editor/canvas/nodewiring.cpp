#include "nodewiring.h"

#include "graphedits.h"

std::optional<std::size_t> FindFit(PortPick const& port, NodeLook const& node)
{
    std::vector<PortLook> const& others = port.isOutput ? node.inputs : node.outputs;
    for (std::size_t fit = 0; fit < others.size(); ++fit) {
        PortLook const& from = port.isOutput ? port.port : others[fit];
        PortLook const& to = port.isOutput ? others[fit] : port.port;
        if (AreTypesCompatible(from.type, from.typeName, to.type, to.typeName))
            return fit;
    }
    return std::nullopt;
}

embeddedhost::GraphConnection JoinPorts(PortPick const& port, NodeLook const& node, std::size_t fit)
{
    if (port.isOutput)
        return {{port.node, port.port.name}, {node.id, node.inputs[fit].name}};
    return {{node.id, node.outputs[fit].name}, {port.node, port.port.name}};
}

bool InsertNode(embeddedhost::GraphBody& body, PortPick const& from, PortPick const& to,
                NodeLook const& node)
{
    auto const input = FindFit(from, node);
    auto const output = FindFit(to, node);
    if (!input || !output)
        return false;
    Connect(body, JoinPorts(from, node, *input));
    // The connection that was there makes room.
    Connect(body, JoinPorts(to, node, *output));
    return true;
}
