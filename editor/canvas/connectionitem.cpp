#include "connectionitem.h"

#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

double const kWidth = 2;
double const kSelectedWidth = 3.5;
/// Caps and smooth edges included.
double const kMargin = 4;
/// How far the curve goes on in its first direction, at least and at most.
double const kSmallestReach = 30;
double const kLargestReach = 160;
/// For a connection that leads back: the width of its turns, and its distance from the nodes.
double const kTurnReach = 50;
double const kLaneDistance = 70;
/// Below this zoom curves are thin, and drawn without smooth edges, which is much quicker.
double const kSmoothFrom = 0.45;
/// How far lines that are drawn for a curve may be off it, in pixels, and how often it is halved
/// at most to get there.
double const kTolerance = 0.3;
int const kMostHalvings = 6;

/// The line ends at its ends.
double DistanceToLine(QPointF const& point, QPointF const& from, QPointF const& to)
{
    QPointF const along = to - from;
    double const square = QPointF::dotProduct(along, along);
    double const share = square == 0 ? 0 : QPointF::dotProduct(point - from, along) / square;
    return QLineF(point, from + std::clamp(share, 0.0, 1.0) * along).length();
}

/// How far a curve may be off the line between its ends.
double GetBend(CurvePiece const& piece)
{
    return 0.75
           * std::max(DistanceToLine(piece.firstControl, piece.start, piece.end),
                      DistanceToLine(piece.secondControl, piece.start, piece.end));
}

QRectF GetBounds(CurvePiece const& piece)
{
    auto const x = std::minmax(
        {piece.start.x(), piece.firstControl.x(), piece.secondControl.x(), piece.end.x()});
    auto const y = std::minmax(
        {piece.start.y(), piece.firstControl.y(), piece.secondControl.y(), piece.end.y()});
    return QRectF(QPointF(x.first, y.first), QPointF(x.second, y.second))
        .adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

std::vector<CurvePiece> MakeWayAhead(QPointF const& from, QPointF const& to)
{
    QPointF const reach(std::clamp((to.x() - from.x()) / 2, kSmallestReach, kLargestReach), 0);
    return {{from, from + reach, to - reach, to}};
}

/// Turns around, goes back between the rows of the two nodes or below them, and turns again.
std::vector<CurvePiece> MakeWayBack(QPointF const& from, QPointF const& to)
{
    bool const isBetween = std::abs(to.y() - from.y()) > 2 * kLaneDistance;
    double const lane =
        isBetween ? (from.y() + to.y()) / 2 : std::max(from.y(), to.y()) + kLaneDistance;
    QPointF const reach(kTurnReach, 0);
    QPointF const turn(from.x(), lane);
    QPointF const end(to.x(), lane);
    return {{from, from + reach, turn + reach, turn},
            {turn, turn, end, end},
            {end, end - reach, to - reach, to}};
}

/// Halves the curve until its pieces are straight enough, and leaves out pieces outside of
/// the rectangle.
void AddLines(CurvePiece const& piece, QRectF const& rect, double tolerance, int halvings,
              QVector<QLineF>& lines)
{
    if (!GetBounds(piece).intersects(rect))
        return;
    if (halvings == 0 || GetBend(piece) <= tolerance) {
        lines.append(QLineF(piece.start, piece.end));
        return;
    }
    QPointF const first = (piece.start + piece.firstControl) / 2;
    QPointF const between = (piece.firstControl + piece.secondControl) / 2;
    QPointF const last = (piece.secondControl + piece.end) / 2;
    QPointF const second = (first + between) / 2;
    QPointF const third = (between + last) / 2;
    QPointF const middle = (second + third) / 2;
    AddLines({piece.start, first, second, middle}, rect, tolerance, halvings - 1, lines);
    AddLines({middle, third, last, piece.end}, rect, tolerance, halvings - 1, lines);
}

} // namespace

CConnectionItem::CConnectionItem(embeddedhost::GraphConnection const& connection,
                                 CanvasColors const& colors)
    : m_Connection(connection)
    , m_Colors(colors)
{
    setFlag(ItemIsSelectable);
    // Only with this flag the style option carries the exposed rectangle.
    setFlag(ItemUsesExtendedStyleOption);
}

int CConnectionItem::type() const
{
    return Type;
}

embeddedhost::GraphConnection const& CConnectionItem::GetConnection() const
{
    return m_Connection;
}

void CConnectionItem::SetEnds(QPointF const& from, QPointF const& to)
{
    // A new item has both ends at (0, 0), and no curves yet.
    if (from == m_From && to == m_To && !m_Curves.empty())
        return;
    prepareGeometryChange();
    m_From = from;
    m_To = to;
    m_Curves = to.x() < from.x() ? MakeWayBack(from, to) : MakeWayAhead(from, to);
    m_Bounds = QRectF();
    for (CurvePiece const& curve : m_Curves)
        m_Bounds |= GetBounds(curve);
}

QVector<QLineF> CConnectionItem::GetLines(QRectF const& rect, double zoom) const
{
    QVector<QLineF> lines;
    for (CurvePiece const& curve : m_Curves)
        AddLines(curve, rect, kTolerance / zoom, kMostHalvings, lines);
    return lines;
}

void CConnectionItem::SetColor(QColor const& color)
{
    if (color == m_Color)
        return;
    m_Color = color;
    update();
}

void CConnectionItem::SetRefused(bool isRefused)
{
    m_IsRefused = isRefused;
    update();
}

double CConnectionItem::GetDistance(QPointF const& point) const
{
    double nearest = std::numeric_limits<double>::max();
    for (QLineF const& line : GetLines(m_Bounds, 1))
        nearest = std::min(nearest, DistanceToLine(point, line.p1(), line.p2()));
    return nearest;
}

QRectF CConnectionItem::boundingRect() const
{
    return m_Bounds;
}

void CConnectionItem::paint(QPainter* painter, QStyleOptionGraphicsItem const* option, QWidget*)
{
    double const zoom =
        QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    QColor const& color = m_IsRefused    ? m_Colors.refusal
                          : isSelected() ? m_Colors.selection
                                         : m_Color;
    QPen pen(color, isSelected() ? kSelectedWidth : kWidth);
    bool const isSmooth = zoom >= kSmoothFrom;
    if (m_IsRefused)
        pen.setStyle(Qt::DashLine);
    else if (!isSmooth)
        pen.setWidth(0);
    else
        pen.setCapStyle(Qt::SquareCap);
    painter->setPen(pen);
    painter->setRenderHint(QPainter::Antialiasing, isSmooth);
    if (m_IsRefused) {
        QPainterPath path(m_From);
        for (CurvePiece const& curve : m_Curves)
            path.cubicTo(curve.firstControl, curve.secondControl, curve.end);
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(path);
    } else {
        // The toolkit has a quick way for single lines that it does not have for paths.
        painter->drawLines(GetLines(option->exposedRect, zoom));
    }
    painter->setRenderHint(QPainter::Antialiasing);
}
