#include "embeddedhost.h"

#include "framework/databaseproxy.h"
#include "model/graphjson.h"
#include "model/library.h"
#include "model/libraryitem.h"
#include "sourcecontrol/revisioncontrolhelper.h"
#include "storage/libraryreader.h"

#include <QScopedValueRollback>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

char const* const kRevisionControlService = "RevisionControlUIHelper";
char const* const kDatabaseProxyService = "QormDBProxy";

CEmbeddedHost* gInstance = nullptr;

} // namespace

class CEmbeddedHost::Private
{
public:
    CMessageChannel messages;
    CCommandManager commandManager;
    CDatabaseProxy databaseProxy;
    CRevisionControlHelper revisionControlHelper{messages};
    CompoundAccessor compoundTarget;
    /// Null when none is open.
    std::shared_ptr<CLibrary> library;
    bool isReading = false;
};

CEmbeddedHost::CEmbeddedHost(QObject* parent)
    : QObject(parent)
    , m_Private(new Private)
{
    if (gInstance) {
        qWarning("There is an embedded host already; this one is not asked by anybody.");
        return;
    }
    gInstance = this;
    GetServices().SetService(kRevisionControlService, &m_Private->revisionControlHelper);
    GetServices().SetService(kDatabaseProxyService, &m_Private->databaseProxy);
}

CEmbeddedHost::~CEmbeddedHost()
{
    CloseLibrary();
    GetServices().RemoveService(kRevisionControlService, &m_Private->revisionControlHelper);
    GetServices().RemoveService(kDatabaseProxyService, &m_Private->databaseProxy);
    if (gInstance == this)
        gInstance = nullptr;
}

CEmbeddedHost* CEmbeddedHost::GetInstance()
{
    return gInstance;
}

bool CEmbeddedHost::OpenLibrary(QString const& folder, Progress const& progress)
{
    if (gInstance != this || m_Private->isReading) {
        m_Private->messages.Post(eSeverity::kError,
                                 QStringLiteral("Another library is being opened; try again."));
        return false;
    }
    CloseLibrary();
    {
        QScopedValueRollback<bool> const reading(m_Private->isReading, true);
        m_Private->library = ReadLibrary(folder, m_Private->messages, progress);
    }
    if (!m_Private->library)
        return false;
    m_Private->revisionControlHelper.SetDatabase(&m_Private->library->GetDatabase());
    m_Private->databaseProxy.SetItemLibrary(GetLibrary());
    Q_EMIT LibraryChanged();
    return true;
}

void CEmbeddedHost::CloseLibrary()
{
    if (!m_Private->library)
        return;
    m_Private->commandManager.Clear();
    m_Private->revisionControlHelper.SetDatabase(nullptr);
    m_Private->compoundTarget = CompoundAccessor();
    m_Private->library->Close();
    m_Private->library.reset();
    m_Private->databaseProxy.SetItemLibrary(ItemLibraryAccessor());
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

ItemID CEmbeddedHost::FindItem(std::string const& uid) const
{
    CLibraryItem const* const item
        = m_Private->library ? m_Private->library->FindItem(uid.c_str()) : nullptr;
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

CompoundAccessor CEmbeddedHost::GetCompoundTarget() const
{
    return m_Private->compoundTarget;
}

void CEmbeddedHost::SetCompoundTarget(CompoundAccessor const& compound)
{
    m_Private->compoundTarget.SetFrom(compound);
    Q_EMIT CompoundTargetChanged();
}
