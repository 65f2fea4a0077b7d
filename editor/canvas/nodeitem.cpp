#include "nodeitem.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionGraphicsItem>

namespace {

double const kCornerRadius = 7;
double const kSelectionWidth = 2;
double const kShadowOffset = 2;
/// Selection rings, shadows and port marks reach this far beyond the node.
double const kMargin = 10;
int const kTitleMargin = 8;
int const kTitleGap = 6;
int const kIconSize = 18;

// Below these zooms what is too small to be told apart is left out.
double const kPortNamesFrom = 0.5;
double const kTitleFrom = 0.3;

QStaticText MakeText(QString const& text, QFont const& font, double width)
{
    QStaticText prepared(
        QFontMetricsF(font).elidedText(text, Qt::ElideRight, width));
    prepared.setTextFormat(Qt::PlainText);
    prepared.setPerformanceHint(QStaticText::AggressiveCaching);
    prepared.prepare(QTransform(), font);
    return prepared;
}

double CenteredTop(QRectF const& rect, QFont const& font)
{
    return rect.center().y() - QFontMetricsF(font).height() / 2;
}

QPainterPath MakeHeaderPath(QRectF const& rect)
{
    // Round at the top alone.
    QRectF const header(rect.left(), rect.top(), rect.width(), kHeaderHeight);
    QPainterPath path;
    path.addRoundedRect(header.adjusted(0, 0, 0, kCornerRadius), kCornerRadius, kCornerRadius);
    QPainterPath below;
    below.addRect(header.adjusted(0, kHeaderHeight, 0, kCornerRadius));
    return path.subtracted(below);
}

} // namespace

CNodeItem::CNodeItem(NodeLook const& look, QFont const& font, CanvasColors const& colors)
    : m_Font(font)
    , m_TitleFont(font)
    , m_Colors(colors)
{
    m_TitleFont.setBold(true);
    setFlag(ItemIsSelectable,
            look.kind != eNodeKind::kInputs && look.kind != eNodeKind::kOutputs);
    setZValue(1);
    SetLook(look);
}

int CNodeItem::type() const
{
    return Type;
}

NodeLook const& CNodeItem::GetLook() const
{
    return m_Look;
}

void CNodeItem::SetLook(NodeLook const& look)
{
    prepareGeometryChange();
    m_Look = look;
    m_Rect = GetNodeRect(look);
    setPos(look.position);
    UpdateTexts();
    update();
}

void CNodeItem::UpdateColors()
{
    for (Port& port : m_Ports)
        port.color = GetTypeColor(port.look.type, port.look.typeName, m_Colors.isDark);
    update();
}

void CNodeItem::UpdateTexts()
{
    QRectF const header(0, 0, kNodeWidth, kHeaderHeight);
    int const left = kTitleMargin + (m_Look.icon.isNull() ? 0 : kIconSize + kTitleGap);
    m_Title = MakeText(m_Look.title, m_TitleFont, kNodeWidth - left - kTitleMargin);
    m_TitlePosition = QPointF(left, CenteredTop(header, m_TitleFont));
    m_Ports.clear();
    AddPorts(m_Look.inputs, false);
    AddPorts(m_Look.outputs, true);
}

void CNodeItem::AddPorts(std::vector<PortLook> const& looks, bool isOutput)
{
    for (std::size_t index = 0; index < looks.size(); ++index) {
        QRectF const rect = GetPortNameRect(m_Look, index, isOutput);
        QStaticText const text
            = MakeText(QString::fromStdString(looks[index].name), m_Font, rect.width());
        double const x = isOutput ? rect.right() - text.size().width() : rect.left();
        m_Ports.push_back(
            Port{looks[index], isOutput, GetPortPosition(index, isOutput), text,
                 QPointF(x, CenteredTop(rect, m_Font)),
                 GetTypeColor(looks[index].type, looks[index].typeName, m_Colors.isDark)});
    }
}

PortPick CNodeItem::MakePick(Port const& port) const
{
    return PortPick{m_Look.id, port.isOutput, port.look, pos() + port.position};
}

std::optional<PortPick> CNodeItem::FindPort(QPointF const& scenePoint) const
{
    for (Port const& port : m_Ports)
        if (QLineF(pos() + port.position, scenePoint).length() <= kPortReach)
            return MakePick(port);
    return std::nullopt;
}

std::optional<PortPick> CNodeItem::GetPort(std::string const& name, bool isOutput) const
{
    for (Port const& port : m_Ports)
        if (port.isOutput == isOutput && port.look.name == name)
            return MakePick(port);
    return std::nullopt;
}

