#include "gridpainter.h"

#include "canvascolors.h"
#include "nodelook.h"

#include <QPainter>
#include <QPixmap>

#include <cmath>
#include <vector>

namespace {

int const kStrongLineEvery = 5;
/// Below these zooms grid lines would lie closer than a few pixels.
double const kFaintLinesFrom = 0.5;
double const kStrongLinesFrom = 0.12;

/// In pixels of the view. Pixels side by side are copied far quicker than those of an upright line
/// are painted one by one.
int const kStripeHeight = 32;

struct Line
{
    /// In pixels of the view.
    int position;
    bool isStrong;
};

/// The lines of one direction between two pixels of the view; the scene's 0 lies at the offset.
std::vector<Line> FindLines(double zoom, double offset, int from, int to)
{
    std::vector<Line> lines;
    double const pitch = kGridPitch * zoom;
    int const last = static_cast<int>(std::ceil((to - offset) / pitch));
    for (int line = static_cast<int>(std::floor((from - offset) / pitch)); line <= last; ++line) {
        bool const isStrong = line % kStrongLineEvery == 0;
        if (zoom >= (isStrong ? kStrongLinesFrom : kFaintLinesFrom))
            lines.push_back({static_cast<int>(std::floor(line * pitch + offset + 0.5)), isStrong});
    }
    return lines;
}

/// The upright lines between left and right, on a ground of one colour.
QPixmap MakeStripe(QRect const& view, std::vector<Line> const& lines, int height,
                   QColor const& ground, CanvasColors const& colors, double sharpness)
{
    QPixmap stripe((QSizeF(view.width(), height) * sharpness).toSize());
    stripe.setDevicePixelRatio(sharpness);
    stripe.fill(ground);
    QPainter painter(&stripe);
    for (Line const& line : lines)
        painter.fillRect(line.position - view.left(), 0, 1, height,
                         line.isStrong ? colors.strongLine : colors.faintLine);
    return stripe;
}

} // namespace

void PaintGrid(QPainter& painter, QRectF const& rect, CanvasColors const& colors)
{
    QTransform const transform = painter.worldTransform();
    double const sharpness = painter.device()->devicePixelRatioF();
    QRect const view = transform.mapRect(rect).toAlignedRect();
    std::vector<Line> const columns =
        FindLines(transform.m11(), transform.dx(), view.left(), view.right());
    painter.setWorldTransform(QTransform());
    painter.drawTiledPixmap(
        view, MakeStripe(view, columns, kStripeHeight, colors.ground, colors, sharpness));
    QPixmap const faint = MakeStripe(view, columns, 1, colors.faintLine, colors, sharpness);
    for (Line const& row : FindLines(transform.m22(), transform.dy(), view.top(), view.bottom()))
        if (row.isStrong)
            painter.fillRect(view.left(), row.position, view.width(), 1, colors.strongLine);
        else
            painter.drawPixmap(view.left(), row.position, faint);
    painter.setWorldTransform(transform);
}
