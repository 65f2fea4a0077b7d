#include "mainwindow.h"

#include "canvas.h"
#include "recentmenu.h"
#include "shortcutlist.h"
#include "shorttext.h"
#include "trailbar.h"

#include <embeddedhost/embeddedhost.h>
#include <palette/nodepalette.h>

#include <QCoreApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QUndoStack>

void CMainWindow::CreateMenus()
{
    CreateFileMenu();
    CreateEditMenu();
    CreateCreateMenu();
    CreateViewMenu();
    CreateHelpMenu();
}

QAction* CMainWindow::AddAction(QMenu* menu, QString const& text, QKeySequence const& shortcut,
                                void (CMainWindow::*slot)())
{
    QAction* const action = menu->addAction(text);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

QAction* CMainWindow::AddCanvasAction(QMenu* menu, QString const& text,
                                      QKeySequence const& shortcut, void (CCanvas::*slot)())
{
    QAction* const action = menu->addAction(text);
    action->setShortcut(shortcut);
    connect(action, &QAction::triggered, m_Canvas, slot);
    return action;
}

QAction* CMainWindow::AddCanvasEdit(QMenu* menu, QString const& text, QKeySequence const& shortcut,
                                    void (CCanvas::*slot)())
{
    QAction* const action = AddCanvasAction(menu, text, shortcut, slot);
    // Texts have the same keys.
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    m_Canvas->addAction(action);
    return action;
}

QAction* CMainWindow::AddPanelAction(QMenu* menu, int command)
{
    m_Panel->CreateMenuCommand(CNodeBrowser::eMenuCommand(command), menu);
    QAction* const action = menu->actions().constLast();
    m_LibraryActions << action;
    return action;
}

void CMainWindow::CreateFileMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&File"));
    AddAction(menu, tr("&Open Library..."), QKeySequence::Open, &CMainWindow::ChooseLibrary);
    AddAction(menu, tr("&New Library..."), QKeySequence(), &CMainWindow::CreateLibrary);
    m_RecentMenu = new CRecentMenu(menu);
    menu->addMenu(m_RecentMenu);
    // From the event loop: opening a library fills the menu anew.
    connect(m_RecentMenu, &CRecentMenu::FolderChosen, this, &CMainWindow::SwitchLibrary,
            Qt::QueuedConnection);
    menu->addSeparator();
    m_SaveAction = AddPanelAction(menu, CNodeBrowser::eMenuSaveGraphLibrary);
    m_SaveAction->setShortcut(QKeySequence::Save);
    connect(m_SaveAction, &QAction::triggered, this, &CMainWindow::ResolveConflicts);
    menu->addSeparator();
    QAction* const quit = menu->addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(quit, &QAction::triggered, this, &CMainWindow::close);
}

QAction* CMainWindow::AddStackAction(QMenu* menu, QString const& text, void (QUndoStack::*slot)(),
                                     void (QUndoStack::*textChanged)(QString const&),
                                     void (QUndoStack::*canChanged)(bool))
{
    QUndoStack& stack = m_Host.GetCommandManager().GetUndoStack();
    QAction* const action = menu->addAction(text, &stack, slot);
    // For the list of shortcuts: without the mnemonic, and without the name of the command.
    action->setIconText(text.mid(1));
    action->setEnabled(false);
    // The stack's own actions would take an "&" in a name for a mnemonic.
    connect(&stack, textChanged, action, [action, text](QString const& command) {
        action->setText((text + QLatin1Char(' ') + EscapeMnemonics(command)).trimmed());
    });
    connect(&stack, canChanged, action, &QAction::setEnabled);
    return action;
}

void CMainWindow::CreateEditMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Edit"));
    QAction* const undo = AddStackAction(menu, tr("&Undo"), &QUndoStack::undo,
                                         &QUndoStack::undoTextChanged, &QUndoStack::canUndoChanged);
    undo->setShortcut(QKeySequence::Undo);
    QAction* const redo = AddStackAction(menu, tr("&Redo"), &QUndoStack::redo,
                                         &QUndoStack::redoTextChanged, &QUndoStack::canRedoChanged);
    redo->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)});
    menu->addSeparator();
    m_ChangeActions << AddCanvasEdit(menu, tr("Add &Node..."), QKeySequence(Qt::Key_Tab),
                                     &CCanvas::WantNode);
    m_ContinueAction =
        AddCanvasEdit(menu, tr("Add C&onnected Node..."), QKeySequence(Qt::CTRL | Qt::Key_Return),
                      &CCanvas::WantConnectedNode);
    menu->addSeparator();
    m_NodeActions << AddCanvasEdit(menu, tr("Cu&t"), QKeySequence::Cut, &CCanvas::Cut);
    m_CopyAction = AddCanvasEdit(menu, tr("&Copy"), QKeySequence::Copy, &CCanvas::Copy);
    m_PasteAction = AddCanvasEdit(menu, tr("&Paste"), QKeySequence::Paste, &CCanvas::Paste);
    m_NodeActions << AddCanvasEdit(menu, tr("Dup&licate"), QKeySequence(Qt::CTRL | Qt::Key_D),
                                   &CCanvas::Duplicate);
    m_SelectionActions << AddCanvasEdit(menu, tr("&Delete"), QKeySequence::Delete,
                                        &CCanvas::DeleteSelection);
    menu->addSeparator();
    m_CompoundActions << AddCanvasEdit(menu, tr("Select &All"), QKeySequence::SelectAll,
                                       &CCanvas::SelectAll);
    m_DeleteCompoundAction =
        AddAction(menu, tr("Delete Co&mpound..."), QKeySequence(), &CMainWindow::DeleteCompound);
    menu->addSeparator();
    AddAction(menu, tr("&Find in Node Browser"), QKeySequence::Find, &CMainWindow::FocusSearch);
}

