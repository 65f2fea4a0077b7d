#ifndef NODEBROWSER_TESTS_EDITORRUN_H
#define NODEBROWSER_TESTS_EDITORRUN_H

#include <embeddedhost.h>
#include <journal.h>
#include <mainwindow.h>
#include <settings.h>

#include <QStringList>

class CCanvas;
class CNodeBrowser;

/// One run of the editor, from start to end; its settings are those of the environment. Only for
/// the application's thread.
class EditorRun
{
public:
    explicit EditorRun(QString const& journalFolder);

    CEmbeddedHost& GetHost();
    CMainWindow& GetWindow();
    CNodeBrowser& GetPanel();
    CCanvas& GetCanvas();

    /// Names of the rows of the panel, in their order.
    QStringList GetRows();
    int GetScrollOffset();
    /// In pixels of the panel.
    QRect GetRowArea();

    // Points on the screen.
    QPoint GetRowPoint(int row);
    QPoint GetSearchPoint();
    QPoint GetMenuPoint(QString const& menu);
    /// In the header of a node.
    QPoint GetNodePoint(std::string const& id);
    QPoint GetPortPoint(GraphEnd const& end, bool isOutput);
    /// At shares of the canvas' width and height.
    QPoint GetFreeCanvasPoint(double across, double down);

    /// The compound that is shown; empty when there is none.
    QString GetCompoundName();
    GraphBody GetBody();

private:
    QPoint GetCanvasPoint(QPointF const& scenePoint);

    CEmbeddedHost m_Host;
    CSettings m_Settings;
    CJournal m_Journal;
    CMainWindow m_Window;
};

#endif
