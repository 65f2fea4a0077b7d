#include "nodepictures.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QIODevice>
#include <QPainter>

#include <cmath>

namespace {

int const kBytesPerPixel = 4;
int const kMostPictureBytes = 96 << 20;
/// For making pictures in a frame, which has 16 ms in all.
qint64 const kBudgetNanoseconds = 2500000;
/// Beyond this zoom few nodes are in view, and their pictures would be large.
double const kLargestPictureZoom = 2;
/// In pixels. A taller node has very many ports, most of which are out of view.
double const kTallestPicture = 4096;

void WritePorts(QDataStream& stream, std::vector<PortLook> const& ports)
{
    stream << static_cast<int>(ports.size());
    for (PortLook const& port : ports)
        stream << port.name.c_str() << port.type.c_str() << port.typeName.c_str()
               << port.isConnected << port.isFaded;
}

QRectF GetPictureRect(NodeLook const& look)
{
    int const margin = kNodePaintMargin;
    return GetNodeRect(look).adjusted(-margin, -margin, margin, margin);
}

bool IsPaintedFromPicture(QPainter const& painter, NodeLook const& look)
{
    double const zoom = painter.worldTransform().m11();
    double const height =
        GetPictureRect(look).height() * zoom * painter.device()->devicePixelRatioF();
    return zoom >= kFrameFrom && zoom <= kLargestPictureZoom && height <= kTallestPicture;
}

/// Puts the picture onto whole pixels, where it is copied and not resampled.
void PaintPicture(QPainter& painter, QPixmap const& picture, QPointF const& topLeft)
{
    QTransform const transform = painter.worldTransform();
    double const sharpness = picture.devicePixelRatio();
    QPointF const mapped = transform.map(topLeft) * sharpness;
    painter.setWorldTransform(QTransform());
    // Rounded in one direction, so that scrolling by whole pixels moves all pictures alike.
    painter.drawPixmap(
        QPointF(std::floor(mapped.x() + 0.5), std::floor(mapped.y() + 0.5)) / sharpness, picture);
    painter.setWorldTransform(transform);
}

} // namespace

QByteArray MakeFace(NodeLook const& look)
{
    QByteArray face;
    QDataStream stream(&face, QIODevice::WriteOnly);
    stream << static_cast<int>(look.kind) << look.title << look.icon.cacheKey() << look.width;
    WritePorts(stream, look.inputs);
    WritePorts(stream, look.outputs);
    return face;
}

NodePictures::NodePictures(CanvasColors const& colors)
    : m_Colors(colors)
    , m_Painter(colors)
    , m_Pictures(kMostPictureBytes)
{}

void NodePictures::SetColors(CanvasColors const& colors)
{
    m_Colors = colors;
    m_Painter = NodePainter(colors);
    m_Pictures.clear();
    m_Frames.clear();
}

CanvasColors const& NodePictures::GetColors() const
{
    return m_Colors;
}

void NodePictures::StartFrame()
{
    m_SpentNanoseconds = 0;
    m_IsFrameCoarse = false;
}

bool NodePictures::IsFrameCoarse() const
{
    return m_IsFrameCoarse;
}

void NodePictures::UseScale(double zoom, double sharpness)
{
    // Pictures for another zoom are kept, to be stretched until there is time for new ones.
    if (sharpness != m_Sharpness)
        m_Pictures.clear();
    if (zoom != m_Zoom || sharpness != m_Sharpness)
        m_Frames.clear();
    m_Zoom = zoom;
    m_Sharpness = sharpness;
}

void NodePictures::Paint(QPainter& painter, NodeLook const& look, QByteArray const& face,
                         bool isSelected)
{
    if (!IsPaintedFromPicture(painter, look)) {
        m_Painter.PaintFrame(painter, look, isSelected);
        m_Painter.PaintContents(painter, look);
        return;
    }
    double const zoom = painter.worldTransform().m11();
    UseScale(zoom, painter.device()->devicePixelRatioF());
    QByteArray const key = face + (isSelected ? 's' : '-');
    Picture const* const known = m_Pictures.object(key);
    if (known && known->zoom == zoom) {
        PaintPicture(painter, known->pixmap, GetPictureRect(look).topLeft());
    } else if (known && m_SpentNanoseconds > kBudgetNanoseconds) {
        m_IsFrameCoarse = true;
        painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
        painter.drawPixmap(GetPictureRect(look), known->pixmap, QRectF(known->pixmap.rect()));
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
    } else {
        PaintNew(painter, look, isSelected, key);
    }
}

void NodePictures::PaintNew(QPainter& painter, NodeLook const& look, bool isSelected,
                            QByteArray const& key)
{
    QElapsedTimer timer;
    timer.start();
    QPixmap const pixmap = MakePicture(look, isSelected);
    m_SpentNanoseconds += timer.nsecsElapsed();
    // Painted from the local copy: insert() deletes a picture that is too large for the cache.
    PaintPicture(painter, pixmap, GetPictureRect(look).topLeft());
    m_Pictures.insert(key, new Picture{pixmap, m_Zoom},
                      kBytesPerPixel * pixmap.width() * pixmap.height());
}

QPixmap NodePictures::MakePicture(NodeLook const& look, bool isSelected)
{
    // A shared copy, which detaches from the cached frame when it is painted on.
    QPixmap picture = GetFrame(look, isSelected);
    QPainter painter(&picture);
    PrepareWithin(painter);
    m_Painter.PaintContents(painter, look);
    return picture;
}

QPixmap NodePictures::GetFrame(NodeLook const& look, bool isSelected)
{
    QRectF const area = GetPictureRect(look);
    QPixmap& frame = m_Frames[{look.kind, qRound(area.width()), qRound(area.height()), isSelected}];
    if (!frame.isNull())
        return frame;
    QSizeF const size = area.size() * m_Zoom * m_Sharpness;
    frame = QPixmap(static_cast<int>(std::ceil(size.width())),
                    static_cast<int>(std::ceil(size.height())));
    frame.setDevicePixelRatio(m_Sharpness);
    frame.fill(Qt::transparent);
    QPainter painter(&frame);
    PrepareWithin(painter);
    m_Painter.PaintFrame(painter, look, isSelected);
    return frame;
}

void NodePictures::PrepareWithin(QPainter& painter) const
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.scale(m_Zoom, m_Zoom);
    painter.translate(kNodePaintMargin, kNodePaintMargin);
}