void CMainWindow::CreateCreateMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Create"));
    for (int const command : {CNodeBrowser::eMenuNewSignature, CNodeBrowser::eMenuNewCompound,
                              CNodeBrowser::eMenuNewLoopCompound})
        AddPanelAction(menu, command);
    menu->addSeparator();
    m_ChangeActions << AddCanvasAction(menu, tr("&Input..."), QKeySequence(), &CCanvas::AddInput)
                    << AddCanvasAction(menu, tr("&Output..."), QKeySequence(), &CCanvas::AddOutput);
}

void CMainWindow::CreateViewMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&View"));
    menu->addAction(m_PanelDock->toggleViewAction());
    menu->addAction(m_LogDock->toggleViewAction());
    menu->addSeparator();
    m_MarksAction = menu->addAction(tr("&Source-Control Marks"));
    m_MarksAction->setCheckable(true);
    m_MarksAction->setChecked(m_Host.IsRevisionControlEnabled());
    connect(m_MarksAction, &QAction::triggered, this, &CMainWindow::ShowMarks);
    m_RankingAction = menu->addAction(tr("Best &Names First"));
    m_RankingAction->setCheckable(true);
    connect(m_RankingAction, &QAction::triggered, this, &CMainWindow::ChooseRanking);
    m_DarkAction = menu->addAction(tr("&Dark Palette"));
    m_DarkAction->setCheckable(true);
    connect(m_DarkAction, &QAction::triggered, this, &CMainWindow::ChooseDark);
    menu->addSeparator();
    m_UpAction = menu->addAction(tr("Compound &Above"));
    m_UpAction->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Up));
    connect(m_UpAction, &QAction::triggered, m_TrailBar, &CTrailBar::GoUp);
    m_LibraryActions << AddAction(menu, tr("Open &Compound"), QKeySequence(Qt::ALT | Qt::Key_Down),
                                  &CMainWindow::OpenSelectedCompound);
    menu->addSeparator();
    QAction* const zoomIn =
        AddCanvasAction(menu, tr("Zoom &In"), QKeySequence::ZoomIn, &CCanvas::ZoomIn);
    // The same key without Shift on many keyboards.
    zoomIn->setShortcuts(
        {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
    m_CompoundActions << zoomIn
                      << AddCanvasAction(menu, tr("Zoom &Out"), QKeySequence::ZoomOut,
                                         &CCanvas::ZoomOut)
                      << AddCanvasAction(menu, tr("Zoom to &100%"),
                                         QKeySequence(Qt::CTRL | Qt::Key_0), &CCanvas::ResetZoom)
                      << AddCanvasAction(menu, tr("Zoom to &Fit"),
                                         QKeySequence(Qt::CTRL | Qt::Key_9), &CCanvas::Fit);
}

void CMainWindow::CreateHelpMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Help"));
    AddAction(menu, tr("&Shortcuts"), QKeySequence::HelpContents, &CMainWindow::ShowShortcuts);
    AddAction(menu, tr("&About"), QKeySequence(), &CMainWindow::ShowAbout);
}

void CMainWindow::UpdateActions()
{
    auto const enable = [](QList<QAction*> const& actions, bool isEnabled) {
        for (QAction* const action : actions)
            action->setEnabled(isEnabled);
    };
    bool const hasCompound = m_Host.GetCompoundTarget().Revalidate();
    enable(m_LibraryActions, m_Host.GetLibrary().IsValid());
    enable(m_CompoundActions, hasCompound);
    bool const canChange = hasCompound && m_Canvas->CanChange();
    enable(m_ChangeActions, canChange);
    enable(m_SelectionActions, canChange && m_Canvas->HasSelection());
    enable(m_NodeActions, canChange && m_Canvas->CanCopy());
    m_CopyAction->setEnabled(hasCompound && m_Canvas->CanCopy());
    m_ContinueAction->setEnabled(m_Canvas->CanContinue());
    m_PasteAction->setEnabled(m_Canvas->CanPaste());
    m_DeleteCompoundAction->setEnabled(!FindMeantCompound().IsNull());
    m_UpAction->setEnabled(m_TrailBar->CanGoUp());
    ShowView();
}

void CMainWindow::ShowShortcuts()
{
    CShortcutList(*menuBar(), this).exec();
}

void CMainWindow::ShowAbout()
{
    QMessageBox::about(this, tr("About Node Editor"),
                       tr("<h3>Node Editor %1</h3><p>A small graph editor around the node "
                          "browser: the panel lists, searches and manages the items of a library "
                          "folder.</p>")
                           .arg(QCoreApplication::applicationVersion()));
}
