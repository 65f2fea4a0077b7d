#include "nodepictures.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

double const kCornerRadius = 7;
double const kSelectionWidth = 2;
int const kGlowWidth = 4;
int const kGlowAlpha = 80;
/// Glow and shadow reach no further beyond the node.
int const kFrameMargin = 6;
int const kPortMargin = 2;

QPainterPath MakeHeaderPath(QRectF const& rect)
{
    // Round at the top alone.
    QPainterPath path;
    path.addRoundedRect(rect.adjusted(0, 0, 0, kCornerRadius), kCornerRadius, kCornerRadius);
    QPainterPath below;
    below.addRect(rect.adjusted(0, rect.height(), 0, kCornerRadius));
    return path.subtracted(below);
}

/// Puts the picture onto whole pixels, where it is copied and not resampled.
void PaintPicture(QPainter* painter, QPixmap const& picture, QPointF const& topLeft)
{
    QTransform const transform = painter->worldTransform();
    double const sharpness = picture.devicePixelRatio();
    QPointF const mapped = transform.map(topLeft) * sharpness;
    painter->setWorldTransform(QTransform());
    painter->drawPixmap(QPointF(std::round(mapped.x()), std::round(mapped.y())) / sharpness,
                        picture);
    painter->setWorldTransform(transform);
}

} // namespace

NodePictures::NodePictures(CanvasColors const& colors)
    : m_Colors(colors)
{
}

void NodePictures::SetColors(CanvasColors const& colors)
{
    m_Colors = colors;
    m_Frames.clear();
    m_Ports.clear();
}

CanvasColors const& NodePictures::GetColors() const
{
    return m_Colors;
}

void NodePictures::UseScale(QPainter const* painter)
{
    double const zoom = painter->worldTransform().m11();
    double const sharpness = painter->device()->devicePixelRatioF();
    if (zoom == m_Zoom && sharpness == m_Sharpness)
        return;
    m_Zoom = zoom;
    m_Sharpness = sharpness;
    m_Frames.clear();
    m_Ports.clear();
}

void NodePictures::PaintFrame(QPainter* painter, eNodeKind kind, QRectF const& rect,
                              bool isSelected)
{
    UseScale(painter);
    QPixmap& picture = m_Frames[FrameKey(kind, qRound(rect.height()), isSelected)];
    if (picture.isNull())
        picture = MakeFrame(kind, rect, isSelected);
    PaintPicture(painter, picture, rect.topLeft() - QPointF(kFrameMargin, kFrameMargin));
}

void NodePictures::PaintPort(QPainter* painter, QPointF const& center, QColor const& color,
                             bool isConnected)
{
    UseScale(painter);
    QPixmap& picture = m_Ports[PortKey(color.rgba(), isConnected)];
    if (picture.isNull())
        picture = MakePort(color, isConnected);
    double const reach = kPortRadius + kPortMargin;
    PaintPicture(painter, picture, center - QPointF(reach, reach));
}

QPixmap NodePictures::MakePicture(QRectF const& area,
                                  std::function<void(QPainter&)> const& paint) const
{
    QSizeF const size = area.size() * m_Zoom * m_Sharpness;
    QPixmap picture(static_cast<int>(std::ceil(size.width())),
                    static_cast<int>(std::ceil(size.height())));
    picture.setDevicePixelRatio(m_Sharpness);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(m_Zoom, m_Zoom);
    painter.translate(-area.topLeft());
    paint(painter);
    return picture;
}

QPixmap NodePictures::MakeFrame(eNodeKind kind, QRectF const& rect, bool isSelected) const
{
    QRectF const area = rect.adjusted(-kFrameMargin, -kFrameMargin, kFrameMargin, kFrameMargin);
    return MakePicture(area, [&](QPainter& painter) {
        PaintBehindFrame(painter, rect, isSelected);
        bool const isMissing = kind == eNodeKind::kMissing;
        QPen border(isSelected ? m_Colors.selection
                               : isMissing ? m_Colors.refusal : m_Colors.nodeBorder,
                    isSelected ? kSelectionWidth : 1);
        if (isMissing && !isSelected)
            border.setStyle(Qt::DashLine);
        painter.setPen(border);
        painter.setBrush(m_Colors.nodeBody);
        painter.drawRoundedRect(rect, kCornerRadius, kCornerRadius);
        painter.setPen(Qt::NoPen);
        painter.setBrush(GetTint(kind));
        painter.drawPath(MakeHeaderPath(
            QRectF(rect.left() + 0.5, rect.top() + 0.5, rect.width() - 1, kHeaderHeight - 0.5)));
    });
}

void NodePictures::PaintBehindFrame(QPainter& painter, QRectF const& rect, bool isSelected) const
{
    painter.setPen(Qt::NoPen);
    // Two layers make a soft edge.
    painter.setBrush(m_Colors.shadow);
    for (int const reach : {1, 3})
        painter.drawRoundedRect(rect.adjusted(-reach + 1, 0, reach - 1, reach).translated(0, 1),
                                kCornerRadius + reach, kCornerRadius + reach);
    if (!isSelected)
        return;
    QColor glow = m_Colors.selection;
    glow.setAlpha(kGlowAlpha);
    painter.setBrush(glow);
    painter.drawRoundedRect(rect.adjusted(-kGlowWidth, -kGlowWidth, kGlowWidth, kGlowWidth),
                            kCornerRadius + kGlowWidth, kCornerRadius + kGlowWidth);
}

QPixmap NodePictures::MakePort(QColor const& color, bool isConnected) const
{
    double const reach = kPortRadius + kPortMargin;
    return MakePicture(QRectF(-reach, -reach, 2 * reach, 2 * reach), [&](QPainter& painter) {
        painter.setPen(QPen(color, 2));
        painter.setBrush(isConnected ? color : m_Colors.nodeBody);
        painter.drawEllipse(QPointF(), kPortRadius - 1, kPortRadius - 1);
    });
}

QColor const& NodePictures::GetTint(eNodeKind kind) const
{
    switch (kind) {
    case eNodeKind::kCompound:
        return m_Colors.compoundTint;
    case eNodeKind::kConstant:
        return m_Colors.constantTint;
    case eNodeKind::kInputs:
    case eNodeKind::kOutputs:
        return m_Colors.portsTint;
    case eNodeKind::kMissing:
        return m_Colors.missingTint;
    case eNodeKind::kSolver:
        break;
    }
    return m_Colors.solverTint;
}
