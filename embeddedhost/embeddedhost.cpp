#include "embeddedhost.h"

#include "base/text8.h"
#include "embeddedhost_p.h"
#include "framework/guardedcall.h"

#include <QTimer>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

char const* const kRevisionControlService = "RevisionControlUIHelper";
char const* const kRevisionControlPropertiesService = "RevisionControlPropertiesMgr";
char const* const kDatabaseProxyService = "QormDBProxy";

CEmbeddedHost* gInstance = nullptr;

} // namespace

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
    // One ContentChanged for a burst: a group of commands sends a notification for each item.
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
    // Listeners may throw while the library is closed, which a destructor must not.
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

#include "moc_embeddedhost.cpp"
