#include "nodeitem.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <numeric>

namespace {

/// Selection rings, shadows and port marks reach no further beyond the node.
double const kNodeMargin = 11;

/// Above connections; selected nodes lie above those they are moved across.
double const kLayer = 1;
double const kSelectedLayer = 1.5;

double const kMarkRadius = kPortRadius + 2.5;
double const kMarkWidth = 4;
int const kHoverAlpha = 110;
int const kMarkAlpha = 190;

} // namespace

CNodeItem::CNodeItem(NodeLook const& look, NodePictures& pictures)
    : m_Pictures(pictures)
{
    setFlag(ItemIsSelectable, look.kind != eNodeKind::kInputs && look.kind != eNodeKind::kOutputs);
    setZValue(kLayer);
    SetLook(look);
}

int CNodeItem::type() const
{
    return Type;
}

NodeLook const& CNodeItem::GetLook() const
{
    return m_Look;
}

void CNodeItem::SetLook(NodeLook const& look)
{
    // Before the look changes, since the scene's index still holds the old bounding rectangle.
    prepareGeometryChange();
    m_Look = look;
    SortPorts(false);
    SortPorts(true);
    m_Face = MakeFace(look);
    setPos(look.position);
    update();
}

void CNodeItem::SortPorts(bool isOutput)
{
    std::vector<PortLook> const& ports = GetPorts(isOutput);
    std::vector<std::size_t>& sorted = isOutput ? m_SortedOutputs : m_SortedInputs;
    // Indexes, because the ports themselves keep the order in which they are painted.
    sorted.resize(ports.size());
    std::iota(sorted.begin(), sorted.end(), std::size_t(0));
    // Stable, because FindPort returns the first of several ports with the same name.
    std::stable_sort(sorted.begin(), sorted.end(), [&ports](std::size_t left, std::size_t right) {
        return ports[left].name < ports[right].name;
    });
}

void CNodeItem::FadePorts(std::function<bool(PortPick const&)> const& isFaded)
{
    for (bool const isOutput : {false, true}) {
        std::vector<PortLook>& ports = isOutput ? m_Look.outputs : m_Look.inputs;
        for (std::size_t port = 0; port < ports.size(); ++port)
            ports[port].isFaded = isFaded(MakePick(port, isOutput));
    }
    m_Face = MakeFace(m_Look);
    update();
}

std::vector<PortLook> const& CNodeItem::GetPorts(bool isOutput) const
{
    return isOutput ? m_Look.outputs : m_Look.inputs;
}

PortPick CNodeItem::MakePick(std::size_t port, bool isOutput) const
{
    return PortPick{m_Look.id, isOutput, GetPorts(isOutput)[port],
                    pos() + GetPortPosition(m_Look, port, isOutput)};
}

std::optional<PortPick> CNodeItem::FindPort(QPointF const& scenePoint) const
{
    QPointF const point = scenePoint - pos();
    for (bool const isOutput : {false, true})
        for (std::size_t port = 0; port < GetPorts(isOutput).size(); ++port)
            if (QLineF(GetPortPosition(m_Look, port, isOutput), point).length() <= kPortReach)
                return MakePick(port, isOutput);
    return std::nullopt;
}

PortLook const* CNodeItem::FindPort(std::string const& name, bool isOutput) const
{
    std::vector<PortLook> const& ports = GetPorts(isOutput);
    std::vector<std::size_t> const& sorted = isOutput ? m_SortedOutputs : m_SortedInputs;
    auto const found = std::lower_bound(
        sorted.begin(), sorted.end(), name,
        [&ports](std::size_t port, std::string const& text) { return ports[port].name < text; });
    return found != sorted.end() && ports[*found].name == name ? &ports[*found] : nullptr;
}

QPointF CNodeItem::GetPortPoint(PortLook const& port, bool isOutput) const
{
    // The port is an element of the list, so its address gives the row.
    std::size_t const row = static_cast<std::size_t>(&port - GetPorts(isOutput).data());
    return pos() + GetPortPosition(m_Look, row, isOutput);
}

std::optional<PortPick> CNodeItem::GetPort(std::string const& name, bool isOutput) const
{
    PortLook const* const port = FindPort(name, isOutput);
    return port ? std::make_optional(
               PortPick{m_Look.id, isOutput, *port, GetPortPoint(*port, isOutput)})
                : std::nullopt;
}

void CNodeItem::MarkPort(std::string const& name, bool isOutput, ePortMark mark)
{
    m_Mark = Mark{name, isOutput, mark};
    update();
}

void CNodeItem::UnmarkPort()
{
    if (!m_Mark)
        return;
    m_Mark.reset();
    update();
}

QRectF CNodeItem::boundingRect() const
{
    return GetNodeRect(m_Look).adjusted(-kNodeMargin, -kNodeMargin, kNodeMargin, kNodeMargin);
}

QPainterPath CNodeItem::shape() const
{
    QPainterPath path;
    path.addRect(GetNodeRect(m_Look));
    return path;
}

QVariant CNodeItem::itemChange(GraphicsItemChange change, QVariant const& value)
{
    if (change == ItemSelectedHasChanged)
        setZValue(value.toBool() ? kSelectedLayer : kLayer);
    return QGraphicsItem::itemChange(change, value);
}

void CNodeItem::paint(QPainter* painter, QStyleOptionGraphicsItem const*, QWidget*)
{
    m_Pictures.Paint(*painter, m_Look, m_Face, isSelected());
    if (m_Mark)
        PaintMark(*painter);
}

void CNodeItem::PaintMark(QPainter& painter) const
{
    auto const pick = GetPort(m_Mark->port, m_Mark->isOutput);
    if (!pick)
        return;
    CanvasColors const& colors = m_Pictures.GetColors();
    QColor ring = m_Mark->mark == ePortMark::kRefused
                      ? colors.refusal
                      : GetTypeColor(pick->port.type, pick->port.typeName, colors.isDark);
    ring.setAlpha(m_Mark->mark == ePortMark::kHovered ? kHoverAlpha : kMarkAlpha);
    painter.setPen(QPen(ring, kMarkWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(pick->position - pos(), kMarkRadius, kMarkRadius);
}
