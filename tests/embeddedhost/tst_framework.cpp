#include "framework/guardedcall.h"
#include "hosttest.h"
#include <hostkit/refcounted.h>

#include <sourcecontrol.h>

#include <stdexcept>
#include <utility>

using namespace embeddedhost;
using namespace tarno::datamodel;
using wek::fwk::ICommand;

namespace {

typedef std::function<void()> Reaction;

/// Writes down when it is done and undone.
class Command : public hostkit::CRefCounted<ICommand>
{
public:
    Command(QStringList& record, char const* text, Reaction const& react)
        : m_Record(record)
        , m_Text(text)
        , m_React(react)
    {}
    ~Command() override
    {
        m_Record << QString("end of ") + m_Text;
    }

    void Do() override
    {
        m_Record << QString("do ") + m_Text;
        m_React();
    }
    void Undo() override
    {
        m_Record << QString("undo ") + m_Text;
        m_React();
    }
    char const* GetText() const override
    {
        return m_Text;
    }

private:
    QStringList& m_Record;
    char const* const m_Text;
    Reaction const m_React;
};

class ProxyListener : public wek::fwk::IQormDBProxy_Signal
{
public:
    void OnItemLibraryChange() override
    {
        ++changes;
    }
    int changes = 0;
};

} // namespace

/// What a host consists of beside its library.
class TestFramework : public LoggedTest
{
    Q_OBJECT

private:
    void SetUp() override
    {
        m_Manager = std::make_unique<CCommandManager>();
        m_Record.clear();
    }

    void Run(
        char const* text, Reaction const& react = [] {})
    {
        wek::fwk::RefCountedAutoPtr<ICommand> command;
        command = wek::fwk::RefCountedAutoPtr<ICommand>(new Command(m_Record, text, react));
        m_Manager->Execute(command);
    }

    QUndoStack& Stack()
    {
        return m_Manager->GetUndoStack();
    }

    QStringList GetStack()
    {
        QStringList texts;
        for (int i = 0; i < Stack().count(); ++i)
            texts << Stack().text(i);
        return texts;
    }

    std::unique_ptr<CCommandManager> m_Manager;
    QStringList m_Record;

private Q_SLOTS:
    void everythingIsSafeWithoutAHost()
    {
        QVERIFY(!CEmbeddedHost::GetInstance());
        QVERIFY(wekGetSystem() && !wekGetSystem()->GetService("QormDBProxy"));
        QVERIFY(!wekGetSystem()->GetService(nullptr) && !GetApplicationCommandManager());
        Helpers::SetGlobalTarnoCompoundTarget(CompoundAccessor(), CompoundAccessor());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
    }

