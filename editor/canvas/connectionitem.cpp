#include "connectionitem.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

double const kWidth = 2;
double const kSelectedWidth = 3.5;
/// How far the curve goes on in its first direction, at least and at most.
double const kSmallestReach = 30;
double const kLargestReach = 160;
/// Into how many straight pieces the curve is cut to measure distances.
int const kPieces = 24;
/// Below this zoom curves are drawn as straight lines of one pixel, which is quicker.
double const kCurvesFrom = 0.3;

double DistanceToPiece(QPointF const& point, QPointF const& from, QPointF const& to)
{
    QPointF const along = to - from;
    double const square = QPointF::dotProduct(along, along);
    double const share
        = square == 0 ? 0 : QPointF::dotProduct(point - from, along) / square;
    return QLineF(point, from + std::clamp(share, 0.0, 1.0) * along).length();
}

} // namespace

CConnectionItem::CConnectionItem(GraphConnection const& connection, CanvasColors const& colors)
    : m_Connection(connection)
    , m_Colors(colors)
{
    setFlag(ItemIsSelectable);
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
    if (from == m_From && to == m_To && !m_Path.isEmpty())
        return;
    prepareGeometryChange();
    m_From = from;
    m_To = to;
    // A connection that runs back swings out wider, so that it can be told from one that is
    // straight.
    double const ahead = to.x() - from.x();
    double const reach = std::clamp(ahead > 0 ? ahead / 2 : -ahead * 0.75, kSmallestReach,
                                    kLargestReach);
    m_Path = QPainterPath(from);
    m_Path.cubicTo(from + QPointF(reach, 0), to - QPointF(reach, 0), to);
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
    QPointF previous = m_From;
    for (int piece = 1; piece <= kPieces; ++piece) {
        QPointF const next = m_Path.pointAtPercent(double(piece) / kPieces);
        nearest = std::min(nearest, DistanceToPiece(point, previous, next));
        previous = next;
    }
    return nearest;
}

QRectF CConnectionItem::boundingRect() const
{
    return m_Path.controlPointRect().adjusted(-kSelectedWidth, -kSelectedWidth, kSelectedWidth,
                                              kSelectedWidth);
}

void CConnectionItem::paint(QPainter* painter, QStyleOptionGraphicsItem const*, QWidget*)
{
    double const zoom
        = QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    QColor const& color = m_IsRefused ? m_Colors.refusal
                          : isSelected() ? m_Colors.selection : m_Color;
    if (zoom < kCurvesFrom) {
        painter->setRenderHint(QPainter::Antialiasing, false);
        painter->setPen(QPen(color, 0));
        painter->drawLine(m_From, m_To);
        painter->setRenderHint(QPainter::Antialiasing);
        return;
    }
    QPen pen(color, isSelected() ? kSelectedWidth : kWidth);
    if (m_IsRefused)
        pen.setStyle(Qt::DashLine);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(m_Path);
}
