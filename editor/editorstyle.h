#ifndef EDITOR_EDITORSTYLE_H
#define EDITOR_EDITORSTYLE_H

#include <QProxyStyle>

/// Fusion, with tabs that fit into the panel's header, disabled text without a shadow, borders of
/// popups that are seen on dark windows, plain icons in message boxes, and icons of title bars and
/// for closing in the palette's colours, whichever they are when an icon is painted.
class CEditorStyle : public QProxyStyle
{
    Q_OBJECT

public:
    CEditorStyle();

    void drawPrimitive(PrimitiveElement element, QStyleOption const* option, QPainter* painter,
                       QWidget const* widget = nullptr) const override;
    int pixelMetric(PixelMetric metric, QStyleOption const* option = nullptr,
                    QWidget const* widget = nullptr) const override;
    QSize sizeFromContents(ContentsType type, QStyleOption const* option, QSize const& size,
                           QWidget const* widget = nullptr) const override;
    int styleHint(StyleHint hint, QStyleOption const* option = nullptr,
                  QWidget const* widget = nullptr,
                  QStyleHintReturn* returnData = nullptr) const override;
    QIcon standardIcon(StandardPixmap standardIcon, QStyleOption const* option = nullptr,
                       QWidget const* widget = nullptr) const override;
};

#endif
