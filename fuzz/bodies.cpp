#include "bodies.h"

#include <algorithm>
#include <cstring>

using namespace embeddedhost;

namespace {

/// The toolkit compares points with a tolerance. Files have no negative zero.
bool AreEqual(double left, double right)
{
    return std::memcmp(&left, &right, sizeof left) == 0 || (left == 0 && right == 0);
}

bool AreEqual(GraphPort const& left, GraphPort const& right)
{
    return left.name == right.name && left.type == right.type;
}

bool AreEqual(QPointF const& left, QPointF const& right)
{
    return AreEqual(left.x(), right.x()) && AreEqual(left.y(), right.y());
}

bool AreEqual(std::optional<QPointF> const& left, std::optional<QPointF> const& right)
{
    return left && right ? AreEqual(*left, *right) : left.has_value() == right.has_value();
}

bool AreEqual(GraphNode const& left, GraphNode const& right)
{
    return left.id == right.id && left.item == right.item
           && AreEqual(left.position, right.position);
}

bool AreEqual(GraphEnd const& left, GraphEnd const& right)
{
    return left.node == right.node && left.port == right.port;
}

bool AreEqual(GraphConnection const& left, GraphConnection const& right)
{
    return AreEqual(left.from, right.from) && AreEqual(left.to, right.to);
}

template <class T>
bool AreEqual(std::vector<T> const& left, std::vector<T> const& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](T const& a, T const& b) { return AreEqual(a, b); });
}

} // namespace

bool AreEqual(GraphBody const& left, GraphBody const& right)
{
    return AreEqual(left.inputs, right.inputs) && AreEqual(left.outputs, right.outputs)
           && AreEqual(left.nodes, right.nodes) && AreEqual(left.connections, right.connections)
           && AreEqual(left.inputsPosition, right.inputsPosition)
           && AreEqual(left.outputsPosition, right.outputsPosition);
}
