#include "nodepainter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>

namespace {

int const kTitleMargin = 8;
int const kTitleGap = 6;
int const kIconSize = 18;
/// Between a port's middle and its name, and between the names of a row.
int const kNameMargin = 11;
int const kNameGap = 14;

double const kCornerRadius = 7;
/// In pixels of the screen at zooms below 1, in scene units above.
double const kSelectionWidth = 2;
int const kGlowWidth = 4;
int const kGlowAlpha = 80;
/// Pixels of the pen; a port without a connection is a ring.
double const kDotWidth = 2;
/// How much of a faded port is seen.
double const kFadedShare = 0.22;

// Below these zooms texts are too small to be read, and left out. Below kTitleFrom the title is
// painted across the ports instead, as large as at kReadableZoom; below kLargeTitleFrom it has no
// room there either.
double const kPortNamesFrom = 0.6;
double const kTitleFrom = 0.45;
double const kLargeTitleFrom = 0.29;
double const kReadableZoom = 0.65;

double GetZoom(QPainter const& painter)
{
    return QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter.worldTransform());
}

double GetTitleLeft(NodeLook const& look)
{
    return kTitleMargin + (look.icon.isNull() ? 0 : kIconSize + kTitleGap);
}

std::vector<PortLook> const& GetPorts(NodeLook const& look, bool isOutput)
{
    return isOutput ? look.outputs : look.inputs;
}

double MeasureName(std::vector<PortLook> const& ports, std::size_t row,
                   QFontMetricsF const& metrics)
{
    return row < ports.size() ? metrics.horizontalAdvance(QString::fromStdString(ports[row].name))
                              : 0;
}

/// Round at the top alone.
QPainterPath MakeHeaderPath(QRectF const& rect)
{
    double const size = 2 * kCornerRadius;
    QPainterPath path(rect.bottomLeft());
    path.arcTo(rect.left(), rect.top(), size, size, 180, -90);
    path.arcTo(rect.right() - size, rect.top(), size, size, 90, -90);
    path.lineTo(rect.bottomRight());
    path.closeSubpath();
    return path;
}

} // namespace

int MeasureNodeWidth(NodeLook const& look)
{
    QFontMetricsF const titles(GetNodeTitleFont());
    QFontMetricsF const names(GetNodeNameFont());
    double width = GetTitleLeft(look) + titles.horizontalAdvance(look.title) + kTitleMargin;
    for (std::size_t row = 0; row < std::max(look.inputs.size(), look.outputs.size()); ++row)
        width = std::max(width, MeasureName(look.inputs, row, names)
                                    + MeasureName(look.outputs, row, names) + kNameGap
                                    + 2 * kNameMargin);
    int const steps = static_cast<int>(std::ceil(width / kGridPitch));
    return std::clamp(steps * kGridPitch, kSmallestNodeWidth, kLargestNodeWidth);
}

QColor const& GetTint(CanvasColors const& colors, eNodeKind kind)
{
    switch (kind) {
    case eNodeKind::kCompound:
        return colors.compoundTint;
    case eNodeKind::kConstant:
        return colors.constantTint;
    case eNodeKind::kInputs:
    case eNodeKind::kOutputs:
        return colors.portsTint;
    case eNodeKind::kMissing:
        return colors.missingTint;
    case eNodeKind::kSolver:
        break;
    }
    return colors.solverTint;
}

NodePainter::NodePainter(CanvasColors const& colors)
    : m_Colors(colors)
    , m_Titles(GetNodeTitleFont())
    , m_Names(GetNodeNameFont())
{}

void NodePainter::PaintFrame(QPainter& painter, NodeLook const& look, bool isSelected) const
{
    double const zoom = GetZoom(painter);
    if (zoom < kFrameFrom) {
        PaintPlainFrame(painter, look, isSelected);
        return;
    }
    QRectF const rect = GetNodeRect(look);
    PaintShadow(painter, rect);
    if (isSelected)
        PaintGlow(painter, rect);
    painter.setPen(GetBorder(look, isSelected, zoom));
    painter.setBrush(m_Colors.nodeBody);
    painter.drawRoundedRect(rect, kCornerRadius, kCornerRadius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(GetTint(m_Colors, look.kind));
    painter.drawPath(MakeHeaderPath(GetHeaderRect(look).adjusted(0.5, 0.5, -0.5, 0)));
}

void NodePainter::PaintPlainFrame(QPainter& painter, NodeLook const& look, bool isSelected) const
{
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(GetNodeRect(look), isSelected ? m_Colors.selection : m_Colors.nodeBody);
    painter.fillRect(GetHeaderRect(look), GetTint(m_Colors, look.kind));
    painter.setRenderHint(QPainter::Antialiasing);
}

void NodePainter::PaintShadow(QPainter& painter, QRectF const& rect) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_Colors.shadow);
    // Two layers make a soft edge.
    for (int const reach : {1, 3})
        painter.drawRoundedRect(rect.adjusted(-reach + 1, 0, reach - 1, reach).translated(0, 1),
                                kCornerRadius + reach, kCornerRadius + reach);
}

