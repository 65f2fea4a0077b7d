#include "paintediconengine.h"

#include <QPainter>

void PaintedIconEngine::paint(QPainter* painter, QRect const& rect, QIcon::Mode mode, QIcon::State)
{
    int const side = qMin(rect.width(), rect.height());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(rect).center() - QPointF(side, side) / 2);
    painter->scale(side, side);
    PaintSquare(*painter, mode);
    painter->restore();
}

/// The base class paints into a pixmap that was not cleared.
QPixmap PaintedIconEngine::pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state)
{
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
}
