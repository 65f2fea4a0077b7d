#include "embeddedhost.h"

#include "base/text8.h"
#include "framework/databaseproxy.h"
#include "framework/guardedcall.h"
#include "model/graphjson.h"
#include "model/itemdeletion.h"
#include "model/library.h"
#include "model/libraryedits.h"
#include "model/libraryitem.h"
#include "model/listedobject.h"
#include "sourcecontrol/libraryobserver.h"
#include "sourcecontrol/newworktree.h"
#include "sourcecontrol/revisioncontrolhelper.h"
#include "sourcecontrol/sourcecontrolservice.h"
#include "storage/fileconflict.h"
#include "storage/filedigest.h"
#include "storage/folderlayout.h"
#include "storage/libraryreader.h"
#include "storage/librarywatcher.h"
#include "storage/memorylibrary.h"
#include "storage/stagingfolders.h"
#include "storage/unsavedchanges.h"

#include <algorithm>
#include <utility>

#include <QFileInfo>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScopeGuard>
#include <QTimer>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

char const* const kRevisionControlService = "RevisionControlUIHelper";
char const* const kRevisionControlPropertiesService = "RevisionControlPropertiesMgr";
char const* const kDatabaseProxyService = "QormDBProxy";

CEmbeddedHost* gInstance = nullptr;

} // namespace

class CEmbeddedHost::Private
{
public:
    /// False, and a message says so, unless the library that is open has a folder.
    bool RequireFolder()
    {
        if (library && library->IsInMemory())
            messages.Post(
                eSeverity::kError,
                QStringLiteral("\"%1\" is not kept in a folder.").arg(library->GetName()));
        return library && !library->IsInMemory();
    }

    /// Closes the open library. None can be opened meanwhile: it would be torn down with this one.
    void Release(CLibrary& closed)
    {
        QScopedValueRollback<bool> const closing(isClosing, true);
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

    /// Shared with OpenLibrary, which goes on using it for a moment when a listener deletes the
    /// host.
    std::shared_ptr<CMessageChannel> const sharedMessages = std::make_shared<CMessageChannel>();
    CMessageChannel& messages = *sharedMessages;
    CCommandManager commandManager;
    CDatabaseProxy databaseProxy;
    /// Null when none is open. Declared before the members that refer to it, and so destroyed
    /// after them: a listener may open a library while the host closes its last.
    std::shared_ptr<CLibrary> library;
    CSourceControlService sourceControl;
    CRevisionControlHelper revisionControlHelper{messages, sourceControl};
    CompoundAccessor compoundTarget;
    std::unique_ptr<CLibraryWatcher> watcher;
    bool isClosing = false;
    bool isOpening = false;
    bool isOpeningCancelled = false;
    /// Listens as long as a library is open.
    CLibraryObserver observer;
    QTimer contentTimer;
};

void CEmbeddedHost::SetTextEncoding(eTextEncoding encoding)
{
    SetTexts8Utf8(encoding == eUtf8Texts);
}

CEmbeddedHost::CEmbeddedHost(QObject* parent)
    : QObject(parent)
    , m_Private(std::make_shared<Private>())
{
    if (gInstance) {
        qWarning("There is an embedded host already; this one is not used.");
        return;
    }
    gInstance = this;
    m_Private->contentTimer.setSingleShot(true);
    m_Private->contentTimer.setInterval(0);
    connect(&m_Private->contentTimer, &QTimer::timeout, this, [this] {
        RunGuarded(&m_Private->messages,
                   QStringLiteral("A part of the program could not follow a change"),
                   [this] { Q_EMIT ContentChanged(); });
    });
    for (auto const change : {&CLibraryObserver::Changed, &CLibraryObserver::FilesChanged})
        connect(&m_Private->observer, change, &m_Private->contentTimer,
                qOverload<>(&QTimer::start));
    GetServices().SetService(kRevisionControlService, &m_Private->revisionControlHelper);
    GetServices().SetService(kRevisionControlPropertiesService,
                             &m_Private->sourceControl.GetProperties());
    GetServices().SetService(kDatabaseProxyService, &m_Private->databaseProxy);
    m_Private->revisionControlHelper.SetFilesHandler(
        [this](QStringList const& paths) { Q_EMIT ShowFilesRequested(paths); });
}

CEmbeddedHost::~CEmbeddedHost()
{
    RunGuarded(&m_Private->messages, QStringLiteral("The library was closed"),
               [this] { CloseLibrary(); });
    GetServices().RemoveService(kRevisionControlService, &m_Private->revisionControlHelper);
    GetServices().RemoveService(kRevisionControlPropertiesService,
                                &m_Private->sourceControl.GetProperties());
    GetServices().RemoveService(kDatabaseProxyService, &m_Private->databaseProxy);
    if (gInstance == this)
        gInstance = nullptr;
}

CEmbeddedHost* CEmbeddedHost::GetInstance()
{
    return gInstance;
}

bool CEmbeddedHost::CanOpenLibrary(QString const& folder)
{
    return CheckLibrary(folder, m_Private->messages);
}

bool CEmbeddedHost::IsLibrary(QString const& folder)
{
    return QFileInfo::exists(GetManifestPath(folder));
}

QString CEmbeddedHost::GetManifestName()
{
    return kManifestName;
}

bool CEmbeddedHost::MakeLibrary(QString const& folder, QString* fault)
{
    return MakeLibrary(folder, MakeEmptyLibrary(folder), fault);
}

bool CEmbeddedHost::MakeLibrary(QString const& folder, NewLibrary const& library, QString* fault)
{
    return MakeLibraryFolder(folder, library, fault);
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
    if (gInstance != this)
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

ItemLibraryAccessor CEmbeddedHost::GetLibrary() const
{
    return m_Private->library ? m_Private->library->GetAccessor() : ItemLibraryAccessor();
}

QString CEmbeddedHost::GetLibraryName() const
{
    return m_Private->library ? m_Private->library->GetName() : QString();
}

QString CEmbeddedHost::GetLibraryFolder() const
{
    return m_Private->library ? m_Private->library->GetFolder() : QString();
}

std::vector<MemoryItem> CEmbeddedHost::GetItems() const
{
    return m_Private->library ? ListItems(*m_Private->library) : std::vector<MemoryItem>();
}

ItemID CEmbeddedHost::FindItem(std::string const& uid) const
{
    CLibraryItem const* const item =
        m_Private->library ? m_Private->library->FindItem(uid.c_str()) : nullptr;
    return item ? ItemID(&item->GetIdentity()) : ItemID();
}

GraphBody CEmbeddedHost::GetBody(ItemID const& id) const
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    if (!m_Private->library || !identity || !identity->item)
        return GraphBody();
    return ReadGraphBody(identity->item->GetObject(), [](std::string const&, std::string const&) {
        // Reported when the library was read.
    });
}

std::string CEmbeddedHost::GetCategory(ItemID const& id) const
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    return m_Private->library && identity && identity->item
               ? std::string(ListObject(identity->item->GetObject()).category)
               : std::string();
}

