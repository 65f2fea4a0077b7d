#include "nodelook.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

int const kBottomMargin = 8;
/// Between a port's middle and its name.
int const kNameMargin = 11;

bool IsSamePort(PortLook const& left, PortLook const& right)
{
    return std::tie(left.name, left.type, left.typeName, left.isConnected)
           == std::tie(right.name, right.type, right.typeName, right.isConnected);
}

bool AreSamePorts(std::vector<PortLook> const& left, std::vector<PortLook> const& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), IsSamePort);
}

} // namespace

bool operator==(NodeLook const& left, NodeLook const& right)
{
    return std::tie(left.id, left.item, left.kind, left.title, left.position)
               == std::tie(right.id, right.item, right.kind, right.title, right.position)
           && left.icon.cacheKey() == right.icon.cacheKey()
           && AreSamePorts(left.inputs, right.inputs) && AreSamePorts(left.outputs, right.outputs);
}

QPointF SnapToGrid(QPointF const& point)
{
    return QPointF(std::round(point.x() / kGridPitch), std::round(point.y() / kGridPitch))
           * kGridPitch;
}

QRectF GetNodeRect(NodeLook const& look)
{
    int const rows = static_cast<int>(std::max(look.inputs.size(), look.outputs.size()));
    return QRectF(0, 0, kNodeWidth, kHeaderHeight + rows * kPortRowHeight + kBottomMargin);
}

QPointF GetPortPosition(std::size_t port, bool isOutput)
{
    return QPointF(isOutput ? kNodeWidth : 0,
                   kHeaderHeight + 4 + (static_cast<double>(port) + 0.5) * kPortRowHeight);
}

QRectF GetPortNameRect(NodeLook const& look, std::size_t port, bool isOutput)
{
    bool const isShared = port < (isOutput ? look.inputs : look.outputs).size();
    double const room = kNodeWidth - 2 * kNameMargin;
    double const width = isShared ? room / 2 - 2 : room;
    double const top = GetPortPosition(port, isOutput).y() - kPortRowHeight / 2.0;
    return QRectF(isOutput ? kNodeWidth - kNameMargin - width : kNameMargin, top, width,
                  kPortRowHeight);
}
