#include "nodelooks.h"

#include "graphedits.h"
#include "nodepainter.h"

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/textencoding.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

/// Between the nodes and those of the compound's own ports beside them.
int const kSideGap = 4 * kGridPitch;
/// Library files may hold any number; a view can only scroll so far.
double const kFarthest = 1e6;
/// Icons are loaded as sharp as any usual screen and zoom wants them.
int const kIconSharpness = 2;

bool IsSignature(ItemLibraryAccessor const& library, ItemID const& id)
{
    ItemAccessor item;
    item.SetFrom(library.GetModel(id, nullptr));
    return item.IsValid() && Helpers::IsAbstractFunction(item);
}

/// How nodes of each kind of item look; those of other kinds look like solvers.
eNodeKind GetKind(ItemID const& id)
{
    static std::pair<char const*, eNodeKind> const looks[] = {
        {TarnoType::gCompound, eNodeKind::kCompound},
        {TarnoType::gGlobalConstant, eNodeKind::kConstant},
    };
    for (auto const& [kind, look] : looks) {
        if (id.GetType() == kind)
            return look;
    }
    return eNodeKind::kSolver;
}

QPointF BringNear(QPointF const& position)
{
    return QPointF(std::clamp(position.x(), -kFarthest, kFarthest),
                   std::clamp(position.y(), -kFarthest, kFarthest));
}

/// Marks the ports that connections name on one side of a node. Ports that the item lacks are
/// added, so that their connections are seen too.
void MarkConnected(NodeLook& look, std::vector<PortLook> NodeLook::*side,
                   std::vector<std::string_view> const& names)
{
    std::vector<PortLook>& ports = look.*side;
    std::unordered_set<std::string_view> missing(names.begin(), names.end());
    for (PortLook& port : ports)
        port.isConnected = missing.erase(port.name) > 0;
    if (missing.empty())
        return;
    for (std::string_view const name : names) {
        if (missing.erase(name) == 0)
            continue;
        ports.emplace_back();
        ports.back().name = name;
        ports.back().isConnected = true;
    }
    look.width = MeasureNodeWidth(look);
}

void MarkConnections(std::vector<GraphConnection> const& connections, std::vector<NodeLook>& looks)
{
    struct Names
    {
        std::vector<std::string_view> inputs;
        std::vector<std::string_view> outputs;
    };
    // Views into ids and connections, neither of which changes here.
    std::unordered_map<std::string_view, Names> byId;
    for (NodeLook const& look : looks)
        byId[look.id];
    for (GraphConnection const& connection : connections) {
        auto const from = byId.find(connection.from.node);
        auto const to = byId.find(connection.to.node);
        if (from == byId.end() || to == byId.end())
            continue;
        from->second.outputs.push_back(connection.from.port);
        to->second.inputs.push_back(connection.to.port);
    }
    for (NodeLook& look : looks) {
        Names const& names = byId[look.id];
        if (!names.inputs.empty())
            MarkConnected(look, &NodeLook::inputs, names.inputs);
        if (!names.outputs.empty())
            MarkConnected(look, &NodeLook::outputs, names.outputs);
    }
}

/// The area of the nodes, before ports are added that only connections name.
QRectF GetBounds(std::vector<NodeLook> const& looks)
{
    QRectF bounds;
    for (NodeLook const& look : looks)
        bounds |= GetNodeRect(look).translated(look.position);
    return bounds;
}

bool IsNamed(std::vector<GraphConnection> const& connections, GraphEnd GraphConnection::*end,
             char const* node)
{
    return std::any_of(
        connections.begin(), connections.end(),
        [&](GraphConnection const& connection) { return (connection.*end).node == node; });
}

} // namespace

NodeLooks::NodeLooks(CEmbeddedHost& host)
    : m_Host(host)
{}

void NodeLooks::Forget()
{
    m_ItemLooks.clear();
    m_TypeNames.clear();
}

std::vector<NodeLook> NodeLooks::Make(GraphBody const& body)
{
    std::vector<NodeLook> looks;
    looks.reserve(body.nodes.size() + 2);
    for (GraphNode const& node : body.nodes) {
        looks.push_back(GetItemLook(node.item));
        looks.back().id = node.id;
        looks.back().position = BringNear(node.position);
    }
    AddPortsNodes(body, looks);
    MarkConnections(body.connections, looks);
    return looks;
}

