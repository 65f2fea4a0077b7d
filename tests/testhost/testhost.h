#ifndef NODEBROWSER_TESTS_TESTHOST_H
#define NODEBROWSER_TESTS_TESTHOST_H

// A host in memory for the tests of the panel and its dialogs. It defines everything that the
// contract declares, takes what tests put into it, and records what is done to it.
//
//     TestHost host;
//     TestLibrary library("A");
//     library.Add(TarnoType::gSolver, "add", "Math;Sum");
//     CNodeBrowser browser(CNodeBrowser::eConfigNodes);
//     browser.SetItemLibrary(library.GetAccessor());
//     QCOMPARE(host.TakeCalls(), QStringList() << "ScsTask 'NodeBrowser'" << ...);

#include "framework.h"
#include "sourcecontrol.h"
#include "testlibrary.h"

/// Nothing is run: what commands do is not for these tests.
class TestCommandManager : public wek::fwk::ICommandManager
{
public:
    void Execute(wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> const& /*command*/) override {}
};

/// The service "RevisionControlUIHelper" over the test database.
class TestRevisionControl : public qorm::IRevisionControlUIHelper
{
public:
    typedef qorm::QormHandle<qorm::IDbObject> Object;

    Object FindObject(qorm::DbObjectId const& objectId) override
    {
        Query("FindObject", {QString::fromLatin1(objectId.GetStr())});
        return TestDatabase::Get().Find(objectId);
    }

    void CheckOut(Object const& object, bool& checkedOut, bool askUser) override
    {
        Record("CheckOut", {TextOf(object), TextOf(askUser)});
        checkedOut = true;
    }

    void MakeWritable(Object const& object, bool askUser) override
    {
        Record("MakeWritable", {TextOf(object), TextOf(askUser)});
    }

    void ShowFiles(Object const& object, bool withDependencies) override
    {
        Record("ShowFiles", {TextOf(object), TextOf(withDependencies)});
    }
};

/// The service "RevisionControlPropertiesMgr".
class TestProperties : public IRevisionControlPropertiesMgr, private IKvTrackedSignal
{
public:
    /// Tells the slots that it goes.
    ~TestProperties() override
    {
        for (auto const& connection : std::exchange(m_Connections, Connections())) {
            connection.first->Reset();
            connection.second->OnRevisionControlPropertiesChange(nullptr);
        }
    }

    void Connect(IRevisionControlPropertiesMgr_Slot* slot, KvTrackedSlot* entry) override
    {
        entry->Connect(this);
        m_Connections[entry] = slot;
    }

    bool HasRevisionControlEnabled() override
    {
        Query("HasRevisionControlEnabled");
        return m_IsAvailable;
    }

    void GetRevisionControlEnabled(bool* enabled) override
    {
        Query("GetRevisionControlEnabled");
        *enabled = m_IsEnabled;
    }

    /// Tells the slots that the properties changed.
    void Notify()
    {
        for (auto const& connection : Connections(m_Connections))
            connection.second->OnRevisionControlPropertiesChange(this);
    }

    bool m_IsAvailable = true;
    bool m_IsEnabled = false;

    typedef std::map<KvTrackedSlot*, IRevisionControlPropertiesMgr_Slot*> Connections;
    Connections m_Connections;

private:
    void Disconnect(KvTrackedSlot* entry) override
    {
        m_Connections.erase(entry);
    }
};

/// The service "QormDBProxy", which has nothing to tell.
class TestProxy : public wek::fwk::IQormDBProxy
{
public:
    tarno::datamodel::ItemLibraryAccessor GetItemLibrary() override
    {
        return m_ItemLibrary;
    }

    void AddListener(wek::fwk::IQormDBProxy_Signal* /*listener*/) override {}
    void RemoveListener(wek::fwk::IQormDBProxy_Signal* /*listener*/) override {}

    tarno::datamodel::ItemLibraryAccessor m_ItemLibrary;
};

/// The system object of the process while it exists; one at a time. It starts without services.
class TestHost : public wek::fwk::ISystem, public TestCalls
{
public:
    TestHost()
        : m_Database(TestDatabase::Get())
    {
        m_Database.Clear();
    }

    static TestHost& Get()
    {
        return static_cast<TestHost&>(TestCalls::Get());
    }

    wek::IBase* GetService(char const* name) override
    {
        Query("GetService", {Quoted(name)});
        return m_Services.value(name, nullptr);
    }

    /// Null takes the service away.
    void SetService(char const* name, wek::IBase* service)
    {
        m_Services[name] = service;
    }

    /// Registers m_RevisionControl.
    void AddRevisionControl()
    {
        SetService("RevisionControlUIHelper", &m_RevisionControl);
    }

    TestDatabase& m_Database;
    TestCommandManager m_CommandManager;
    TestRevisionControl m_RevisionControl;
    TestProxy m_Proxy;

    bool m_IsFileVersionControlActive = false;
    /// Creating, renaming and tagging change nothing and say so.
    bool m_RefusesChanges = false;

private:
    QMap<QString, wek::IBase*> m_Services;
};

#endif
