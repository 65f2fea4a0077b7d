#include "sourcecontrol/sourcecontrolservice.h"

#include "framework/guardedcall.h"
#include "model/library.h"
#include "model/librarynotifier.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>

namespace embeddedhost {

using namespace tarno::datamodel;

namespace {

/// The longest wait for a tool tip's text.
constexpr std::chrono::milliseconds kToolTipPatience(30);

CSourceControlService* gService = nullptr;

} // namespace

CSourceControlService::CSourceControlService(QObject* parent)
    : QObject(parent)
    , m_WorkTree(m_Workers)
    , m_Actions(m_Workers)
    , m_Refresh(std::make_shared<StateRequest>())
    , m_Reader(m_Workers)
    , m_History(m_Workers)
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
    connect(&m_WorkTree, &CWorkTreeLookUp::LookedUp, this, &CSourceControlService::OnLookedUp);
    connect(&m_WorkTree, &CWorkTreeLookUp::GitFolderChanged, this,
            &CSourceControlService::RefreshAll);
    connect(&m_Actions, &CGitActions::MoveFollowed, this, &CSourceControlService::OnMoveFollowed);
    connect(&m_Workers, &CGitWorkers::StoppedAnswering, this, &CSourceControlService::OnSilence);
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
    m_Workers.Open(library.GetFolder());
    LookUpWorkTree();
}

void CSourceControlService::Close()
{
    if (!m_Library)
        return;
    Stop();
    m_Observer.Detach(m_Library->GetNotifier());
    m_Library = nullptr;
    m_WorkTree.Forget();
    m_History.Forget();
    m_Workers.Close();
    m_Properties.SetAvailable(false);
}

bool CSourceControlService::IsActive() const
{
    return m_WorkTree.IsInWorkTree();
}

CGitActions& CSourceControlService::GetActions()
{
    return m_Actions;
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

std::optional<FileFacts> CSourceControlService::FindFacts(QString const& file)
{
    return m_History.Find(file, kToolTipPatience);
}

bool CSourceControlService::IsShown() const
{
    return IsActive() && m_Properties.IsEnabled();
}

/// Drops all requests and cached states.
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
    m_Workers.Finish();
}

void CSourceControlService::LookUpWorkTree()
{
    m_WorkTree.Start(m_Library->GetFolder());
}

void CSourceControlService::OnLookedUp()
{
    // Listeners to the warning and to the properties may delete this service.
    QPointer<CSourceControlService> const self(this);
    if (!IsActive())
        Stop();
    QString const fault = m_WorkTree.TakeFault();
    if (!fault.isEmpty())
        Warn(QStringLiteral("Source control cannot tell any states: %1.").arg(fault));
    if (self)
        Guard([this] { m_Properties.SetAvailable(IsActive()); });
    if (self)
        StartNextPass();
}

void CSourceControlService::OnMoveFollowed(QString const& fault)
{
    RefreshAll();
    if (!fault.isEmpty())
        Warn(fault);
}

void CSourceControlService::OnSilence()
{
    Warn(QStringLiteral("Git does not answer for %1: a file that it reads may be a pipe, or lie on "
                        "a network drive that is gone. Everything else goes on without it.")
             .arg(QDir::toNativeSeparators(m_Library->GetFolder())));
}

/// Guarded, because a listener of the channel may throw.
void CSourceControlService::Warn(QString const& text)
{
    Guard([this, text] {
        if (m_Library)
            m_Library->GetMessages().Post(eSeverity::kWarning, text);
    });
}

void CSourceControlService::Guard(std::function<void()> const& call)
{
    RunGuarded(m_Library ? &m_Library->GetMessages() : nullptr, QStringLiteral("Source control"),
               call);
}

} // namespace embeddedhost

#include "moc_sourcecontrolservice.cpp"