    void oneHostShowsOneLibrary()
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", Object(1, "compound", "Compound"));
        CEmbeddedHost host;
        Expect("There is an embedded host already");
        {
            CEmbeddedHost second;
            QVERIFY(!second.OpenLibrary(folder.GetPath()));
        }
        QCOMPARE(CEmbeddedHost::GetInstance(), &host);
        auto* const proxy =
            dynamic_cast<wek::fwk::IQormDBProxy*>(wekGetSystem()->GetService("QormDBProxy"));
        ProxyListener listener;
        proxy->AddListener(&listener);
        QSignalSpy const changes(&host, &CEmbeddedHost::LibraryChanged);
        QSignalSpy const choices(&host, &CEmbeddedHost::CompoundTargetChanged);
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QCOMPARE(proxy->GetItemLibrary().GetContextID(), host.GetLibrary().GetContextID());
        CompoundAccessor compound;
        compound.SetFrom(host.GetLibrary().GetModel(host.FindItem(Uid(1)), nullptr));
        Helpers::SetGlobalTarnoCompoundTarget(compound, CompoundAccessor());
        QCOMPARE(choices.size(), 1);
        QVERIFY(host.GetCompoundTarget().GetItemID() == host.FindItem(Uid(1)));
        QCOMPARE(listener.changes, 1);
        host.CloseLibrary();
        QVERIFY(!proxy->GetItemLibrary().IsValid() && !host.GetCompoundTarget().IsValid());
        proxy->RemoveListener(&listener);
        host.OpenLibrary(folder.GetPath());
        QVERIFY(listener.changes == 2 && changes.size() == 3);
    }

    void aListenerMayDeleteTheHost()
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", Object(1, "compound", "Compound"));
        auto const openWithDeletion = [&](Reaction const& open, bool atClosing) {
            auto* const host = new CEmbeddedHost;
            if (atClosing)
                host->OpenItems("before", {});
            connect(host, &CEmbeddedHost::LibraryChanged, this,
                    [listened = host]() mutable { delete std::exchange(listened, nullptr); });
            open();
            QVERIFY(!CEmbeddedHost::GetInstance());
        };
        auto const openFolder = [&] {
            QVERIFY(!CEmbeddedHost::GetInstance()->OpenLibrary(folder.GetPath()));
        };
        openWithDeletion(openFolder, false);
        openWithDeletion(openFolder, true);
        openWithDeletion([] { QVERIFY(!CEmbeddedHost::GetInstance()->OpenItems("items", {})); },
                         true);
        auto* const host = new CEmbeddedHost;
        QVERIFY(!host->OpenLibrary(folder.GetPath(), [&](int done, int /*total*/) {
            if (done == 0)
                delete host;
        }));

        auto* const changed = new CEmbeddedHost;
        QVERIFY(changed->OpenLibrary(folder.GetPath()));
        ItemID const item = changed->FindItem(Uid(1));
        QVERIFY(changed->SetBody(item, {{{"in", ""}}, {}, {}, {}}, "Add input"));
        connect(&changed->GetCommandManager().GetUndoStack(), &QUndoStack::indexChanged, this,
                [changed] { delete changed; });
        changed->CloseLibrary();
        QVERIFY(!CEmbeddedHost::GetInstance());
    }

    void aGuardedCallMayDeleteItsChannel()
    {
        Expect("A message could not be shown");
        Expect("a.json: an unknown failure.");
        auto channel = std::make_unique<CMessageChannel>();
        connect(channel.get(), &CMessageChannel::MessagePosted, [] { throw 2; });
        for (bool const deletes : {false, true})
            QVERIFY(!embeddedhost::RunGuarded(channel.get(), "a.json", [&] {
                if (deletes)
                    channel.reset();
                throw 1;
            }));
    }

    void commandsAreRunAndRemembered()
    {
        m_Manager->Execute(wek::fwk::RefCountedAutoPtr<ICommand>(nullptr));
        Run("A");
        Run("B");
        Stack().setIndex(0);
        Stack().redo();
        QCOMPARE(m_Record, QStringList({"do A", "do B", "undo B", "undo A", "do A"}));
        Run("C");
        QVERIFY2(m_Record.contains("end of B"), "what cannot be done again is not kept");

        auto const fail = [&] {
            Run("within");
            throw std::runtime_error("failed");
        };
        QVERIFY_EXCEPTION_THROWN(Run("fails", fail), std::runtime_error);
        QCOMPARE(GetStack(), QStringList({"A", "C", "within"}));
        m_Manager->Clear();
        QVERIFY(m_Record.contains("end of A"));
        m_Record.clear();
        Run("outer", [&, isFirst = true]() mutable {
            if (std::exchange(isFirst, false))
                Run("inner");
        });
        Stack().setIndex(0);
        QCOMPARE(m_Record, QStringList({"do outer", "do inner", "undo inner", "undo outer"}));
        m_Manager.reset();
        QVERIFY(m_Record.contains("end of outer"));
    }

    void theManagerMayBeDestroyedMeanwhile()
    {
        auto const destroy = [&] {
            m_Manager.reset();
        };
        Run("A", destroy);
        QCOMPARE(m_Record, QStringList({"do A", "end of A"}));
        auto const destroyAtChange = [&] {
            SetUp();
            Run("B");
            connect(&Stack(), &QUndoStack::indexChanged, this, destroy);
        };
        destroyAtChange();
        Run("C");
        QVERIFY(!m_Manager && m_Record.contains("end of B") && m_Record.contains("end of C"));
        destroyAtChange();
        m_Manager->Clear();
        QVERIFY(!m_Manager);

        auto const undo = [&] {
            QEventLoop loop;
            QTimer::singleShot(0, &loop, [&] {
                Stack().undo();
                loop.quit();
            });
            loop.exec();
        };
        destroyAtChange();
        undo();
        QVERIFY(!m_Manager);
        SetUp();
        Run("D", [&, isDone = false]() mutable {
            if (std::exchange(isDone, true))
                destroy();
        });
        Run("E");
        Stack().setIndex(0);
        QVERIFY(!m_Manager);
        QTRY_VERIFY(m_Record.contains("end of E"));
    }

    void commandsMayChangeTheStackWhileTheyAreUndone()
    {
        int left = 2;
        Run("A", [&] {
            if (--left == 0)
                Run("B");
        });
        Stack().undo();
        QVERIFY2(GetStack() == QStringList("B"), "in place of what could be done again");
        QVERIFY(Stack().canUndo() && !Stack().canRedo());
        bool clears = false;
        Run("C", [&] {
            if (clears)
                m_Manager->Clear();
        });
        clears = true;
        Stack().undo();
        QCOMPARE(GetStack(), QStringList());
    }
};

NODEBROWSER_TEST(TestFramework)
#include "tst_framework.moc"
