#include "mainwindow.h"

#include "canvas.h"
#include "librarysummary.h"
#include "loadprogress.h"
#include "messagelog.h"

#include <embeddedhost.h>
#include <nodebrowser.h>

#include <QDesktopServices>
#include <QDockWidget>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QSet>
#include <QStatusBar>
#include <QUrl>

namespace {

// All in pixels.
int const kPanelWidth = 280;
int const kSmallestPanelWidth = 180;
int const kLogHeight = 140;

/// The wait cursor, as long as the object lives.
class WaitCursor
{
public:
    WaitCursor()
    {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~WaitCursor()
    {
        QGuiApplication::restoreOverrideCursor();
    }
    WaitCursor(WaitCursor const&) = delete;
    WaitCursor& operator=(WaitCursor const&) = delete;
};

} // namespace

CMainWindow::CMainWindow(CEmbeddedHost& host)
    : m_Host(host)
    , m_Canvas(new CCanvas(this))
    , m_Panel(new CNodeBrowser(CNodeBrowser::eConfigNodes))
    , m_Log(new CMessageLog(this))
{
    setCentralWidget(m_Canvas);
    CreatePanel();
    CreateLog();
    CreateFileMenu();
    CreateCreateMenu();
    CreateViewMenu();
    CreateHelpMenu();
    SetDark(m_Theme.IsDesktopDark());
    ShowLibrary();
    connect(&m_Host, &CEmbeddedHost::LibraryChanged, this, &CMainWindow::ShowLibrary);
    connect(&m_Host, &CEmbeddedHost::ShowFilesRequested, this, &CMainWindow::ShowFiles);
    connect(&m_Host.GetMessages(), &CMessageChannel::MessagePosted, this,
            &CMainWindow::ShowMessage);
    connect(&m_Host.GetCommandManager().GetUndoStack(), &QUndoStack::indexChanged, this,
            &CMainWindow::ShowSummary);
}

void CMainWindow::CreatePanel()
{
    // The panel paints rows and nothing behind them. On this colour they look like a list, and
    // the search field above them still stands out.
    m_Panel->setBackgroundRole(QPalette::AlternateBase);
    m_Panel->setAutoFillBackground(true);
    m_Panel->setMinimumWidth(kSmallestPanelWidth);
    m_Panel->SetCommandManager(&m_Host.GetCommandManager());
    m_PanelDock = AddDock(tr("Node Browser"), m_Panel, Qt::LeftDockWidgetArea);
    resizeDocks({m_PanelDock}, {kPanelWidth}, Qt::Horizontal);
}

void CMainWindow::CreateLog()
{
    m_LogDock = AddDock(tr("Messages"), m_Log, Qt::BottomDockWidgetArea);
    resizeDocks({m_LogDock}, {kLogHeight}, Qt::Vertical);
    m_LogDock->hide();
    // The panel keeps the whole height.
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
}

QDockWidget* CMainWindow::AddDock(QString const& title, QWidget* widget, Qt::DockWidgetArea area)
{
    QDockWidget* const dock = new QDockWidget(title, this);
    dock->setObjectName(title);
    dock->setWidget(widget);
    addDockWidget(area, dock);
    return dock;
}

void CMainWindow::CreateFileMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&File"));
    QAction* const open = menu->addAction(tr("&Open Library..."));
    open->setShortcut(QKeySequence::Open);
    connect(open, &QAction::triggered, this, &CMainWindow::ChooseLibrary);
    m_Panel->CreateMenuCommand(CNodeBrowser::eMenuSaveGraphLibrary, menu);
    menu->addSeparator();
    QAction* const quit = menu->addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, this, &CMainWindow::close);
}

void CMainWindow::CreateCreateMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Create"));
    for (CNodeBrowser::eMenuCommand const command :
         {CNodeBrowser::eMenuNewSignature, CNodeBrowser::eMenuNewCompound,
          CNodeBrowser::eMenuNewLoopCompound})
        m_Panel->CreateMenuCommand(command, menu);
}

void CMainWindow::CreateViewMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&View"));
    menu->addAction(m_PanelDock->toggleViewAction());
    menu->addAction(m_LogDock->toggleViewAction());
    menu->addSeparator();
    m_DarkAction = menu->addAction(tr("&Dark Palette"));
    m_DarkAction->setCheckable(true);
    connect(m_DarkAction, &QAction::triggered, this, &CMainWindow::SetDark);
}

void CMainWindow::CreateHelpMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Help"));
    connect(menu->addAction(tr("&About")), &QAction::triggered, this, &CMainWindow::ShowAbout);
}

bool CMainWindow::OpenLibrary(QString const& folder)
{
    WaitCursor const waitCursor;
    CLoadProgress progress(*statusBar());
    statusBar()->clearMessage();
    return m_Host.OpenLibrary(folder,
                              [&progress](int done, int total) { progress.Update(done, total); });
}

void CMainWindow::Search(QString const& text)
{
    if (QLineEdit* const field = m_Panel->findChild<QLineEdit*>())
        field->setText(text);
}

void CMainWindow::SetDark(bool isDark)
{
    m_Theme.SetDark(isDark);
    m_DarkAction->setChecked(isDark);
}

void CMainWindow::ChooseLibrary()
{
    QString const folder =
        QFileDialog::getExistingDirectory(this, tr("Open Library"), m_Host.GetLibraryFolder());
    if (folder.isEmpty() || OpenLibrary(folder))
        return;
    auto const& messages = m_Host.GetMessages().GetLog();
    QMessageBox::warning(this, tr("Open Library"),
                         messages.empty() ? folder : messages.back().text);
}

void CMainWindow::ShowLibrary()
{
    QString const name = m_Host.GetLibraryName();
    setWindowTitle(name.isEmpty() ? tr("Node Editor") : tr("%1 - Node Editor").arg(name));
    if (m_Host.GetLibrary().IsValid())
        m_Panel->SetItemLibrary(m_Host.GetLibrary());
    ShowSummary();
}

void CMainWindow::ShowSummary()
{
    m_Canvas->SetSummary(m_Host.GetLibraryName(), SummarizeItems(m_Host.GetLibrary()));
}

void CMainWindow::ShowFiles(QStringList const& paths)
{
    QSet<QString> folders;
    for (QString const& path : paths)
        folders.insert(QFileInfo(path).absolutePath());
    for (QString const& folder : folders)
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
    // Also for where there is no file manager.
    m_Host.GetMessages().Post(eSeverity::kInformation, paths.join(QStringLiteral(", ")));
}

void CMainWindow::ShowMessage(eSeverity severity, QString const& text)
{
    statusBar()->showMessage(text);
    m_Log->Append(severity, text);
    if (severity == eSeverity::kInformation || m_IsLogOffered)
        return;
    m_IsLogOffered = true;
    m_LogDock->show();
}

void CMainWindow::ShowAbout()
{
    QMessageBox::about(this, tr("About Node Editor"),
                       tr("<h3>Node Editor %1</h3><p>A small graph editor around the node "
                          "browser: the panel lists, searches and manages the items of a library "
                          "folder.</p>")
                           .arg(QCoreApplication::applicationVersion()));
}
