#include "mainwindow.h"

#include "canvas.h"
#include "loadprogress.h"
#include "questions.h"
#include "quickadd.h"
#include "recentmenu.h"
#include "settings.h"
#include "shorttext.h"

#include <embeddedhost/embeddedhost.h>
#include <embeddedhost/journal.h>
#include <nodebrowser/textencoding.h>
#include <palette/nodepalette.h>

#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QStatusBar>

#include <stdexcept>

using namespace tarno::datamodel;

namespace {

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

/// Says on the canvas that a library is being read, as long as the object lives.
class ReadingHint
{
public:
    ReadingHint(CCanvas& canvas, QString const& folder)
        : m_Canvas(canvas)
    {
        m_Canvas.SetReading(folder);
    }
    ~ReadingHint()
    {
        m_Canvas.SetReading(QString());
    }
    ReadingHint(ReadingHint const&) = delete;
    ReadingHint& operator=(ReadingHint const&) = delete;

private:
    CCanvas& m_Canvas;
};

QString GetLastMessage(CEmbeddedHost& host)
{
    auto const& messages = host.GetMessages().GetLog();
    return messages.empty() ? QString() : ShortenText(messages.back().text);
}

} // namespace

bool CMainWindow::OpenLibrary(QString const& folder)
{
    // Set by closeEvent, which may run while the library is read.
    m_IsClosedWhileReading = false;
    bool const isOpen = ReadLibrary(folder);
    if (!isOpen || m_IsClosedWhileReading)
        return m_IsClosedWhileReading;
    RememberLibrary();
    RestoreCompound();
    RecoverChanges();
    return true;
}

bool CMainWindow::ReadLibrary(QString const& folder)
{
    WaitCursor const waitCursor;
    ReadingHint const hint(*m_Canvas, folder);
    CLoadProgress progress(*statusBar());
    statusBar()->clearMessage();
    return m_Host.OpenLibrary(folder,
                              [&progress](int done, int total) { progress.Update(done, total); });
}

void CMainWindow::ChooseLibrary()
{
    QString const folder =
        QFileDialog::getExistingDirectory(this, tr("Open Library"), m_Host.GetLibraryFolder());
    if (!folder.isEmpty())
        SwitchLibrary(folder);
}

void CMainWindow::CreateLibrary()
{
    QString const folder =
        QFileDialog::getExistingDirectory(this, tr("New Library: Choose or Make an Empty Folder"),
                                          QFileInfo(m_Host.GetLibraryFolder()).path());
    if (folder.isEmpty())
        return;
    QString fault;
    if (!CEmbeddedHost::MakeLibrary(folder, &fault)) {
        QMessageBox::warning(this, tr("New Library"),
                             tr("A library needs an empty folder. %1.").arg(fault));
        return;
    }
    SwitchLibrary(folder);
}

void CMainWindow::SwitchLibrary(QString const& folder)
{
    if (!CEmbeddedHost::IsLibrary(folder)) {
        QMessageBox::warning(
            this, tr("Open Library"),
            tr("There is no library in %1: a library is a folder with a file "
               "%2.")
                .arg(QDir::toNativeSeparators(folder), CEmbeddedHost::GetManifestName()));
        if (m_Settings)
            m_Settings->RemoveRecentLibrary(folder);
        RememberLibrary();
        return;
    }
    // Before anything is asked about the one that is open.
    bool const canOpen = m_Host.CanOpenLibrary(folder);
    if (canOpen && (!MayCloseLibrary() || OpenLibrary(folder)))
        return;
    QMessageBox::warning(this, tr("Open Library"), GetLastMessage(m_Host));
}

void CMainWindow::ShowLibrary()
{
    if (m_Host.GetLibrary().IsValid()) {
        m_Panel->SetItemLibrary(m_Host.GetLibrary());
        m_QuickAdd->SetLibrary(m_Host.GetLibrary());
    }
    ShowSummary();
    ShowTitle();
    UpdateActions();
}

ItemID CMainWindow::FindMeantCompound() const
{
    ItemID const selected = m_Panel->GetSelection();
    if (selected.GetType() == TarnoType::gCompound)
        return selected;
    CompoundAccessor const current = m_Host.GetCompoundTarget();
    return current.Revalidate() ? current.GetItemID() : ItemID();
}

