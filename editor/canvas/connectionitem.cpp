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

/// Halves the curve until its pieces are straight enough, and leaves out what is not in the
/// rectangle.
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

CConnectionItem::CConnectionItem(GraphConnection const& connection, CanvasColors const& colors)
    : m_Connection(connection)
    , m_Colors(colors)
{
    setFlag(ItemIsSelectable);
    // To be told what part is exposed.
    setFlag(ItemUsesExtendedStyleOption);
}

int CConnectionItem::type() const
{
    return Type;
}

GraphConnection const& CConnectionItem::GetConnection() const
{
    return m_Connection;
}

void CConnectionItem::SetEnds(QPointF const& from, QPointF const& to)
{
    if (from == m_Curve.start && to == m_Curve.end && !m_Bounds.isNull())
        return;
    prepareGeometryChange();
    // A connection that runs back swings out wider, so that it can be told from one that is
    // straight.
    double const ahead = to.x() - from.x();
    QPointF const reach(
        std::clamp(ahead > 0 ? ahead / 2 : -ahead * 0.75, kSmallestReach, kLargestReach), 0);
    m_Curve = CurvePiece{from, from + reach, to - reach, to};
    m_Bounds = QRectF();
    // Tighter than the control points.
    for (QLineF const& line : GetLines(GetBounds(m_Curve), 1))
        m_Bounds |= QRectF(line.p1(), line.p2())
                        .normalized()
                        .adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

QVector<QLineF> CConnectionItem::GetLines(QRectF const& rect, double zoom) const
{
    QVector<QLineF> lines;
    AddLines(m_Curve, rect, kTolerance / zoom, kMostHalvings, lines);
    return lines;
}

void CConnectionItem::SetColor(QColor const& color)
{
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
        QPainterPath path(m_Curve.start);
        path.cubicTo(m_Curve.firstControl, m_Curve.secondControl, m_Curve.end);
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(path);
    } else {
        // The toolkit has a quick way for single lines that it does not have for paths.
        painter->drawLines(GetLines(option->exposedRect, zoom));
    }
    painter->setRenderHint(QPainter::Antialiasing);
}
