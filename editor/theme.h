#ifndef EDITOR_THEME_H
#define EDITOR_THEME_H

#include <QPalette>

/// The two looks of the application. The one that the desktop has is taken from the desktop.
class CTheme
{
public:
    /// Sets the style, and keeps the palette that the desktop gives it.
    CTheme();

    bool IsDesktopDark() const;
    void SetDark(bool isDark);

private:
    QPalette m_DesktopPalette;
};

#endif
