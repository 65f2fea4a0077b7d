#include "theme.h"

#include "editorstyle.h"

#include <QApplication>

namespace {

QColor const kHighlight(48, 140, 198);

/// Before Qt 6 a palette can come with a colour for hints but no brush to paint with it.
void CompleteHintColor(QPalette& palette)
{
    if (palette.brush(QPalette::PlaceholderText).style() == Qt::NoBrush)
        palette.setColor(QPalette::PlaceholderText, palette.color(QPalette::PlaceholderText));
}

QPalette LightPalette()
{
    QPalette palette(QColor(239, 239, 239));
    palette.setColor(QPalette::Highlight, kHighlight);
    palette.setColor(QPalette::Link, QColor(0, 87, 174));
    CompleteHintColor(palette);
    return palette;
}

void SetTextColor(QPalette& palette, QPalette::ColorGroup group, QColor const& color)
{
    for (QPalette::ColorRole const role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(group, role, color);
}

QPalette DarkPalette()
{
    // The constructor derives the shades of edges and shadows from the two colours.
    QPalette palette(QColor(60, 63, 68), QColor(50, 52, 56));
    SetTextColor(palette, QPalette::All, QColor(226, 228, 232));
    SetTextColor(palette, QPalette::Disabled, QColor(128, 132, 138));
    palette.setColor(QPalette::Base, QColor(30, 32, 35));
    palette.setColor(QPalette::AlternateBase, QColor(44, 46, 50));
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, QColor(148, 152, 158));
    palette.setColor(QPalette::ToolTipBase, QColor(60, 63, 68));
    palette.setColor(QPalette::ToolTipText, QColor(226, 228, 232));
    palette.setColor(QPalette::Highlight, kHighlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(107, 178, 240));
    return palette;
}

} // namespace

CTheme::CTheme()
{
    QApplication::setStyle(new CEditorStyle);
    m_DesktopPalette = QApplication::palette();
    CompleteHintColor(m_DesktopPalette);
}

bool CTheme::IsDesktopDark() const
{
    return m_DesktopPalette.color(QPalette::Window).lightness()
           < m_DesktopPalette.color(QPalette::WindowText).lightness();
}

void CTheme::SetDark(bool isDark)
{
    // The desktop's own palette is preferred, since it follows the user's settings.
    if (isDark == IsDesktopDark())
        QApplication::setPalette(m_DesktopPalette);
    else
        QApplication::setPalette(isDark ? DarkPalette() : LightPalette());
}
