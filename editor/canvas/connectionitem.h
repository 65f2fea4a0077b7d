#ifndef EDITOR_CANVAS_CONNECTIONITEM_H
#define EDITOR_CANVAS_CONNECTIONITEM_H

#include "canvascolors.h"

#include <graphbody.h>

#include <QGraphicsItem>
#include <QPainterPath>
#include <QVector>

#include <vector>

/// A connection as it is painted: a curve that leaves its output to the right and comes to its
/// input from the left.
class CConnectionItem : public QGraphicsItem
{
public:
    enum { Type = UserType + 2 };

    /// The colours have to outlive the item.
    CConnectionItem(GraphConnection const& connection, CanvasColors const& colors);

    int type() const override;
    GraphConnection const& GetConnection() const;
    void SetEnds(QPointF const& from, QPointF const& to);
    void SetColor(QColor const& color);
    /// Drawn in dashes: it cannot be made.
    void SetRefused(bool isRefused);
    /// How far the point is from the curve.
    double GetDistance(QPointF const& point) const;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, QStyleOptionGraphicsItem const* option,
               QWidget* widget) override;

private:
    struct Piece
    {
        QPointF start;
        QPointF firstControl;
        QPointF secondControl;
        QPointF end;
        QRectF bounds;
    };

    void UpdatePieces(Piece const& whole, int halvings);
    /// The part of the curve that can be seen in the rectangle, and a little more.
    QPainterPath GetVisiblePath(QRectF const& rect) const;
    /// The same of the straight lines between the pieces' ends.
    QVector<QLineF> GetVisibleLines(QRectF const& rect) const;

    GraphConnection const m_Connection;
    CanvasColors const& m_Colors;
    QPointF m_From;
    QPointF m_To;
    QRectF m_Bounds;
    /// The curve, cut so that what is not seen need not be drawn.
    std::vector<Piece> m_Pieces;
    QColor m_Color;
    bool m_IsRefused = false;
};

#endif
