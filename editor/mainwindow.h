#ifndef EDITOR_MAINWINDOW_H
#define EDITOR_MAINWINDOW_H

#include "theme.h"

#include <messagechannel.h>

#include <QMainWindow>

class CCanvas;
class CEmbeddedHost;
class CMessageLog;
class CNodeBrowser;
class QDockWidget;

/// The editor's window: the panel at the left, the canvas, and what the host has to say in the
/// status bar and in a log.
class CMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The host has to outlive the window.
    explicit CMainWindow(CEmbeddedHost& host);

    /// False when nothing could be opened; why stands among the host's messages.
    bool OpenLibrary(QString const& folder);
    /// As if typed into the panel.
    void Search(QString const& text);
    void SetDark(bool isDark);

private:
    void CreatePanel();
    void CreateLog();
    QDockWidget* AddDock(QString const& title, QWidget* widget, Qt::DockWidgetArea area);
    void CreateFileMenu();
    void CreateCreateMenu();
    void CreateViewMenu();
    void CreateHelpMenu();

    void ChooseLibrary();
    void ShowLibrary();
    void ShowSummary();
    void ShowFiles(QStringList const& paths);
    void ShowMessage(eSeverity severity, QString const& text);
    void ShowAbout();

    CEmbeddedHost& m_Host;
    CTheme m_Theme;
    CCanvas* const m_Canvas;
    CNodeBrowser* const m_Panel;
    CMessageLog* const m_Log;
    QDockWidget* m_PanelDock = nullptr;
    QDockWidget* m_LogDock = nullptr;
    QAction* m_DarkAction = nullptr;
    /// The log came forward by itself once; from then on it is the user's to show and hide.
    bool m_IsLogOffered = false;
};

#endif
