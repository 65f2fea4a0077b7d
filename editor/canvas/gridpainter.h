#ifndef EDITOR_CANVAS_GRIDPAINTER_H
#define EDITOR_CANVAS_GRIDPAINTER_H

class QPainter;
class QRectF;
struct CanvasColors;

/// Fills the rectangle, in scene units, with the canvas's ground and its grid. The painter may move
/// and scale, and nothing else.
void PaintGrid(QPainter& painter, QRectF const& rect, CanvasColors const& colors);

#endif
