#ifndef EDITOR_MAINWINDOW_H
#define EDITOR_MAINWINDOW_H

#include "theme.h"

#include <datamodel.h>
#include <embeddedhost/framework/messagechannel.h>

#include <QMainWindow>

class CCanvas;
class CEmbeddedHost;
class CMessageLog;
class CNodePalette;
class CQuickAdd;
class CRecentMenu;
class CSettings;
class CTrailBar;
class QDockWidget;
class QLabel;
class QUndoStack;

namespace embeddedhost {
class CJournal;
}

/// The editor's window: the panel at the left, the canvas, and the host's messages in the
/// status bar and in a log.
class CMainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The host has to outlive the window.
    explicit CMainWindow(CEmbeddedHost& host);

    /// Takes the window's state from the settings, and keeps it there from now on. They have to
    /// outlive the window, as has the journal.
    void UseSettings(CSettings& settings);
    /// Offers to recover unsaved changes from the journal for libraries opened from now on.
    void UseJournal(embeddedhost::CJournal& journal);

    /// On success unsaved changes of the library open before are lost. On failure that library
    /// stays open, and the reason is among the host's messages. The user may close the window
    /// meanwhile: reading stops then, no library is open, and true is returned.
    bool OpenLibrary(QString const& folder);
    /// Puts the text into the panel's search field.
    void Search(QString const& text);
    void SetDark(bool isDark);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void CreateCanvas();
    void CreatePanel();
    /// The settings that all palettes of the editor share.
    void SetUpPalette(CNodePalette& palette) const;
    void CreateQuickAdd();
    void CreateLog();
    void CreateStatusBar();
    QDockWidget* AddDock(QString const& title, QWidget* widget, Qt::DockWidgetArea area);
    void ConnectHost();

    // mainwindow_menus.cpp
    void CreateMenus();
    void CreateFileMenu();
    void CreateEditMenu();
    void CreateCreateMenu();
    void CreateViewMenu();
    void CreateHelpMenu();
    QAction* AddAction(QMenu* menu, QString const& text, QKeySequence const& shortcut,
                       void (CMainWindow::*slot)());
    /// For keys that mean something to texts as well: they work while the canvas has the focus.
    QAction* AddCanvasEdit(QMenu* menu, QString const& text, QKeySequence const& shortcut,
                           void (CCanvas::*slot)());
    /// Undo or redo.
    QAction* AddStackAction(QMenu* menu, QString const& text, void (QUndoStack::*slot)(),
                            void (QUndoStack::*textChanged)(QString const&),
                            void (QUndoStack::*canChanged)(bool));
    /// `command` is one of the panel's library-wide commands.
    QAction* AddPanelAction(QMenu* menu, int command);
    QAction* AddCanvasAction(QMenu* menu, QString const& text, QKeySequence const& shortcut,
                             void (CCanvas::*slot)());
    void UpdateActions();
    void FocusSearch();
    void ShowShortcuts();
    void ShowAbout();

    // mainwindow_library.cpp
    void ChooseLibrary();
    void CreateLibrary();
    /// Opens a library for the user: asks about unsaved changes, and shows a message on failure.
    void SwitchLibrary(QString const& folder);
    /// False as for OpenLibrary, and when the user has closed the window.
    bool ReadLibrary(QString const& folder);
    void ShowLibrary();
    /// The compound that is selected in the palette, otherwise the current one; null for none.
    tarno::datamodel::ItemID FindMeantCompound() const;
    void DeleteCompound();
    /// The compound that is selected where the focus is.
    void OpenSelectedCompound();
    void RememberLibrary();
    void RecoverChanges();
    /// The compound that was worked on last in the library.
    void RestoreCompound();
    void RememberCompound();
    /// Asks what to do with unsaved changes; true if the library may be closed then.
    bool MayCloseLibrary();
    /// Does what the user answers; false if changes are still unsaved.
    bool SaveOrDiscard();
    void ResolveConflicts();
    void TakeFromDisk(QStringList const& files);

    void ShowTitle();
    void ShowSummary();
    void ShowView();
    void ShowFiles(QStringList const& paths);
    void ShowMessage(embeddedhost::eSeverity severity, QString const& text);
    void ChooseDark(bool isDark);
    void ShowMarks(bool areShown);
    void SetRankedByName(bool isRanked);
    void ChooseRanking(bool isRanked);

    CEmbeddedHost& m_Host;
    CTheme m_Theme;
    CTrailBar* const m_TrailBar;
    CCanvas* const m_Canvas;
    CNodePalette* const m_Panel;
    CQuickAdd* m_QuickAdd = nullptr;
    CMessageLog* const m_Log;
    QDockWidget* m_PanelDock = nullptr;
    QDockWidget* m_LogDock = nullptr;
    /// In the status bar, beside the messages.
    QLabel* m_ViewLabel = nullptr;
    /// Null if no settings are kept, as for pictures and tests.
    CSettings* m_Settings = nullptr;
    embeddedhost::CJournal* m_Journal = nullptr;

    CRecentMenu* m_RecentMenu = nullptr;
    QAction* m_SaveAction = nullptr;
    QAction* m_DarkAction = nullptr;
    QAction* m_MarksAction = nullptr;
    QAction* m_RankingAction = nullptr;
    QAction* m_CopyAction = nullptr;
    QAction* m_PasteAction = nullptr;
    QAction* m_ContinueAction = nullptr;
    QAction* m_DeleteCompoundAction = nullptr;
    QAction* m_UpAction = nullptr;
    /// Enabled as there is something to act on: a library, a compound on the canvas, one that can
    /// be changed, a selection in it, nodes among that.
    QList<QAction*> m_LibraryActions;
    QList<QAction*> m_CompoundActions;
    QList<QAction*> m_ChangeActions;
    QList<QAction*> m_SelectionActions;
    QList<QAction*> m_NodeActions;
    /// The log came forward by itself once; from then on it is the user's to show and hide.
    bool m_IsLogOffered = false;
    bool m_IsClosedWhileReading = false;
};

#endif