void CNodeItem::MarkPort(std::string const& name, bool isOutput, ePortMark mark)
{
    m_Mark = Mark{name, isOutput, mark};
    update();
}

void CNodeItem::UnmarkPort()
{
    m_Mark.reset();
    update();
}

QRectF CNodeItem::boundingRect() const
{
    return m_Rect.adjusted(-kMargin, -kMargin, kMargin, kMargin);
}

QPainterPath CNodeItem::shape() const
{
    QPainterPath path;
    path.addRect(m_Rect);
    return path;
}

QColor const& CNodeItem::GetTint() const
{
    switch (m_Look.kind) {
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

void CNodeItem::paint(QPainter* painter, QStyleOptionGraphicsItem const*, QWidget*)
{
    double const zoom
        = QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    if (zoom < kTitleFrom) {
        PaintPlain(painter);
        return;
    }
    PaintFrame(painter);
    PaintHeader(painter);
    PaintPorts(painter, zoom >= kPortNamesFrom);
}

void CNodeItem::PaintPlain(QPainter* painter) const
{
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->fillRect(m_Rect, isSelected() ? m_Colors.selection : m_Colors.nodeBody);
    painter->fillRect(QRectF(0, 0, kNodeWidth, kHeaderHeight), GetTint());
    painter->setRenderHint(QPainter::Antialiasing);
}

void CNodeItem::PaintFrame(QPainter* painter) const
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_Colors.shadow);
    painter->drawRoundedRect(m_Rect.adjusted(-1, 0, 1, kShadowOffset + 1).translated(0, 1),
                             kCornerRadius + 1, kCornerRadius + 1);
    if (isSelected()) {
        QColor glow = m_Colors.selection;
        glow.setAlpha(70);
        painter->setBrush(glow);
        painter->drawRoundedRect(m_Rect.adjusted(-4, -4, 4, 4), kCornerRadius + 4,
                                 kCornerRadius + 4);
    }
    bool const isMissing = m_Look.kind == eNodeKind::kMissing;
    QPen border(isSelected() ? m_Colors.selection
                             : isMissing ? m_Colors.refusal : m_Colors.nodeBorder,
                isSelected() ? kSelectionWidth : 1);
    if (isMissing && !isSelected())
        border.setStyle(Qt::DashLine);
    painter->setPen(border);
    painter->setBrush(m_Colors.nodeBody);
    painter->drawRoundedRect(m_Rect, kCornerRadius, kCornerRadius);
}

void CNodeItem::PaintHeader(QPainter* painter) const
{
    // All headers are of one size.
    static QPainterPath const path
        = MakeHeaderPath(QRectF(1, 1, kNodeWidth - 2, kHeaderHeight - 1).adjusted(-0.5, -0.5, 0.5, 0));
    painter->setPen(Qt::NoPen);
    painter->setBrush(GetTint());
    painter->drawPath(path);
    if (!m_Look.icon.isNull())
        painter->drawPixmap(QRectF(kTitleMargin, (kHeaderHeight - kIconSize) / 2.0, kIconSize,
                                   kIconSize),
                            m_Look.icon, QRectF(m_Look.icon.rect()));
    painter->setFont(m_TitleFont);
    painter->setPen(m_Colors.text);
    painter->drawStaticText(m_TitlePosition, m_Title);
}

void CNodeItem::PaintPorts(QPainter* painter, bool areNamesShown) const
{
    if (areNamesShown) {
        painter->setFont(m_Font);
        painter->setPen(m_Colors.dimText);
        for (Port const& port : m_Ports)
            painter->drawStaticText(port.textPosition, port.text);
    }
    for (Port const& port : m_Ports) {
        if (m_Mark && m_Mark->isOutput == port.isOutput && m_Mark->name == port.look.name)
            PaintMark(painter, port);
        painter->setPen(QPen(port.color, 2));
        painter->setBrush(port.look.isConnected ? port.color : m_Colors.nodeBody);
        painter->drawEllipse(port.position, kPortRadius - 1, kPortRadius - 1);
    }
}

void CNodeItem::PaintMark(QPainter* painter, Port const& port) const
{
    QColor ring = m_Mark->mark == ePortMark::kRefused ? m_Colors.refusal : port.color;
    ring.setAlpha(m_Mark->mark == ePortMark::kHovered ? 90 : 150);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ring);
    painter->drawEllipse(port.position, kPortRadius + 4, kPortRadius + 4);
}
