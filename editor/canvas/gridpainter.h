#ifndef EDITOR_CANVAS_GRIDPAINTER_H
#define EDITOR_CANVAS_GRIDPAINTER_H

class QPainter;
class QRectF;
struct CanvasColors;

/// Fills the rectangle, in scene units, with the canvas's ground and its grid. The painter's
/// transformation may only move and scale.
void PaintGrid(QPainter& painter, QRectF const& rect, CanvasColors const& colors);

#endif
