#include "mainwindow.h"

#include "canvas.h"
#include "librarysummary.h"
#include "messagelog.h"
#include "quickadd.h"
#include "settings.h"
#include "shorttext.h"
#include "trailbar.h"
#include "windowaccessible.h"

#include <embeddedhost/embeddedhost.h>
#include <nodebrowser/textencoding.h>
#include <palette/nodepalette.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QSet>
#include <QStatusBar>
#include <QUrl>
#include <QVBoxLayout>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

// All in pixels.
int const kPanelWidth = 280;
int const kSmallestPanelWidth = 180;
int const kLogHeight = 140;

/// Time enough to read a message; the log keeps it.
int const kMessageMilliseconds = 15000;

/// The node browser as a dock. After a right click it gives the focus back once its menu and the
/// chosen command are done.
class CDockedPalette final : public CNodePalette
{
public:
    CDockedPalette()
        : CNodePalette(eConfigNodes)
    {
        // A press moves the focus here before the menu opens, so the widget that had it is noted.
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* now) {
            if (now && isAncestorOf(now) && !isAncestorOf(before))
                m_FocusBefore = IsRightPressed() ? before : nullptr;
        });
    }
    ~CDockedPalette() override
    {
        // Deleting the children moves the focus when the members of this class are gone already.
        disconnect(qApp, nullptr, this, nullptr);
    }

protected:
    void PopContexMenu(QPoint const& globalPos, unsigned long index) override
    {
        QPointer<QWidget> const before = IsRightPressed() ? m_FocusBefore : nullptr;
        m_FocusBefore = nullptr;
        CNodePalette::PopContexMenu(globalPos, index);
        // The palette may be gone.
        if (before)
            before->setFocus(Qt::OtherFocusReason);
    }

private:
    static bool IsRightPressed()
    {
        return QApplication::mouseButtons() & Qt::RightButton;
    }

    QPointer<QWidget> m_FocusBefore;
};

QStringList DescribePorts(CEmbeddedHost& host, std::vector<GraphPort> const& ports)
{
    QStringList texts;
    for (GraphPort const& port : ports) {
        QString const name = QString::fromStdString(port.name);
        QString const type = nodebrowser::ToQString(
            host.GetLibrary().GetItemName(host.FindItem(port.type), true, nullptr).c_str());
        texts << (type.isEmpty() ? name : QStringLiteral("%1: %2").arg(name, type));
    }
    return texts;
}

CNodePalette::SItemDetails DescribeItem(CEmbeddedHost& host, ItemID const& id)
{
    GraphBody const body = host.GetBody(id);
    CNodePalette::SItemDetails details;
    details.category = QString::fromStdString(host.GetCategory(id));
    details.inputs = DescribePorts(host, body.inputs);
    details.outputs = DescribePorts(host, body.outputs);
    return details;
}

} // namespace

CMainWindow::CMainWindow(CEmbeddedHost& host)
    : m_Host(host)
    , m_TrailBar(new CTrailBar(host, this))
    , m_Canvas(new CCanvas(host, this))
    , m_Panel(new CDockedPalette)
    , m_Log(new CMessageLog(this))
{
    InstallWindowAccessible();
    CreateCanvas();
    CreatePanel();
    CreateLog();
    CreateStatusBar();
    CreateQuickAdd();
    CreateMenus();
    SetRankedByName(true);
    SetDark(m_Theme.IsDesktopDark());
    ShowLibrary();
    ConnectHost();
    m_Panel->setFocus();
}

void CMainWindow::CreateCanvas()
{
    QWidget* const middle = new QWidget(this);
    QVBoxLayout* const layout = new QVBoxLayout(middle);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_TrailBar);
    layout->addWidget(m_Canvas);
    setCentralWidget(middle);
}

void CMainWindow::CreatePanel()
{
    m_Panel->setMinimumWidth(kSmallestPanelWidth);
    SetUpPalette(*m_Panel);
    connect(m_Panel, &CNodePalette::Dismissed, m_Canvas, qOverload<>(&QWidget::setFocus));
    connect(m_Panel, &CNodePalette::ItemActivated, m_Canvas,
            [this](ItemID const& id, CNodePalette::eActivation how) {
                // A compound that was double-clicked is open already.
                if (how == CNodePalette::eByKey || id.GetType() != TarnoType::gCompound)
                    m_Canvas->AddItem(id);
            });
    m_PanelDock = AddDock(tr("Node Browser"), m_Panel, Qt::LeftDockWidgetArea);
    resizeDocks({m_PanelDock}, {kPanelWidth}, Qt::Horizontal);
}

