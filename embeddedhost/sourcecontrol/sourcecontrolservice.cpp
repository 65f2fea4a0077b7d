#include "sourcecontrol/sourcecontrolservice.h"

#include "model/library.h"
#include "model/librarynotifier.h"

#include <QCoreApplication>

namespace embeddedhost {

using namespace tarno::datamodel;

namespace {

/// In milliseconds. Changes of files and of the git folder come in bursts.
constexpr int kRefreshDelay = 200;

/// What a tool tip may take.
constexpr std::chrono::milliseconds kToolTipPatience(30);

CSourceControlService* gService = nullptr;

/// Whether panels show states of the item: of compounds that may be written.
bool HasShownState(CLibraryItem const& item)
{
    return item.GetIdentity().kind == TarnoType::gCompound
           && item.GetSource()->GetAccessMode() != qorm::IDataSource::kReadOnlyAccess;
}

} // namespace

CSourceControlService::CSourceControlService(QObject* parent)
    : QObject(parent)
    , m_Refresh(std::make_shared<StateRequest>())
{
    m_Refresh->isRefresh = true;
    m_Requests.Add(m_Refresh);
    m_StartTimer.setSingleShot(true);

    connect(&m_StartTimer, &QTimer::timeout, this, &CSourceControlService::StartPass);
    connect(&m_Reader, &CStateReader::Finished, this, &CSourceControlService::OnPassFinished);
    connect(&m_Delivery, &CStateDelivery::Due, this, &CSourceControlService::Deliver);
    connect(&m_Delivery, &CStateDelivery::Emptied, this, &CSourceControlService::StartNextPass);
    connect(&m_Announcer, &CStateAnnouncer::Due, this, &CSourceControlService::Announce);
    connect(&m_Observer, &CLibraryObserver::StructureChanged, &m_Announcer,
            &CStateAnnouncer::NoteStructureChange);
    connect(&m_Observer, &CLibraryObserver::ItemAppeared, this,
            &CSourceControlService::OnItemAppeared);
    connect(&m_Observer, &CLibraryObserver::FilesChanged, this, &CSourceControlService::RefreshAll);
    // A commit, a checkout or `git add` changes something there.
    connect(&m_GitWatcher, &QFileSystemWatcher::directoryChanged, this,
            &CSourceControlService::RefreshAll);
    // The threads must not run on while the process ends, even if this object is never destroyed.
    if (QCoreApplication* const application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &CSourceControlService::Quit);
    if (!gService)
        gService = this;
}

CSourceControlService::~CSourceControlService()
{
    Close();
    if (gService == this)
        gService = nullptr;
}

CSourceControlService* CSourceControlService::GetInstance()
{
    return gService;
}

void CSourceControlService::Open(CLibrary& library)
{
    Close();
    m_Library = &library;
    m_Observer.Attach(library.GetNotifier());
    UpdateWorkTree();
}

void CSourceControlService::Close()
{
    if (!m_Library)
        return;
    Stop();
    m_Observer.Detach(m_Library->GetNotifier());
    m_Library = nullptr;
    UpdateWorkTree();
}

bool CSourceControlService::IsActive() const
{
    return !m_GitFolder.isEmpty();
}

CRevisionControlProperties& CSourceControlService::GetProperties()
{
    return m_Properties;
}

void CSourceControlService::SetEnabled(bool isEnabled)
{
    if (!isEnabled)
        Stop();
    m_Properties.SetEnabled(isEnabled);
}

void CSourceControlService::Request(CStateRequests::RequestPtr const& request,
                                    std::vector<ItemKey> const& items)
{
    UpdateWorkTree();
    m_Requests.Add(request);
    if (!IsShown())
        return;
    request->wanted.insert(items.begin(), items.end());
    StartWithin(0);
}

void CSourceControlService::OnRequestDropped()
{
    if (m_Requests.IsEmpty())
        m_Requests.Clear();
    if (!m_Requests.IsAnythingAsked())
        m_Reader.Cancel();
    StartNextPass();
}

void CSourceControlService::Refresh(std::vector<ItemKey> const& items)
{
    if (!IsShown() || m_Requests.IsEmpty() || items.empty())
        return;
    m_Refresh->wanted.insert(items.begin(), items.end());
    StartWithin(kRefreshDelay);
}

void CSourceControlService::RefreshAll()
{
    Refresh(m_Announcer.GetItems());
}

void CSourceControlService::NoteLookUp(ItemKey item)
{
    m_Announcer.NoteLookUp(item);
}

std::optional<FileFacts> CSourceControlService::FindFacts(QString const& file)
{
    return m_History.Find(file, kToolTipPatience);
}

bool CSourceControlService::IsShown() const
{
    return IsActive() && m_Properties.IsEnabled();
}

/// Forgets all that was asked and known.
void CSourceControlService::Stop()
{
    m_StartTimer.stop();
    m_Reader.Cancel();
    m_Delivery.Clear();
    m_Requests.Clear();
    m_Announcer.Forget();
    m_History.Cancel();
}

void CSourceControlService::Quit()
{
    Stop();
    m_Reader.Wait();
    m_History.Wait();
}

void CSourceControlService::UpdateWorkTree()
{
    QString const gitFolder =
        m_Library ? CGitWorkTree::FindGitFolder(m_Library->GetFolder()) : QString();
    if (gitFolder == m_GitFolder)
        return;
    m_GitFolder = gitFolder;
    if (!m_GitWatcher.directories().isEmpty())
        m_GitWatcher.removePaths(m_GitWatcher.directories());
    if (IsActive()) {
        m_GitWatcher.addPath(m_GitFolder);
        ReportUnreadableTree();
    } else {
        Stop();
    }
    m_Properties.SetAvailable(IsActive());
}

void CSourceControlService::ReportUnreadableTree()
{
    CGitWorkTree const tree(m_Library->GetFolder());
    if (tree.GetAccess() != CGitWorkTree::kReadable)
        m_Library->GetMessages().Post(
            eSeverity::kWarning,
            QStringLiteral("Source control cannot tell any states: %1.").arg(tree.GetError()));
}

void CSourceControlService::OnItemAppeared(ItemID const& id)
{
    ItemKey const item = ItemIDUnlock::GetIdentity(id);
    if (item && item->item && HasShownState(*item->item))
        Refresh({item});
}

void CSourceControlService::StartWithin(int milliseconds)
{
    if (!m_StartTimer.isActive() || m_StartTimer.remainingTime() > milliseconds)
        m_StartTimer.start(milliseconds);
}

void CSourceControlService::StartNextPass()
{
    if (m_Requests.IsAnythingWanted())
        StartWithin(0);
}

void CSourceControlService::StartPass()
{
    // The next pass begins when the answers of this one are out.
    if (!m_Library || m_Requests.IsAnythingAsked())
        return;
    std::vector<CStateReader::ItemFile> files;
    for (ItemKey const item : m_Requests.Ask()) {
        if (item->item)
            files.push_back({item, item->item->GetFile().path});
        else
            m_Requests.Answer(item); // it has gone meanwhile
    }
    if (!files.empty())
        m_Reader.Start(files);
}

void CSourceControlService::OnPassFinished(std::vector<ItemState> const& states)
{
    for (ItemState const& state : states)
        m_Delivery.Add({state.item, state.state});
}

void CSourceControlService::Announce(std::vector<ItemKey> const& items)
{
    if (m_Requests.IsEmpty())
        return; // there is nobody any more who shows states
    for (ItemKey const item : items)
        m_Delivery.Add({item, std::nullopt});
}

void CSourceControlService::Deliver(CStateDelivery::Entry const& entry)
{
    if (entry.answer) {
        if (!m_Requests.Answer(entry.item))
            return;
        m_Announcer.Remember(entry.item, *entry.answer);
    } else if (m_Requests.IsAwaited(entry.item)) {
        return; // the answer is on its way
    }
    auto const state = m_Announcer.Find(entry.item);
    if (m_Library && entry.item->item && state)
        m_Library->GetNotifier().AccessStateChanged(ItemID(entry.item), long(*state));
}

} // namespace embeddedhost