bool CEmbeddedHost::SetBody(ItemID const& id, GraphBody const& body, std::string const& text)
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    return m_Private->library && identity && identity->item
           && SetItemBody(*m_Private->library, *identity->item, body, text,
                          &m_Private->commandManager);
}

bool CEmbeddedHost::DeleteItem(ItemID const& id)
{
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    return m_Private->library && identity && identity->item
           && embeddedhost::DeleteItem(*m_Private->library, *identity->item,
                                       &m_Private->commandManager);
}

std::vector<ItemID> CEmbeddedHost::FindUsers(ItemID const& id) const
{
    std::vector<ItemID> users;
    ItemIdentity const* const identity = ItemIDUnlock::GetIdentity(id);
    if (!m_Private->library || !identity || !identity->item)
        return users;
    for (CLibraryItem* const user : embeddedhost::FindUsers(*m_Private->library, *identity->item))
        users.push_back(ItemID(&user->GetIdentity()));
    return users;
}

bool CEmbeddedHost::IsModified() const
{
    if (!m_Private->library)
        return false;
    auto const& files = m_Private->library->GetFiles();
    return std::any_of(files.begin(), files.end(),
                       [](auto const& file) { return file->IsModified(); });
}

QByteArray CEmbeddedHost::GetUnsavedChanges() const
{
    auto const document = m_Private->library && !m_Private->library->IsInMemory()
                              ? CollectUnsavedChanges(*m_Private->library)
                              : nlohmann::ordered_json();
    if (document.is_null())
        return QByteArray();
    // Replaces invalid UTF-8, as a save does.
    return QByteArray::fromStdString(
        document.dump(1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

bool CEmbeddedHost::RestoreUnsavedChanges(QByteArray const& changes)
{
    if (m_Private->library && !m_Private->RequireFolder())
        return false;
    QString fault;
    auto const document = ParseUnsavedChanges(changes, GetLibraryFolder(), &fault);
    if (!m_Private->library || document.is_null()) {
        m_Private->messages.Post(
            eSeverity::kError, QStringLiteral("The changes cannot be made again: %1.").arg(fault));
        return false;
    }
    QStringList const leftOut = embeddedhost::RestoreUnsavedChanges(*m_Private->library, document,
                                                                    &m_Private->commandManager);
    for (QString const& text : leftOut)
        m_Private->messages.Post(eSeverity::kWarning, text);
    return leftOut.isEmpty();
}

QStringList CEmbeddedHost::FindConflicts() const
{
    QStringList paths;
    if (!m_Private->library || m_Private->library->IsInMemory())
        return paths;
    for (auto const& file : m_Private->library->GetFiles()) {
        if (file->IsModified() && GetDigestOnDisk(file->path, GetLibraryFolder()) != file->digest)
            paths << file->path;
    }
    return paths;
}

bool CEmbeddedHost::MakeWorkTree(QString const& folder, QString* fault)
{
    return MakeGitWorkTree(folder, fault);
}

void CEmbeddedHost::CheckFolder()
{
    if (m_Private->watcher)
        m_Private->watcher->Check();
}

bool CEmbeddedHost::TakeFileFromDisk(QString const& path)
{
    return m_Private->RequireFolder()
           && embeddedhost::TakeFileFromDisk(m_Private->library, path, &m_Private->commandManager);
}

bool CEmbeddedHost::OverwriteFileOnDisk(QString const& path)
{
    return m_Private->RequireFolder()
           && embeddedhost::OverwriteFileOnDisk(*m_Private->library, path);
}

CCommandManager& CEmbeddedHost::GetCommandManager()
{
    return m_Private->commandManager;
}

CMessageChannel& CEmbeddedHost::GetMessages()
{
    return m_Private->messages;
}

CServiceRegistry& CEmbeddedHost::GetServices()
{
    return CServiceRegistry::GetInstance();
}

bool CEmbeddedHost::IsRevisionControlEnabled() const
{
    return m_Private->sourceControl.GetProperties().IsEnabled();
}

void CEmbeddedHost::SetRevisionControlEnabled(bool isEnabled)
{
    m_Private->sourceControl.SetEnabled(isEnabled);
}

CompoundAccessor CEmbeddedHost::GetCompoundTarget() const
{
    return m_Private->compoundTarget;
}

void CEmbeddedHost::SetCompoundTarget(CompoundAccessor const& compound)
{
    m_Private->compoundTarget.SetFrom(compound);
    Q_EMIT CompoundTargetChanged();
}
