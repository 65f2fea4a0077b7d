#ifndef EDITOR_CANVAS_CONNECTIONITEM_H
#define EDITOR_CANVAS_CONNECTIONITEM_H

#include "canvascolors.h"

#include <embeddedhost/model/graphbody.h>

#include <QGraphicsItem>
#include <QLineF>
#include <QVector>

#include <vector>

/// A cubic curve between two points.
struct CurvePiece
{
    QPointF start;
    QPointF firstControl;
    QPointF secondControl;
    QPointF end;
};

/// Paints a connection: a curve that leaves its output to the right and comes to its
/// input from the left.
class CConnectionItem : public QGraphicsItem
{
public:
    enum
    {
        Type = UserType + 2
    };

    /// The colours have to outlive the item.
    CConnectionItem(embeddedhost::GraphConnection const& connection, CanvasColors const& colors);

    int type() const override;
    embeddedhost::GraphConnection const& GetConnection() const;
    void SetEnds(QPointF const& from, QPointF const& to);
    void SetColor(QColor const& color);
    /// Drawn in dashes: it cannot be made.
    void SetRefused(bool isRefused);
    /// How far the point is from the curve.
    double GetDistance(QPointF const& point) const;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, QStyleOptionGraphicsItem const* option, QWidget* widget) override;

private:
    /// Straight lines that look like the curve at the zoom, as far as it can be seen in the
    /// rectangle.
    QVector<QLineF> GetLines(QRectF const& rect, double zoom) const;

    embeddedhost::GraphConnection const m_Connection;
    CanvasColors const& m_Colors;
    /// One curve, or several that lead around to an input at the left of the output.
    std::vector<CurvePiece> m_Curves;
    QPointF m_From;
    QPointF m_To;
    QRectF m_Bounds;
    QColor m_Color;
    bool m_IsRefused = false;
};

#endif
