#include "editorstyle.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace {

/// In pixels, above and below a tab's text together.
int const kTabMargins = 6;

/// Paints an icon with lines in the text colour that buttons have at that time.
class LineIconEngine : public QIconEngine
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

    void paint(QPainter* painter, QRect const& rect, QIcon::Mode mode, QIcon::State) override
    {
        QPalette::ColorGroup const group =
            mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        int const side = qMin(rect.width(), rect.height());
        QPen pen(QGuiApplication::palette().color(group, QPalette::ButtonText), kLineWidth);
        pen.setCapStyle(Qt::FlatCap);
        pen.setJoinStyle(Qt::MiterJoin);

        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(side, side) / 2);
        painter->scale(side, side);
        painter->setPen(pen);
        painter->drawPath(m_Path);
        painter->restore();
    }

    /// The base class leaves it to chance what is behind the lines.
    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
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

int CEditorStyle::pixelMetric(PixelMetric metric, QStyleOption const* option,
                              QWidget const* widget) const
{
    if (metric == PM_TabBarTabVSpace)
        return kTabMargins;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int CEditorStyle::styleHint(StyleHint hint, QStyleOption const* option, QWidget const* widget,
                            QStyleHintReturn* returnData) const
{
    // On a dark ground the shadow is what one would read.
    return hint == SH_EtchDisabledText ? 0
                                       : QProxyStyle::styleHint(hint, option, widget, returnData);
}

QIcon CEditorStyle::standardIcon(StandardPixmap standardIcon, QStyleOption const* option,
                                 QWidget const* widget) const
{
    if (standardIcon == SP_TitleBarCloseButton)
        return QIcon(new LineIconEngine(CrossPath()));
    if (standardIcon == SP_TitleBarNormalButton)
        return QIcon(new LineIconEngine(WindowsPath()));
    return QProxyStyle::standardIcon(standardIcon, option, widget);
}
