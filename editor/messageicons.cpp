#include "messageicons.h"

#include "paintediconengine.h"

#include <QPainter>
#include <QPainterPath>

namespace {

QColor const kBlue(48, 140, 198);
QColor const kAmber(232, 163, 23);
QColor const kRed(204, 62, 56);

/// A shape of one colour with a mark in it.
class BadgeIconEngine : public PaintedIconEngine
{
public:
    /// The paths lie in a square from (0, 0) to (1, 1).
    BadgeIconEngine(QPainterPath const& shape, QColor const& color, QPainterPath const& mark)
        : m_Shape(shape)
        , m_Color(color)
        , m_Mark(mark)
    {}

    QIconEngine* clone() const override
    {
        return new BadgeIconEngine(*this);
    }

protected:
    void PaintSquare(QPainter& painter, QIcon::Mode) override
    {
        QPen edge(m_Color, kCornerWidth);
        edge.setJoinStyle(Qt::RoundJoin);
        painter.setPen(edge);
        painter.setBrush(m_Color);
        painter.drawPath(m_Shape);
        QPen line(Qt::white, kLineWidth);
        line.setCapStyle(Qt::RoundCap);
        line.setJoinStyle(Qt::RoundJoin);
        painter.setPen(line);
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(m_Mark);
    }

private:
    /// As shares of the icon's side.
    static constexpr double kCornerWidth = 0.08;
    static constexpr double kLineWidth = 0.09;

    QPainterPath const m_Shape;
    QColor const m_Color;
    QPainterPath const m_Mark;
};

QPainterPath Disc()
{
    QPainterPath path;
    path.addEllipse(QRectF(0.09, 0.09, 0.82, 0.82));
    return path;
}

QPainterPath Triangle()
{
    QPainterPath path(QPointF(0.5, 0.12));
    path.lineTo(0.92, 0.86);
    path.lineTo(0.08, 0.86);
    path.closeSubpath();
    return path;
}

/// A line and the dot below or above it; a line of no length is a dot.
QPainterPath LineAndDot(double lineFrom, double lineTo, double dot)
{
    QPainterPath path(QPointF(0.5, lineFrom));
    path.lineTo(0.5, lineTo);
    path.moveTo(0.5, dot);
    path.lineTo(0.5, dot + 0.001);
    return path;
}

QPainterPath QuestionMark()
{
    QPainterPath path;
    path.arcMoveTo(QRectF(0.36, 0.26, 0.28, 0.26), 170);
    path.arcTo(QRectF(0.36, 0.26, 0.28, 0.26), 170, -220);
    path.quadTo(0.5, 0.52, 0.5, 0.61);
    path.moveTo(0.5, 0.75);
    path.lineTo(0.5, 0.751);
    return path;
}

QPainterPath Cross()
{
    QPainterPath path(QPointF(0.35, 0.35));
    path.lineTo(0.65, 0.65);
    path.moveTo(0.65, 0.35);
    path.lineTo(0.35, 0.65);
    return path;
}

} // namespace

QIcon MakeMessageIcon(QStyle::StandardPixmap kind)
{
    switch (kind) {
    case QStyle::SP_MessageBoxInformation:
        return QIcon(new BadgeIconEngine(Disc(), kBlue, LineAndDot(0.48, 0.72, 0.29)));
    case QStyle::SP_MessageBoxWarning:
        return QIcon(new BadgeIconEngine(Triangle(), kAmber, LineAndDot(0.38, 0.58, 0.74)));
    case QStyle::SP_MessageBoxCritical:
        return QIcon(new BadgeIconEngine(Disc(), kRed, Cross()));
    case QStyle::SP_MessageBoxQuestion:
        return QIcon(new BadgeIconEngine(Disc(), kBlue, QuestionMark()));
    default:
        return QIcon();
    }
}
