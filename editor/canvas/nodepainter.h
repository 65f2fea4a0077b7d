#ifndef EDITOR_CANVAS_NODEPAINTER_H
#define EDITOR_CANVAS_NODEPAINTER_H

#include "canvascolors.h"
#include "nodelook.h"
#include "nodetexts.h"

#include <QPen>

class QPainter;

/// How far shadow, glow and ports reach beyond a node's rectangle at most.
int const kNodePaintMargin = 6;

/// Below this zoom a frame is painted as two plain rectangles, which need no cached picture.
double const kFrameFrom = 0.25;

/// How wide a node has to be for its texts: whole steps of the grid, within the limits.
int MeasureNodeWidth(NodeLook const& look);

/// The header's colour, which tells the kinds of nodes apart.
QColor const& GetTint(CanvasColors const& colors, eNodeKind kind);

/// Paints nodes, whose top left is at the painter's (0, 0), in as much detail as its zoom shows.
class NodePainter
{
public:
    explicit NodePainter(CanvasColors const& colors);

    /// Body, header and border: the same for all nodes of a kind and size.
    void PaintFrame(QPainter& painter, NodeLook const& look, bool isSelected) const;
    /// Texts and ports.
    void PaintContents(QPainter& painter, NodeLook const& look);

private:
    void PaintPlainFrame(QPainter& painter, NodeLook const& look, bool isSelected) const;
    void PaintShadow(QPainter& painter, QRectF const& rect) const;
    void PaintGlow(QPainter& painter, QRectF const& rect) const;
    QPen GetBorder(NodeLook const& look, bool isSelected, double zoom) const;
    void PaintHeader(QPainter& painter, NodeLook const& look);
    void PaintLargeTitle(QPainter& painter, NodeLook const& look, double scale);
    /// A port's name. Those of a row that is too narrow for both share it.
    void PaintName(QPainter& painter, NodeLook const& look, std::size_t row, bool isOutput);
    void PaintDot(QPainter& painter, NodeLook const& look, std::size_t row, bool isOutput) const;
    double GetNameWidth(std::vector<PortLook> const& ports, std::size_t row);
    QColor Fade(QColor const& color, PortLook const& port) const;

    CanvasColors m_Colors;
    NodeTexts m_Titles;
    NodeTexts m_Names;
};

#endif