void NodeLooks::AddPortsNodes(GraphBody const& body, std::vector<NodeLook>& looks)
{
    QRectF const bounds = GetBounds(looks);
    double const left = std::floor(bounds.left() / kGridPitch) * kGridPitch - kSideGap;
    double const right = std::ceil(bounds.right() / kGridPitch) * kGridPitch + kSideGap;
    auto const add = [&](NodeLook look, double x, std::optional<QPointF> const& position) {
        double const y = bounds.center().y() - GetNodeRect(look).height() / 2;
        look.position = position ? BringNear(*position) : SnapToGrid(QPointF(x, y));
        looks.push_back(std::move(look));
    };
    if (!body.inputs.empty() || IsNamed(body.connections, &GraphConnection::from, kInputsNode)) {
        NodeLook const inputs = MakePortsLook(eNodeKind::kInputs, body.inputs);
        add(inputs, left - inputs.width, body.inputsPosition);
    }
    if (!body.outputs.empty() || IsNamed(body.connections, &GraphConnection::to, kOutputsNode))
        add(MakePortsLook(eNodeKind::kOutputs, body.outputs), right, body.outputsPosition);
}

NodeLook NodeLooks::MakePortsLook(eNodeKind kind, std::vector<GraphPort> const& ports)
{
    bool const isInputs = kind == eNodeKind::kInputs;
    NodeLook look;
    look.id = isInputs ? kInputsNode : kOutputsNode;
    look.kind = kind;
    look.title = isInputs ? QCoreApplication::translate("CCanvas", "Inputs")
                          : QCoreApplication::translate("CCanvas", "Outputs");
    // Seen from within, the compound's inputs are where values come from.
    (isInputs ? look.outputs : look.inputs) = MakePorts(ports);
    look.width = MeasureNodeWidth(look);
    return look;
}

std::string const& NodeLooks::GetTypeName(std::string const& type)
{
    auto const known = m_TypeNames.find(type);
    if (known != m_TypeNames.end())
        return known->second;
    return m_TypeNames[type] =
               m_Host.GetLibrary().GetItemName(m_Host.FindItem(type), true, nullptr);
}

NodeLook const& NodeLooks::GetItemLook(std::string const& item)
{
    auto const known = m_ItemLooks.find(item);
    if (known != m_ItemLooks.end())
        return known->second;
    return m_ItemLooks[item] = MakeItemLook(item);
}

NodeLook NodeLooks::MakeItemLook(std::string const& item)
{
    ItemLibraryAccessor const library = m_Host.GetLibrary();
    ItemID const id = m_Host.FindItem(item);
    NodeLook look;
    look.item = item;
    if (id.IsNull()) {
        look.kind = eNodeKind::kMissing;
        look.title = QCoreApplication::translate("CCanvas", "Missing item");
        return look;
    }
    GraphBody const body = m_Host.GetBody(id);
    look.kind = GetKind(id);
    look.title = nodebrowser::ToQString(library.GetItemName(id, true, nullptr).c_str());
    look.inputs = MakePorts(body.inputs);
    look.outputs = MakePorts(body.outputs);
    if (look.kind == eNodeKind::kCompound)
        look.icon = GetIcon(IsSignature(library, id) ? ":signature.png" : ":compound.png");
    else
        look.icon = GetIcon(look.kind == eNodeKind::kConstant ? ":constant.png" : ":solver.png");
    look.width = MeasureNodeWidth(look);
    return look;
}

std::vector<PortLook> NodeLooks::MakePorts(std::vector<GraphPort> const& ports)
{
    std::vector<PortLook> looks;
    for (GraphPort const& port : ports)
        looks.push_back(PortLook{port.name, port.type, GetTypeName(port.type)});
    return looks;
}

QPixmap NodeLooks::GetIcon(char const* resource)
{
    QPixmap& icon = m_Icons[resource];
    if (icon.isNull()) {
        QString sharp = QString::fromLatin1(resource);
        sharp.insert(sharp.lastIndexOf(QLatin1Char('.')), QStringLiteral("@2x"));
        icon = QPixmap(sharp);
        icon.setDevicePixelRatio(kIconSharpness);
    }
    return icon;
}