void CMainWindow::CreateQuickAdd()
{
    m_QuickAdd = new CQuickAdd(this);
    SetUpPalette(m_QuickAdd->GetPalette());
    connect(m_Canvas, &CCanvas::NodeWanted, m_QuickAdd, &CQuickAdd::Open);
    connect(m_Canvas, &CCanvas::NodeAdded, m_QuickAdd, &CQuickAdd::AddRecent);
    connect(m_QuickAdd, &CQuickAdd::ItemChosen, m_Canvas, &CCanvas::AddWantedNode);
    connect(m_QuickAdd, &CQuickAdd::Closed, m_Canvas, [this] {
        m_Canvas->ForgetWantedNode();
        m_Canvas->setFocus(Qt::PopupFocusReason);
    });
}

void CMainWindow::SetUpPalette(CNodePalette& palette) const
{
    // The panel paints no background behind its rows. On this colour they look like a list, and
    // the search field above them still stands out.
    palette.setBackgroundRole(QPalette::AlternateBase);
    palette.SetCommandManager(&m_Host.GetCommandManager());
    palette.SetDetailsSource([this](ItemID const& id) { return DescribeItem(m_Host, id); });
}

void CMainWindow::CreateLog()
{
    connect(m_Log, &CMessageLog::Shown, this, [this](QString const& text) {
        statusBar()->showMessage(ShortenText(text), kMessageMilliseconds);
    });
    m_LogDock = AddDock(tr("Messages"), m_Log, Qt::BottomDockWidgetArea);
    resizeDocks({m_LogDock}, {kLogHeight}, Qt::Vertical);
    m_LogDock->hide();
    // The panel keeps the whole height.
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
}

void CMainWindow::CreateStatusBar()
{
    connect(statusBar(), &QStatusBar::messageChanged, statusBar(), &QWidget::setAccessibleName);
    m_ViewLabel = new QLabel(this);
    m_ViewLabel->setForegroundRole(QPalette::PlaceholderText);
    statusBar()->addPermanentWidget(m_ViewLabel);
    connect(m_Canvas, &CCanvas::ZoomChanged, this, &CMainWindow::ShowView);
}

QDockWidget* CMainWindow::AddDock(QString const& title, QWidget* widget, Qt::DockWidgetArea area)
{
    QDockWidget* const dock = new QDockWidget(title, this);
    // QMainWindow::saveState identifies docks by their object names.
    dock->setObjectName(title);
    dock->setWidget(widget);
    addDockWidget(area, dock);
    return dock;
}

void CMainWindow::ConnectHost()
{
    connect(&m_Host, &CEmbeddedHost::LibraryChanged, this, &CMainWindow::ShowLibrary);
    connect(&m_Host, &CEmbeddedHost::ContentChanged, this, &CMainWindow::ShowSummary);
    connect(&m_Host, &CEmbeddedHost::ContentChanged, this, &CMainWindow::ShowTitle);
    // A save sends no item notification, but the marks of changed items go.
    connect(&m_Host, &CEmbeddedHost::ContentChanged, m_Panel, qOverload<>(&QWidget::update));
    connect(&m_Host, &CEmbeddedHost::CompoundTargetChanged, this, &CMainWindow::ShowTitle);
    connect(&m_Host, &CEmbeddedHost::CompoundTargetChanged, this, &CMainWindow::RememberCompound);
    connect(&m_Host, &CEmbeddedHost::CompoundTargetChanged, this, &CMainWindow::UpdateActions);
    connect(&m_Host, &CEmbeddedHost::ShowFilesRequested, this, &CMainWindow::ShowFiles);
    connect(&m_Host.GetMessages(), &CMessageChannel::MessagePosted, this,
            &CMainWindow::ShowMessage);
    connect(&m_Host, &CEmbeddedHost::ContentChanged, this, &CMainWindow::UpdateActions);
    connect(&m_Host.GetCommandManager().GetUndoStack(), &QUndoStack::indexChanged, this,
            &CMainWindow::UpdateActions);
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &CMainWindow::UpdateActions);
    connect(m_Canvas, &CCanvas::SelectionChanged, this, &CMainWindow::UpdateActions);
    connect(m_Panel, &CNodePalette::SelectionChanged, this, &CMainWindow::UpdateActions);
}

