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

#include "datamodel.h"
#include "sourcecontrol.h"
#include "testdatabase.h"
#include "testlibrary.h"

#include <QMap>
#include <QStringList>

#include <functional>
#include <stdexcept>
#include <vector>

/// What the host throws when a test told it to.
class HostError : public std::runtime_error
{
public:
    explicit HostError(QString const& operation);
};

/// Runs what it is given and keeps it for undo.
class TestCommandManager : public wek::fwk::ICommandManager
{
public:
    void Execute(wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> const& command) override;

    std::vector<wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand>> m_Executed;
};

/// The service "RevisionControlUIHelper" over the test database.
class TestRevisionControl : public qorm::IRevisionControlUIHelper
{
public:
    qorm::QormHandle<qorm::IDbObject> FindObject(qorm::DbObjectId const& objectId) override;
    void CheckOut(qorm::QormHandle<qorm::IDbObject> const& object, bool& checkedOut,
                  bool askUser) override;
    void MakeWritable(qorm::QormHandle<qorm::IDbObject> const& object, bool askUser) override;
    void ShowFiles(qorm::QormHandle<qorm::IDbObject> const& object, bool withDependencies) override;
};

/// The service "RevisionControlPropertiesMgr".
class TestProperties : public IRevisionControlPropertiesMgr, private IKvTrackedSignal
{
public:
    /// Tells the slots that it goes.
    ~TestProperties() override;

    void Connect(IRevisionControlPropertiesMgr_Slot* slot, KvTrackedSlot* entry) override;
    bool HasRevisionControlEnabled() override;
    void GetRevisionControlEnabled(bool* enabled) override;

    /// Tells the slots that the properties changed.
    void Notify();
    std::size_t GetConnectionCount() const;

    bool m_IsAvailable = true;
    bool m_IsEnabled = false;

private:
    typedef std::pair<KvTrackedSlot*, IRevisionControlPropertiesMgr_Slot*> Connection;

    void Disconnect(KvTrackedSlot* entry) override;

    std::vector<Connection> m_Connections;
};

/// The service "QormDBProxy".
class TestProxy : public wek::fwk::IQormDBProxy
{
public:
    tarno::datamodel::ItemLibraryAccessor GetItemLibrary() override;
    void AddListener(wek::fwk::IQormDBProxy_Signal* listener) override;
    void RemoveListener(wek::fwk::IQormDBProxy_Signal* listener) override;

    tarno::datamodel::ItemLibraryAccessor m_ItemLibrary;
    std::vector<wek::fwk::IQormDBProxy_Signal*> m_Listeners;
};

/// The system object of the process while it exists; one at a time. It starts without services.
class TestHost : public wek::fwk::ISystem
{
public:
    TestHost();
    ~TestHost() override;
    static TestHost& Get();

    wek::IBase* GetService(char const* name) override;
    /// Null takes the service away.
    void SetService(char const* name, wek::IBase* service);
    /// Registers m_RevisionControl.
    void AddRevisionControl();

    /// What was done to the host since the last call, in order. Texts stand in quotes, so that
    /// '' and null differ; the host's own command manager is "manager".
    QStringList TakeCalls();
    /// How often a query was asked, or an operation called, since the last call for it.
    int TakeCount(char const* operation);
    /// The n-th call of the operation from now on throws a HostError, once.
    void ThrowAt(char const* operation, int call);
    /// The n-th call of whatever operation from now on runs the action, once, before it does
    /// anything else.
    void RunAt(int call, std::function<void()> const& action);
    /// The action has been run.
    bool HasRun() const;

    // For the definitions of the contract.
    void Record(char const* operation, QStringList const& arguments = QStringList());
    void Query(char const* operation, QStringList const& arguments = QStringList());
    /// For what is never listed.
    void Count(char const* operation);

    TestDatabase& m_Database;
    TestCommandManager m_CommandManager;
    TestRevisionControl m_RevisionControl;
    TestProperties m_Properties;
    TestProxy m_Proxy;

    /// List queries among the calls, too.
    bool m_ListsQueries = false;
    bool m_IsFileVersionControlActive = false;
    /// Creating, renaming and tagging change nothing and say so.
    bool m_RefusesChanges = false;
    /// What GetApplicationCommandManager answers.
    wek::fwk::ICommandManager* m_ApplicationCommandManager;
    int m_LiveTasks = 0;

private:
    QMap<QString, wek::IBase*> m_Services;
    QStringList m_Calls;
    QMap<QString, int> m_Counts;
    QMap<QString, int> m_CallsUntilThrow;
    int m_CallsUntilAction = 0;
    std::function<void()> m_Action;
};

#endif
