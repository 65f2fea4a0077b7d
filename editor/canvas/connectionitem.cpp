#include "connectionitem.h"

#include <QPainter>
#include <QPolygonF>
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
/// How often the curve is halved: 16 pieces, each nearly straight.
int const kHalvings = 4;
/// Below this zoom curves are thin, and drawn without smooth edges, which is much quicker.
double const kSmoothFrom = 0.45;
/// Up to this zoom the pieces of a curve cannot be told from straight lines.
double const kStraightUpTo = 1.6;

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
    if (from == m_From && to == m_To && !m_Pieces.empty())
        return;
    prepareGeometryChange();
    m_From = from;
    m_To = to;
    // A connection that runs back swings out wider, so that it can be told from one that is
    // straight.
    double const ahead = to.x() - from.x();
    QPointF const reach(std::clamp(ahead > 0 ? ahead / 2 : -ahead * 0.75, kSmallestReach,
                                   kLargestReach),
                        0);
    m_Pieces.clear();
    m_Bounds = QRectF();
    UpdatePieces(Piece{from, from + reach, to - reach, to, QRectF()}, kHalvings);
}

void CConnectionItem::UpdatePieces(Piece const& whole, int halvings)
{
    QPointF const first = (whole.start + whole.firstControl) / 2;
    QPointF const between = (whole.firstControl + whole.secondControl) / 2;
    QPointF const last = (whole.secondControl + whole.end) / 2;
    QPointF const second = (first + between) / 2;
    QPointF const third = (between + last) / 2;
    QPointF const middle = (second + third) / 2;
    if (halvings > 0) {
        UpdatePieces(Piece{whole.start, first, second, middle, QRectF()}, halvings - 1);
        UpdatePieces(Piece{middle, third, last, whole.end, QRectF()}, halvings - 1);
        return;
    }
    Piece piece = whole;
    piece.bounds = QPolygonF({piece.start, piece.firstControl, piece.secondControl, piece.end})
                       .boundingRect()
                       .adjusted(-kSelectedWidth, -kSelectedWidth, kSelectedWidth, kSelectedWidth);
    m_Bounds |= piece.bounds;
    m_Pieces.push_back(piece);
}

QPainterPath CConnectionItem::GetVisiblePath(QRectF const& rect) const
{
    QPainterPath path;
    bool isBroken = true;
    for (Piece const& piece : m_Pieces) {
        if (!piece.bounds.intersects(rect)) {
            isBroken = true;
            continue;
        }
        if (isBroken)
            path.moveTo(piece.start);
        path.cubicTo(piece.firstControl, piece.secondControl, piece.end);
        isBroken = false;
    }
    return path;
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
    for (Piece const& piece : m_Pieces)
        nearest = std::min(nearest, DistanceToPiece(point, piece.start, piece.end));
    return nearest;
}

QRectF CConnectionItem::boundingRect() const
{
    return m_Bounds;
}

QVector<QLineF> CConnectionItem::GetVisibleLines(QRectF const& rect) const
{
    QVector<QLineF> lines;
    for (Piece const& piece : m_Pieces)
        if (piece.bounds.intersects(rect))
            lines.append(QLineF(piece.start, piece.end));
    return lines;
}

void CConnectionItem::paint(QPainter* painter, QStyleOptionGraphicsItem const* option,
                            QWidget*)
{
    double const zoom
        = QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    QColor const& color = m_IsRefused ? m_Colors.refusal
                          : isSelected() ? m_Colors.selection : m_Color;
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
    if (zoom > kStraightUpTo || m_IsRefused) {
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(GetVisiblePath(option->exposedRect));
    } else {
        // The toolkit has a quick way for single lines that it does not have for paths.
        painter->drawLines(GetVisibleLines(option->exposedRect));
    }
    painter->setRenderHint(QPainter::Antialiasing);
}