void CMainWindow::UseSettings(CSettings& settings)
{
    m_Settings = &settings;
    settings.RestoreWindow(*this);
    // The window may have been on a larger screen when its geometry was kept.
    resize(size().boundedTo(screen()->availableSize()));
    SetDark(settings.IsDark().value_or(m_Theme.IsDesktopDark()));
    SetRankedByName(settings.IsRankedByName());
    m_MarksAction->setChecked(settings.AreMarksShown());
    m_Host.SetRevisionControlEnabled(settings.AreMarksShown());
    RememberLibrary();
}

void CMainWindow::UseJournal(CJournal& journal)
{
    m_Journal = &journal;
}

void CMainWindow::Search(QString const& text)
{
    if (QLineEdit* const field = m_Panel->findChild<QLineEdit*>())
        field->setText(text);
}

void CMainWindow::FocusSearch()
{
    m_PanelDock->show();
    m_PanelDock->raise();
    if (QLineEdit* const field = m_Panel->findChild<QLineEdit*>()) {
        field->setFocus(Qt::ShortcutFocusReason);
        field->selectAll();
    }
}

void CMainWindow::SetDark(bool isDark)
{
    m_Theme.SetDark(isDark);
    m_DarkAction->setChecked(isDark);
}

void CMainWindow::ChooseDark(bool isDark)
{
    SetDark(isDark);
    if (m_Settings)
        m_Settings->SetDark(isDark);
}

void CMainWindow::ShowMarks(bool areShown)
{
    m_Host.SetRevisionControlEnabled(areShown);
    if (m_Settings)
        m_Settings->SetMarksShown(areShown);
}

void CMainWindow::SetRankedByName(bool isRanked)
{
    m_RankingAction->setChecked(isRanked);
    for (CNodePalette* const palette : {m_Panel, &m_QuickAdd->GetPalette()})
        palette->SetRanking(isRanked ? CNodePalette::eNameRanking : CNodePalette::ePanelRanking);
}

void CMainWindow::ChooseRanking(bool isRanked)
{
    SetRankedByName(isRanked);
    if (m_Settings)
        m_Settings->SetRankedByName(isRanked);
}

void CMainWindow::closeEvent(QCloseEvent* event)
{
    if (!MayCloseLibrary()) {
        event->ignore();
        return;
    }
    if (m_Settings)
        m_Settings->KeepWindow(*this);
    event->accept();
    // This event was handled within OpenLibrary, which has to stop reading and return.
    if (m_Host.IsOpening()) {
        m_IsClosedWhileReading = true;
        m_Host.CancelOpening();
    }
}

void CMainWindow::ShowTitle()
{
    QString const library = m_Host.GetLibraryName();
    ItemID const compound = m_Host.GetCompoundTarget().GetItemID();
    QString const name =
        nodebrowser::ToQString(m_Host.GetLibrary().GetItemName(compound, true, nullptr).c_str());
    QString title = library.isEmpty() ? tr("Node Editor") : library + QStringLiteral("[*]");
    if (!name.isEmpty())
        title.prepend(tr("%1 - ").arg(name));
    setWindowTitle(title);
    setWindowModified(m_Host.IsModified());
}

void CMainWindow::ShowSummary()
{
    m_Canvas->SetSummary(m_Host.GetLibraryName(), SummarizeItems(m_Host.GetLibrary()));
}

void CMainWindow::ShowView()
{
    m_ViewLabel->setText(m_Canvas->DescribeView());
}

void CMainWindow::ShowFiles(QStringList const& paths)
{
    QSet<QString> folders;
    for (QString const& path : paths)
        folders.insert(QFileInfo(path).absolutePath());
    for (QString const& folder : folders)
        QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
    // The paths are logged as well, for systems without a file manager.
    m_Host.GetMessages().Post(eSeverity::kInformation, paths.join(QStringLiteral(", ")));
}

void CMainWindow::ShowMessage(eSeverity severity, QString const& text)
{
    m_Log->Append(severity, text);
    if (severity == eSeverity::kInformation || m_IsLogOffered)
        return;
    m_IsLogOffered = true;
    m_LogDock->show();
}

#include "moc_mainwindow.cpp"
