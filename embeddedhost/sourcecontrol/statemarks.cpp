#include "sourcecontrol/statemarks.h"

#include "sourcecontrol/statebits.h"

#include <QPainter>

namespace embeddedhost {

namespace {

/// Side of the square that a mark is drawn in; the rest of the strip keeps it off the icon.
constexpr int kMarkSize = 6;
/// Top of the first mark; a second one follows below. Clear of the badge of a factory item.
constexpr int kMarkTop = 1;
constexpr qreal kLineWidth = 1.6;
/// From the edge of the square to the middle of a line.
constexpr qreal kInset = kLineWidth / 2 + 0.2;
constexpr qreal kDotSize = 1.5;

void SetLine(QPainter& painter, QColor const& colour)
{
    painter.setPen(QPen(colour, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
}

void PaintDisc(QPainter& painter, QRectF const& square, QColor const& colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawEllipse(square.adjusted(0.4, 0.4, -0.4, -0.4));
}

void PaintRing(QPainter& painter, QRectF const& square, QColor const& colour)
{
    SetLine(painter, colour);
    painter.drawEllipse(square.adjusted(kInset, kInset, -kInset, -kInset));
}

void PaintPlus(QPainter& painter, QRectF const& square, QColor const& colour)
{
    SetLine(painter, colour);
    QPointF const middle = square.center();
    painter.drawLine(QPointF(square.left() + kInset, middle.y()),
                     QPointF(square.right() - kInset, middle.y()));
    painter.drawLine(QPointF(middle.x(), square.top() + kInset),
                     QPointF(middle.x(), square.bottom() - kInset));
}

void PaintCross(QPainter& painter, QRectF const& square, QColor const& colour)
{
    SetLine(painter, colour);
    QRectF const inner = square.adjusted(kInset, kInset, -kInset, -kInset);
    painter.drawLine(inner.topLeft(), inner.bottomRight());
    painter.drawLine(inner.topRight(), inner.bottomLeft());
}

void PaintDash(QPainter& painter, QRectF const& square, QColor const& colour)
{
    SetLine(painter, colour);
    painter.drawLine(QPointF(square.left() + kInset, square.center().y()),
                     QPointF(square.right() - kInset, square.center().y()));
}

void PaintQuestion(QPainter& painter, QRectF const& square, QColor const& colour)
{
    SetLine(painter, colour);
    QRectF const inner = square.adjusted(kInset, kInset, -kInset, -kInset);
    QPointF const middle = inner.center();
    painter.drawPolyline(QPolygonF({{inner.left(), inner.top() + 0.8},
                                    {middle.x(), inner.top()},
                                    {inner.right(), inner.top() + 1.2},
                                    {middle.x(), middle.y() + 0.6},
                                    {middle.x(), middle.y() + 1.2}}));
    // The dot lies below the square, where no second mark comes.
    painter.drawPoint(QPointF(middle.x(), square.bottom() + 0.8));
}

void PaintTick(QPainter& painter, QRectF const& square, QColor const& colour)
{
    SetLine(painter, colour);
    QRectF const inner = square.adjusted(kInset, kInset, -kInset, -kInset);
    painter.drawPolyline(QPolygonF({{inner.left(), inner.center().y() + 0.5},
                                    {inner.left() + inner.width() * 0.35, inner.bottom()},
                                    {inner.right(), inner.top()}}));
}

void PaintDots(QPainter& painter, QRectF const& square, QColor const& colour)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    for (int i = 0; i < 3; ++i) {
        qreal const left = square.left() + i * (square.width() - kDotSize) / 2;
        painter.drawEllipse(QRectF(left, square.center().y() - kDotSize / 2, kDotSize, kDotSize));
    }
}

struct Mark
{
    unsigned state;
    void (*paint)(QPainter& painter, QRectF const& square, QColor const& colour);
    /// Medium lightness, for contrast with light and dark backgrounds.
    QRgb colour;
};

/// The first that fits is drawn.
constexpr Mark kMarks[] = {
    {StateBits::kWaiting, PaintDots, 0xFF808080},
    {StateBits::kConflicted, PaintCross, 0xFFE5484D},
    {StateBits::kUnknown, PaintQuestion, 0xFF808080},
    {StateBits::kAdded, PaintPlus, 0xFF2B9A50},
    {StateBits::kModified, PaintDisc, 0xFFC77400},
    {StateBits::kUntracked, PaintRing, 0xFF2B9A50},
    {StateBits::kIgnored, PaintDash, 0xFF808080},
};
constexpr Mark kCheckedOutMark = {StateBits::kCheckedOut, PaintTick, 0xFFB455C8};

} // namespace

QPixmap AddStateStrip(QPixmap const& icon)
{
    qreal const ratio = icon.devicePixelRatio();
    QPixmap wide(icon.width() + qRound(ScsUtils::kStateStripWidth * ratio), icon.height());
    wide.setDevicePixelRatio(ratio);
    wide.fill(Qt::transparent);
    QPainter painter(&wide);
    painter.drawPixmap(ScsUtils::kStateStripWidth, 0, icon);
    return wide;
}

void PaintStateMarks(QPixmap& icon, unsigned state)
{
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF square(0, kMarkTop, kMarkSize, kMarkSize);
    for (Mark const& mark : kMarks) {
        if (state & mark.state) {
            mark.paint(painter, square, QColor(mark.colour));
            square.translate(0, kMarkSize);
            break;
        }
    }
    if (state & kCheckedOutMark.state)
        kCheckedOutMark.paint(painter, square, QColor(kCheckedOutMark.colour));
}

} // namespace embeddedhost
