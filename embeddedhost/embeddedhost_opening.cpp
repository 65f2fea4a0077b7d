// Opening and closing a library.

#include "embeddedhost_p.h"
#include "storage/libraryreader.h"
#include "storage/memorylibrary.h"
#include "storage/stagingfolders.h"

#include <QPointer>
#include <QScopedValueRollback>
#include <QScopeGuard>

#include <utility>

using namespace embeddedhost;
using namespace tarno::datamodel;

void CEmbeddedHost::Private::Release(CLibrary& closed)
{
    QScopedValueRollback<bool> const closing(isClosing, true);
    // First everything that refers to the library is detached, so that no listener, timer or worker
    // reaches it when it is closed.
    commandManager.Clear();
    contentTimer.stop();
    observer.Detach(closed.GetNotifier());
    sourceControl.Close();
    revisionControlHelper.SetDatabase(nullptr);
    compoundTarget = CompoundAccessor();
    watcher.reset();
    closed.Close();
    library.reset();
}

bool CEmbeddedHost::CanOpenLibrary(QString const& folder)
{
    return CheckLibrary(folder, m_Private->messages);
}

bool CEmbeddedHost::OpenLibrary(QString const& folder, Progress const& progress)
{
    QPointer<CEmbeddedHost> const self(this);
    std::shared_ptr<CMessageChannel> const messages = m_Private->sharedMessages;
    if (!CanOpenAnother() || !CheckLibrary(folder, *messages))
        return false;
    bool const isRead = Replace([&] {
        return ReadLibrary(folder, *messages, [&](int done, int total) {
            if (progress)
                progress(done, total);
            // The call may run an event loop, in which the user cancels or the host is deleted.
            return self && !m_Private->isOpeningCancelled;
        });
    });
    if (!isRead)
        return false;
    std::shared_ptr<CLibrary> const library = m_Private->library;
    m_Private->watcher = std::make_unique<CLibraryWatcher>(library);
    m_Private->sourceControl.Open(*library);
    connect(m_Private->watcher.get(), &CLibraryWatcher::FilesTouched, &m_Private->sourceControl,
            &CSourceControlService::RefreshAll);
    connect(&m_Private->commandManager.GetUndoStack(), &QUndoStack::indexChanged,
            m_Private->watcher.get(), &CLibraryWatcher::CheckConflicts);
    if (Announce())
        TidyUpStagingFolders(*library);
    // Message listeners, too, may close the library or delete the host.
    return self && m_Private->library == library;
}

bool CEmbeddedHost::OpenItems(QString const& name, std::vector<MemoryItem> const& items,
                              SaveItems const& save)
{
    if (!CanOpenAnother())
        return false;
    QString fault;
    // Before the other library is closed: a listener to that may change the caller's items.
    auto objects = MakeMemoryObjects(items, &fault);
    MemoryStore const store = {save};
    if (!objects) {
        m_Private->messages.Post(eSeverity::kError,
                                 QStringLiteral("\"%1\" cannot be opened: %2.").arg(name, fault));
        return false;
    }
    bool const isMade = Replace(
        [&] { return MakeMemoryLibrary(name, std::move(*objects), store, m_Private->messages); });
    return isMade && Announce();
}

bool CEmbeddedHost::CanOpenAnother()
{
    QString obstacle;
    if (GetInstance() != this)
        obstacle = QStringLiteral("Another embedded host has the process; this one opens nothing.");
    else if (m_Private->isOpening)
        obstacle = QStringLiteral("Another library is being opened; try again.");
    else if (m_Private->isClosing)
        obstacle = QStringLiteral("The library before is being closed; try again.");
    if (!obstacle.isEmpty())
        m_Private->messages.Post(eSeverity::kError, obstacle);
    return obstacle.isEmpty();
}

bool CEmbeddedHost::Replace(std::function<std::shared_ptr<CLibrary>()> const& read)
{
    QPointer<CEmbeddedHost> const self(this);
    auto const opening = qScopeGuard([&] {
        if (self)
            m_Private->isOpening = false;
    });
    m_Private->isOpening = true;
    m_Private->isOpeningCancelled = false;
    // Before the other one is read: its items may have the same uids.
    CloseLibrary();
    if (!self)
        return false;
    std::shared_ptr<CLibrary> const library = read();
    if (!self)
        return false;
    m_Private->library = library;
    return library != nullptr;
}

bool CEmbeddedHost::Announce()
{
    QPointer<CEmbeddedHost> const self(this);
    // Kept: a listener may close the library, or delete this.
    std::shared_ptr<Private> const kept = m_Private;
    std::shared_ptr<CLibrary> const library = kept->library;
    kept->revisionControlHelper.SetDatabase(&library->GetDatabase());
    kept->observer.Attach(library->GetNotifier());
    kept->databaseProxy.SetItemLibrary(GetLibrary());
    if (self)
        Q_EMIT LibraryChanged();
    return self && kept->library == library;
}

bool CEmbeddedHost::IsOpening() const
{
    return m_Private->isOpening || m_Private->isClosing;
}

void CEmbeddedHost::CancelOpening()
{
    m_Private->isOpeningCancelled = true;
}

void CEmbeddedHost::CloseLibrary()
{
    // Kept: listeners of the undo stack and of source control may close it, too, or delete this.
    QPointer<CEmbeddedHost> const self(this);
    std::shared_ptr<Private> const kept = m_Private;
    std::shared_ptr<CLibrary> const library = kept->library;
    if (!library)
        return;
    kept->Release(*library);
    if (self)
        kept->databaseProxy.SetItemLibrary(ItemLibraryAccessor());
    if (self)
        Q_EMIT LibraryChanged();
}
