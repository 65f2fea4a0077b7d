#include "testhost.h"

#include "testtext.h"

#include <algorithm>

using qorm::IDbObject;
using qorm::QormHandle;

namespace {

TestHost* currentHost = nullptr;

/// What a service does with an object.
void RecordObjectCall(char const* operation, QormHandle<IDbObject> const& object, bool argument)
{
    TestHost::Get().Record(operation, {TextOf(object), TextOf(argument)});
}

} // namespace

HostError::HostError(QString const& operation)
    : std::runtime_error("thrown from " + operation.toStdString())
{}

void TestCommandManager::Execute(wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> const& command)
{
    TestHost::Get().Record("Execute", {Quoted(command->GetText())});
    command->Do();
    m_Executed.push_back(command);
}

QormHandle<IDbObject> TestRevisionControl::FindObject(qorm::DbObjectId const& objectId)
{
    TestHost::Get().Query("FindObject", {QString::fromLatin1(objectId.GetStr())});
    TestDatabase& database = TestDatabase::Get();
    return database.GetHandle(database.Find(objectId.GetStr()));
}

void TestRevisionControl::CheckOut(QormHandle<IDbObject> const& object, bool& checkedOut,
                                   bool askUser)
{
    RecordObjectCall("CheckOut", object, askUser);
    checkedOut = true;
}

void TestRevisionControl::MakeWritable(QormHandle<IDbObject> const& object, bool askUser)
{
    RecordObjectCall("MakeWritable", object, askUser);
}

void TestRevisionControl::ShowFiles(QormHandle<IDbObject> const& object, bool withDependencies)
{
    RecordObjectCall("ShowFiles", object, withDependencies);
}

TestProperties::~TestProperties()
{
    std::vector<Connection> connections;
    connections.swap(m_Connections);
    for (Connection const& connection : connections) {
        connection.first->Reset();
        connection.second->OnRevisionControlPropertiesChange(nullptr);
    }
}

void TestProperties::Connect(IRevisionControlPropertiesMgr_Slot* slot, KvTrackedSlot* entry)
{
    entry->Connect(this);
    m_Connections.push_back(Connection(entry, slot));
}

void TestProperties::Disconnect(KvTrackedSlot* entry)
{
    m_Connections.erase(std::remove_if(m_Connections.begin(), m_Connections.end(),
                                       [entry](Connection const& c) { return c.first == entry; }),
                        m_Connections.end());
}

bool TestProperties::HasRevisionControlEnabled()
{
    TestHost::Get().Query("HasRevisionControlEnabled");
    return m_IsAvailable;
}

void TestProperties::GetRevisionControlEnabled(bool* enabled)
{
    TestHost::Get().Query("GetRevisionControlEnabled");
    *enabled = m_IsEnabled;
}

void TestProperties::Notify()
{
    std::vector<Connection> const connections = m_Connections;
    for (Connection const& connection : connections)
        connection.second->OnRevisionControlPropertiesChange(this);
}

std::size_t TestProperties::GetConnectionCount() const
{
    return m_Connections.size();
}

tarno::datamodel::ItemLibraryAccessor TestProxy::GetItemLibrary()
{
    return m_ItemLibrary;
}

void TestProxy::AddListener(wek::fwk::IQormDBProxy_Signal* listener)
{
    m_Listeners.push_back(listener);
}

void TestProxy::RemoveListener(wek::fwk::IQormDBProxy_Signal* listener)
{
    m_Listeners.erase(std::remove(m_Listeners.begin(), m_Listeners.end(), listener),
                      m_Listeners.end());
}

TestHost::TestHost()
    : m_Database(TestDatabase::Get())
    , m_ApplicationCommandManager(&m_CommandManager)
{
    Q_ASSERT(!currentHost);
    currentHost = this;
    m_Database.Clear();
}

TestHost::~TestHost()
{
    currentHost = nullptr;
}

TestHost& TestHost::Get()
{
    Q_ASSERT(currentHost);
    return *currentHost;
}

wek::IBase* TestHost::GetService(char const* name)
{
    Query("GetService", {Quoted(name)});
    return m_Services.value(name, nullptr);
}

void TestHost::SetService(char const* name, wek::IBase* service)
{
    m_Services[name] = service;
}

void TestHost::AddRevisionControl()
{
    SetService("RevisionControlUIHelper", &m_RevisionControl);
}

QStringList TestHost::TakeCalls()
{
    QStringList calls;
    calls.swap(m_Calls);
    return calls;
}

int TestHost::TakeCount(char const* operation)
{
    return m_Counts.take(operation);
}

void TestHost::ThrowAt(char const* operation, int call)
{
    m_CallsUntilThrow[operation] = call;
}

void TestHost::RunAt(int call, std::function<void()> const& action)
{
    m_CallsUntilAction = call;
    m_Action = action;
}

bool TestHost::HasRun() const
{
    return !m_Action;
}

void TestHost::Record(char const* operation, QStringList const& arguments)
{
    m_Calls << (QStringList(operation) + arguments).join(" ");
    Count(operation);
}

void TestHost::Query(char const* operation, QStringList const& arguments)
{
    if (m_ListsQueries)
        m_Calls << (QStringList(operation) + arguments).join(" ");
    Count(operation);
}

void TestHost::Count(char const* operation)
{
    ++m_Counts[operation];
    if (m_Action && --m_CallsUntilAction == 0) {
        std::function<void()> action;
        action.swap(m_Action);
        action();
    }
    auto const due = m_CallsUntilThrow.find(operation);
    if (due == m_CallsUntilThrow.end() || --*due > 0)
        return;
    m_CallsUntilThrow.erase(due);
    throw HostError(operation);
}