void CMainWindow::DeleteCompound()
{
    ItemID const id = FindMeantCompound();
    if (id.IsNull())
        return;
    auto const nameOf = [this](ItemID const& item) {
        return nodebrowser::ToQString(m_Host.GetLibrary().GetItemName(item, true, nullptr).c_str());
    };
    QStringList users;
    for (ItemID const& user : m_Host.FindUsers(id))
        users << nameOf(user);
    // The question runs an event loop, in which the item or this window may be deleted. DeleteItem
    // ignores an item that is gone.
    QPointer<CMainWindow> const guard(this);
    if (AskToDelete(this, nameOf(id), users) && guard)
        m_Host.DeleteItem(id);
}

void CMainWindow::OpenSelectedCompound()
{
    ItemID const id =
        m_Canvas->hasFocus() ? m_Canvas->FindSelectedCompound() : m_Panel->GetSelection();
    CompoundAccessor compound;
    if (id.GetType() == TarnoType::gCompound)
        compound.SetFrom(m_Host.GetLibrary().GetModel(id, nullptr));
    if (compound.IsValid())
        m_Host.SetCompoundTarget(compound);
    else
        m_Host.GetMessages().Post(
            embeddedhost::eSeverity::kInformation,
            tr("Select a compound first, in the node browser or in the graph."));
}

void CMainWindow::RememberLibrary()
{
    if (!m_Settings)
        return;
    if (!m_Host.GetLibraryFolder().isEmpty())
        m_Settings->AddRecentLibrary(m_Host.GetLibraryFolder());
    m_RecentMenu->SetFolders(m_Settings->GetRecentLibraries());
}

void CMainWindow::RestoreCompound()
{
    if (!m_Settings)
        return;
    ItemID const id = m_Host.FindItem(m_Settings->GetCompound(m_Host.GetLibraryFolder()));
    if (id.IsNull())
        return;
    CompoundAccessor compound;
    compound.SetFrom(m_Host.GetLibrary().GetModel(id, nullptr));
    if (compound.IsValid())
        m_Host.SetCompoundTarget(compound);
}

void CMainWindow::RememberCompound()
{
    ItemID const id = m_Host.GetCompoundTarget().GetItemID();
    if (m_Settings && !id.IsNull())
        m_Settings->SetCompound(m_Host.GetLibraryFolder(), ItemIDUnlock::GetItemIDUID(id));
}

void CMainWindow::RecoverChanges()
{
    if (!m_Journal)
        return;
    for (embeddedhost::CJournal::Leftover const& leftover : m_Journal->FindLeftovers()) {
        switch (AskToRecover(this, leftover.written, leftover.objectCount)) {
        case eRecoverAnswer::kRecover:
            m_Journal->Recover(leftover);
            break;
        case eRecoverAnswer::kDiscard:
            m_Journal->Discard(leftover);
            break;
        case eRecoverAnswer::kLater:
            break;
        }
    }
}

bool CMainWindow::MayCloseLibrary()
{
    if (m_Host.IsModified() && !SaveOrDiscard())
        return false;
    // There may be no event loop any more that the journal could learn of a save in.
    if (m_Journal)
        m_Journal->Drop();
    return true;
}

bool CMainWindow::SaveOrDiscard()
{
    switch (AskToSave(this, m_Host.GetLibraryName())) {
    case eSaveAnswer::kSave:
        // By the menu's action, so that conflicts are resolved as after any other save.
        m_SaveAction->trigger();
        return !m_Host.IsModified();
    case eSaveAnswer::kDiscard:
        return true;
    case eSaveAnswer::kCancel:
        break;
    }
    return false;
}

/// Called after each save.
void CMainWindow::ResolveConflicts()
{
    QStringList const files = m_Host.FindConflicts();
    if (files.isEmpty())
        return;
    QStringList shown;
    for (QString const& file : files)
        shown << QDir(m_Host.GetLibraryFolder()).relativeFilePath(file);
    eConflictAnswer const answer = AskAboutConflicts(this, shown);
    if (answer == eConflictAnswer::kCancel)
        return;
    if (answer == eConflictAnswer::kTakeTheirs) {
        TakeFromDisk(files);
        return;
    }
    for (QString const& file : files)
        m_Host.OverwriteFileOnDisk(file);
    m_SaveAction->trigger();
}

void CMainWindow::TakeFromDisk(QStringList const& files)
{
    QStringList faults;
    for (QString const& file : files) {
        if (!m_Host.TakeFileFromDisk(file))
            faults << GetLastMessage(m_Host);
    }
    if (!faults.isEmpty())
        QMessageBox::warning(this, tr("Take from Disk"), ListSome(faults));
}
