#include "nodeitem.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionGraphicsItem>

namespace {

/// Selection rings, shadows and port marks reach this far beyond the node.
double const kMargin = 10;
int const kTitleMargin = 8;
int const kTitleGap = 6;
int const kIconSize = 18;

// Below these zooms what is too small to be told apart is left out.
double const kPortNamesFrom = 0.7;
double const kTitleFrom = 0.45;
double const kFrameFrom = 0.25;

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

} // namespace

CNodeItem::CNodeItem(NodeLook const& look, QFont const& font, NodePictures& pictures)
    : m_Font(font)
    , m_TitleFont(font)
    , m_Pictures(pictures)
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
        port.color = GetTypeColor(port.look.type, port.look.typeName, m_Pictures.GetColors().isDark);
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
                 GetTypeColor(looks[index].type, looks[index].typeName, m_Pictures.GetColors().isDark)});
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

void CNodeItem::paint(QPainter* painter, QStyleOptionGraphicsItem const*, QWidget*)
{
    double const zoom
        = QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    if (zoom < kFrameFrom) {
        PaintPlain(painter);
        return;
    }
    m_Pictures.PaintFrame(painter, m_Look.kind, m_Rect, isSelected());
    if (zoom < kTitleFrom)
        return;
    PaintHeader(painter);
    PaintPorts(painter, zoom >= kPortNamesFrom);
}

void CNodeItem::PaintPlain(QPainter* painter) const
{
    CanvasColors const& colors = m_Pictures.GetColors();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->fillRect(m_Rect, isSelected() ? colors.selection : colors.nodeBody);
    painter->fillRect(QRectF(0, 0, kNodeWidth, kHeaderHeight), m_Pictures.GetTint(m_Look.kind));
    painter->setRenderHint(QPainter::Antialiasing);
}

void CNodeItem::PaintHeader(QPainter* painter) const
{
    if (!m_Look.icon.isNull())
        painter->drawPixmap(QRectF(kTitleMargin, (kHeaderHeight - kIconSize) / 2.0, kIconSize,
                                   kIconSize),
                            m_Look.icon, QRectF(m_Look.icon.rect()));
    painter->setFont(m_TitleFont);
    painter->setPen(m_Pictures.GetColors().text);
    painter->drawStaticText(m_TitlePosition, m_Title);
}

void CNodeItem::PaintPorts(QPainter* painter, bool areNamesShown) const
{
    if (areNamesShown) {
        painter->setFont(m_Font);
        painter->setPen(m_Pictures.GetColors().dimText);
        for (Port const& port : m_Ports)
            painter->drawStaticText(port.textPosition, port.text);
    }
    for (Port const& port : m_Ports) {
        if (m_Mark && m_Mark->isOutput == port.isOutput && m_Mark->name == port.look.name)
            PaintMark(painter, port);
        m_Pictures.PaintPort(painter, port.position, port.color, port.look.isConnected);
    }
}

void CNodeItem::PaintMark(QPainter* painter, Port const& port) const
{
    QColor ring = m_Mark->mark == ePortMark::kRefused ? m_Pictures.GetColors().refusal : port.color;
    ring.setAlpha(m_Mark->mark == ePortMark::kHovered ? 90 : 150);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ring);
    painter->drawEllipse(port.position, kPortRadius + 4, kPortRadius + 4);
}