void NodePainter::PaintGlow(QPainter& painter, QRectF const& rect) const
{
    QColor glow = m_Colors.selection;
    glow.setAlpha(kGlowAlpha);
    painter.setPen(Qt::NoPen);
    painter.setBrush(glow);
    painter.drawRoundedRect(rect.adjusted(-kGlowWidth, -kGlowWidth, kGlowWidth, kGlowWidth),
                            kCornerRadius + kGlowWidth, kCornerRadius + kGlowWidth);
}

QPen NodePainter::GetBorder(NodeLook const& look, bool isSelected, double zoom) const
{
    if (isSelected)
        return QPen(m_Colors.selection, kSelectionWidth / std::min(1.0, zoom));
    if (look.kind == eNodeKind::kMissing)
        return QPen(m_Colors.refusal, 1, Qt::DashLine);
    return QPen(m_Colors.nodeBorder, 1);
}

void NodePainter::PaintContents(QPainter& painter, NodeLook const& look)
{
    double const zoom = GetZoom(painter);
    if (zoom < kTitleFrom) {
        if (zoom >= kLargeTitleFrom)
            PaintLargeTitle(painter, look, kReadableZoom / zoom);
        return;
    }
    PaintHeader(painter, look);
    QRectF const seen = painter.worldTransform().inverted().mapRect(QRectF(painter.viewport()));
    for (bool const isOutput : {false, true})
        for (std::size_t row = 0; row < GetPorts(look, isOutput).size(); ++row) {
            double const y = GetPortPosition(look, row, isOutput).y();
            if (y + kPortRowHeight < seen.top() || y - kPortRowHeight > seen.bottom())
                continue;
            if (zoom >= kPortNamesFrom)
                PaintName(painter, look, row, isOutput);
            PaintDot(painter, look, row, isOutput);
        }
}

void NodePainter::PaintHeader(QPainter& painter, NodeLook const& look)
{
    QRectF const icon(kTitleMargin, (kHeaderHeight - kIconSize) / 2.0, kIconSize, kIconSize);
    if (!look.icon.isNull())
        painter.drawPixmap(icon, look.icon, QRectF(look.icon.rect()));
    painter.setPen(m_Colors.text);
    m_Titles.Paint(painter, GetHeaderRect(look).adjusted(GetTitleLeft(look), 0, -kTitleMargin, 0),
                   look.title, false);
}

void NodePainter::PaintLargeTitle(QPainter& painter, NodeLook const& look, double scale)
{
    QRectF const body = GetNodeRect(look).adjusted(kTitleMargin, kHeaderHeight, -kTitleMargin, 0);
    painter.save();
    painter.scale(scale, scale);
    painter.setPen(m_Colors.text);
    m_Titles.Paint(painter, QRectF(body.topLeft() / scale, body.size() / scale), look.title, false);
    painter.restore();
}

double NodePainter::GetNameWidth(std::vector<PortLook> const& ports, std::size_t row)
{
    return row < ports.size() ? m_Names.GetWidth(QString::fromStdString(ports[row].name)) : 0;
}

void NodePainter::PaintName(QPainter& painter, NodeLook const& look, std::size_t row, bool isOutput)
{
    PortLook const& port = GetPorts(look, isOutput)[row];
    double const room = look.width - 2 * kNameMargin;
    double const other = GetNameWidth(GetPorts(look, !isOutput), row);
    double const width = room - (other == 0 ? 0 : std::min(other + kNameGap, room / 2));
    double const left = isOutput ? look.width - kNameMargin - width : kNameMargin;
    double const top = GetPortPosition(look, row, isOutput).y() - kPortRowHeight / 2.0;
    painter.setPen(Fade(m_Colors.dimText, port));
    m_Names.Paint(painter, QRectF(left, top, width, kPortRowHeight),
                  QString::fromStdString(port.name), isOutput);
}

void NodePainter::PaintDot(QPainter& painter, NodeLook const& look, std::size_t row,
                           bool isOutput) const
{
    PortLook const& port = GetPorts(look, isOutput)[row];
    QPointF const center = GetPortPosition(look, row, isOutput);
    // Two filled circles are painted quicker than one with an outline.
    painter.setPen(Qt::NoPen);
    painter.setBrush(Fade(GetTypeColor(port.type, port.typeName, m_Colors.isDark), port));
    painter.drawEllipse(center, kPortRadius, kPortRadius);
    if (port.isConnected)
        return;
    painter.setBrush(m_Colors.nodeBody);
    painter.drawEllipse(center, kPortRadius - kDotWidth, kPortRadius - kDotWidth);
}

QColor NodePainter::Fade(QColor const& color, PortLook const& port) const
{
    return port.isFaded ? MixColors(m_Colors.nodeBody, color, kFadedShare) : color;
}
