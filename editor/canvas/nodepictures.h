#ifndef EDITOR_CANVAS_NODEPICTURES_H
#define EDITOR_CANVAS_NODEPICTURES_H

#include "canvascolors.h"
#include "nodelook.h"

#include <QPixmap>

#include <functional>
#include <map>
#include <tuple>

class QPainter;

/// Frames and port dots of nodes. Many nodes share them, and a picture is painted far quicker
/// than round corners are; so each is made once for a zoom.
class NodePictures
{
public:
    explicit NodePictures(CanvasColors const& colors);

    void SetColors(CanvasColors const& colors);
    CanvasColors const& GetColors() const;

    /// Body, border and header of a node with this rectangle.
    void PaintFrame(QPainter* painter, eNodeKind kind, QRectF const& rect, bool isSelected);
    void PaintPort(QPainter* painter, QPointF const& center, QColor const& color,
                   bool isConnected);

    QColor const& GetTint(eNodeKind kind) const;

private:
    typedef std::tuple<eNodeKind, int, bool> FrameKey;
    typedef std::tuple<QRgb, bool> PortKey;

    /// Drops what was made for another zoom.
    void UseScale(QPainter const* painter);
    QPixmap MakeFrame(eNodeKind kind, QRectF const& rect, bool isSelected) const;
    QPixmap MakePort(QColor const& color, bool isConnected) const;
    /// Of the area, in scene units; `paint` gets a painter for these.
    QPixmap MakePicture(QRectF const& area, std::function<void(QPainter&)> const& paint) const;
    void PaintBehindFrame(QPainter& painter, QRectF const& rect, bool isSelected) const;

    CanvasColors m_Colors;
    /// Of scene units to the view's, and of these to pixels.
    double m_Zoom = 0;
    double m_Sharpness = 0;
    std::map<FrameKey, QPixmap> m_Frames;
    std::map<PortKey, QPixmap> m_Ports;
};

#endif
