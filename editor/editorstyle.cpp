#include "editorstyle.h"

#include "messageicons.h"
#include "paintediconengine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>
#include <QWidget>

namespace {

/// In pixels, above and below a tab's text together.
int const kTabMargins = 6;
/// In pixels, at least these at the left and right of a button's text together.
int const kButtonMargins = 24;

/// Paints an icon with lines in the text colour that buttons have at that time.
class LineIconEngine : public PaintedIconEngine
{
public:
    /// The path lies in a square from (0, 0) to (1, 1).
    explicit LineIconEngine(QPainterPath const& path)
        : m_Path(path)
    {}

    QIconEngine* clone() const override
    {
        return new LineIconEngine(*this);
    }

protected:
    void PaintSquare(QPainter& painter, QIcon::Mode mode) override
    {
        QPalette::ColorGroup const group =
            mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QPen pen(QGuiApplication::palette().color(group, QPalette::ButtonText), kLineWidth);
        pen.setCapStyle(Qt::FlatCap);
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        painter.drawPath(m_Path);
    }

private:
    /// As a share of the icon's side.
    static constexpr double kLineWidth = 0.1;

    QPainterPath const m_Path;
};

QPainterPath CrossPath()
{
    QPainterPath path(QPointF(0.25, 0.25));
    path.lineTo(0.75, 0.75);
    path.moveTo(0.75, 0.25);
    path.lineTo(0.25, 0.75);
    return path;
}

/// A window that came off another.
QPainterPath WindowsPath()
{
    QPainterPath path(QPointF(0.4, 0.35));
    path.lineTo(0.4, 0.2);
    path.lineTo(0.8, 0.2);
    path.lineTo(0.8, 0.6);
    path.lineTo(0.65, 0.6);
    path.addRect(0.2, 0.4, 0.4, 0.4);
    return path;
}

} // namespace

CEditorStyle::CEditorStyle()
    : QProxyStyle(QStringLiteral("Fusion"))
{}

void CEditorStyle::drawPrimitive(PrimitiveElement element, QStyleOption const* option,
                                 QPainter* painter, QWidget const* widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    bool const isPopup = element == PE_PanelMenu || element == PE_FrameMenu
                         || (element == PE_Frame && widget && widget->isWindow());
    QPalette const& palette = option->palette;
    if (!isPopup
        || palette.color(QPalette::Window).lightness()
               > palette.color(QPalette::WindowText).lightness())
        return;
    // The style's own border is darker than the window, as are canvas and lists below it.
    painter->save();
    painter->setPen(palette.color(QPalette::Light));
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    painter->restore();
}

int CEditorStyle::pixelMetric(PixelMetric metric, QStyleOption const* option,
                              QWidget const* widget) const
{
    if (metric == PM_TabBarTabVSpace)
        return kTabMargins;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QSize CEditorStyle::sizeFromContents(ContentsType type, QStyleOption const* option,
                                     QSize const& size, QWidget const* widget) const
{
    QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    bool const isText = type == CT_PushButton && !size.isEmpty();
    if (isText && whole.width() < size.width() + kButtonMargins)
        whole.setWidth(size.width() + kButtonMargins);
    return whole;
}

int CEditorStyle::styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
                            QStyleHintReturn* returnData) const
{
    // On a dark background the white shadow would be easier to read than the text.
    return hint == SH_EtchDisabledText ? 0
                                       : QProxyStyle::styleHint(hint, option, widget, returnData);
}

QIcon CEditorStyle::standardIcon(StandardPixmap standardIcon, QStyleOption const* option,
                                 QWidget const* widget) const
{
    if (standardIcon == SP_TitleBarCloseButton || standardIcon == SP_DialogCloseButton)
        return QIcon(new LineIconEngine(CrossPath()));
    if (standardIcon == SP_TitleBarNormalButton)
        return QIcon(new LineIconEngine(WindowsPath()));
    QIcon const message = MakeMessageIcon(standardIcon);
    return message.isNull() ? QProxyStyle::standardIcon(standardIcon, option, widget) : message;
}

#include "moc_editorstyle.cpp"
