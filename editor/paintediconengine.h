#ifndef EDITOR_PAINTEDICONENGINE_H
#define EDITOR_PAINTEDICONENGINE_H

#include <QIconEngine>

/// An icon that is painted anew at each size.
class PaintedIconEngine : public QIconEngine
{
public:
    void paint(QPainter* painter, QRect const& rect, QIcon::Mode mode, QIcon::State state) final;
    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) final;

protected:
    /// Paints into a square from (0, 0) to (1, 1).
    virtual void PaintSquare(QPainter& painter, QIcon::Mode mode) = 0;
};

#endif
