#include "nodelook.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

/// Between the header and the first port, and below the last one.
int const kTopMargin = 4;
int const kBottomMargin = 8;

bool IsSameLook(PortLook const& left, PortLook const& right)
{
    return std::tie(left.name, left.type, left.typeName, left.isConnected, left.isFaded)
           == std::tie(right.name, right.type, right.typeName, right.isConnected, right.isFaded);
}

bool AreSamePorts(std::vector<PortLook> const& left, std::vector<PortLook> const& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), IsSameLook);
}

} // namespace

bool operator==(NodeLook const& left, NodeLook const& right)
{
    return std::tie(left.id, left.item, left.kind, left.title, left.position, left.width)
               == std::tie(right.id, right.item, right.kind, right.title, right.position,
                           right.width)
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
    return QRectF(0, 0, look.width, kHeaderHeight + rows * kPortRowHeight + kBottomMargin);
}

QRectF GetHeaderRect(NodeLook const& look)
{
    return QRectF(0, 0, look.width, kHeaderHeight);
}

QPointF GetPortPosition(NodeLook const& look, std::size_t port, bool isOutput)
{
    return QPointF(isOutput ? look.width : 0,
                   kHeaderHeight + kTopMargin + (static_cast<double>(port) + 0.5) * kPortRowHeight);
}
