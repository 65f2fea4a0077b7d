#ifndef EDITOR_CANVAS_NODEPICTURES_H
#define EDITOR_CANVAS_NODEPICTURES_H

#include "canvascolors.h"
#include "nodelook.h"
#include "nodepainter.h"

#include <QByteArray>
#include <QCache>
#include <QPixmap>

#include <map>
#include <tuple>

class QPainter;

/// All that a node's picture depends on, its selection aside. Nodes with equal faces look alike.
QByteArray MakeFace(NodeLook const& look);

/// Paints nodes from pictures of them: many nodes look alike, and a picture is painted far quicker
/// than round corners and texts are. While the zoom changes from frame to frame, only so many
/// pictures are made anew for each, and the others are stretched until their turn comes.
class NodePictures
{
public:
    explicit NodePictures(CanvasColors const& colors);

    void SetColors(CanvasColors const& colors);
    CanvasColors const& GetColors() const;

    /// To be called before the nodes of a frame are painted.
    void StartFrame();
    /// Pictures were stretched, so the frame should be painted once more.
    bool IsFrameCoarse() const;
    /// Paints the node with its top left at the painter's (0, 0). The face is the look's.
    void Paint(QPainter& painter, NodeLook const& look, QByteArray const& face, bool isSelected);

private:
    struct Picture
    {
        QPixmap pixmap;
        double zoom;
    };

    /// Drops pictures made for another zoom or pixel ratio of the screen.
    void UseScale(double zoom, double sharpness);
    void PaintNew(QPainter& painter, NodeLook const& look, bool isSelected, QByteArray const& key);
    QPixmap MakePicture(NodeLook const& look, bool isSelected);
    QPixmap GetFrame(NodeLook const& look, bool isSelected);
    /// Moves the painter to where a node within a picture lies.
    void PrepareWithin(QPainter& painter) const;

    CanvasColors m_Colors;
    NodePainter m_Painter;
    /// The scale from scene units to the view's, and the pixel ratio of the screen.
    double m_Zoom = 0;
    double m_Sharpness = 0;
    /// By face and selection.
    QCache<QByteArray, Picture> m_Pictures;
    /// By kind, width, height and selection, for the zoom.
    std::map<std::tuple<eNodeKind, int, int, bool>, QPixmap> m_Frames;
    /// The time spent on making pictures for this frame.
    qint64 m_SpentNanoseconds = 0;
    bool m_IsFrameCoarse = false;
};

#endif
