#include "libraryfolder.h"
#include "loggedtest.h"

#include "framework/guardedcall.h"

#include <sourcecontrol.h>

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <stdexcept>

using namespace tarno::datamodel;
using wek::fwk::ICommand;

namespace {

/// Writes down when it is done and undone.
class Command : public ICommand
{
public:
    typedef std::function<void()> Reaction;

    Command(QStringList& record, char const* text, Reaction const& react = Reaction())
        : m_Record(record)
        , m_Text(text)
        , m_React(react)
    {
        ++living;
    }

    static int living;

    void AddRef() override
    {
        ++m_References;
    }
    void Release() override
    {
        if (--m_References == 0)
            delete this;
    }
    void Do() override
    {
        m_Record << QStringLiteral("do ") + m_Text;
        if (m_React)
            m_React();
    }
    void Undo() override
    {
        m_Record << QStringLiteral("undo ") + m_Text;
        if (m_React)
            m_React();
    }
    char const* GetText() const override
    {
        return m_Text;
    }

private:
    ~Command() override
    {
        --living;
    }

    QStringList& m_Record;
    char const* const m_Text;
    Reaction m_React;
    int m_References = 0;
};

int Command::living = 0;

void Run(CCommandManager& manager, ICommand* command)
{
    manager.Execute(wek::fwk::RefCountedAutoPtr<ICommand>(command));
}

QStringList GetStack(CCommandManager& manager)
{
    QStringList texts;
    for (int i = 0; i < manager.GetUndoStack().count(); ++i)
        texts << manager.GetUndoStack().text(i);
    return texts;
}

class Service : public wek::IBase
{
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

/// A sender of tracked connections.
class Signal : public IKvTrackedSignal
{
public:
    void Disconnect(KvTrackedSlot*) override
    {
        ++disconnected;
    }
    int disconnected = 0;
};

} // namespace

class TestFramework : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void EverythingIsSafeWithoutAHost()
    {
        QVERIFY(!CEmbeddedHost::GetInstance());
        QVERIFY(wekGetSystem() && !wekGetSystem()->GetService("QormDBProxy"));
        QVERIFY(!wekGetSystem()->GetService(nullptr));
        QVERIFY(!GetApplicationCommandManager());
        Helpers::SetGlobalTarnoCompoundTarget(CompoundAccessor(), CompoundAccessor());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
    }

    void ServicesAreReplacedByName()
    {
        CEmbeddedHost host;
        Service service;
        auto& services = host.GetServices();
        wek::IBase* const own = wekGetSystem()->GetService("QormDBProxy");
        QVERIFY(dynamic_cast<wek::fwk::IQormDBProxy*>(own));
        QCOMPARE(services.SetService("QormDBProxy", &service), own);
        QCOMPARE(wekGetSystem()->GetService("QormDBProxy"), &service);
        services.RemoveService("QormDBProxy", own);
        QCOMPARE(wekGetSystem()->GetService("QormDBProxy"), &service);
        QCOMPARE(services.SetService("QormDBProxy", nullptr), &service);
        QVERIFY(!wekGetSystem()->GetService("QormDBProxy"));
    }

    void AReplacedServiceOutlivesTheHost()
    {
        Service service;
        {
            CEmbeddedHost host;
            host.GetServices().SetService("RevisionControlUIHelper", &service);
        }
        QCOMPARE(wekGetSystem()->GetService("RevisionControlUIHelper"), &service);
        CServiceRegistry::GetInstance().RemoveService("RevisionControlUIHelper", &service);
    }

    void TheProxyShowsTheOpenLibrary()
    {
        LibraryFolder const folder;
        CEmbeddedHost host;
        auto* const proxy =
            dynamic_cast<wek::fwk::IQormDBProxy*>(wekGetSystem()->GetService("QormDBProxy"));
        ProxyListener listener;
        proxy->AddListener(&listener);
        QSignalSpy const changes(&host, &CEmbeddedHost::LibraryChanged);
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QCOMPARE(proxy->GetItemLibrary().GetContextID(), host.GetLibrary().GetContextID());
        QCOMPARE(listener.changes, 1);
        host.CloseLibrary();
        host.CloseLibrary();
        QVERIFY(!proxy->GetItemLibrary().IsValid());
        proxy->RemoveListener(&listener);
        host.OpenLibrary(folder.GetPath());
        QCOMPARE(listener.changes, 2);
        QCOMPARE(changes.size(), 3);
    }

    void NoLibraryIsOpenedWhileOneIsOpened()
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", Object(1, "compound", "Compound"));
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        bool isOpened = false;
        connect(&host, &CEmbeddedHost::LibraryChanged, this, [&] {
            if (!host.GetLibrary().IsValid())
                isOpened = host.OpenLibrary(folder.GetPath());
        });
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QVERIFY(!isOpened);
        QVERIFY(!host.FindItem(Uid(1)).IsNull());
        host.CloseLibrary();
        QVERIFY2(isOpened, "closing is no opening");
    }

    void OneHostAtATime()
    {
        LibraryFolder const folder;
        CEmbeddedHost host;
        Expect("There is an embedded host already");
        {
            CEmbeddedHost second;
            QVERIFY(!second.OpenLibrary(folder.GetPath()));
        }
        QCOMPARE(CEmbeddedHost::GetInstance(), &host);
        QVERIFY(wekGetSystem()->GetService("QormDBProxy"));
    }

    void CompoundTarget()
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", Object(1, "compound", "Compound"));
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QSignalSpy const choices(&host, &CEmbeddedHost::CompoundTargetChanged);
        CompoundAccessor compound;
        compound.SetFrom(host.GetLibrary().GetModel(host.FindItem(Uid(1)), nullptr));
        Helpers::SetGlobalTarnoCompoundTarget(compound, CompoundAccessor());
        Helpers::SetGlobalTarnoCompoundTarget(compound, CompoundAccessor());
        QCOMPARE(choices.size(), 2);
        QVERIFY(host.GetCompoundTarget().GetItemID() == host.FindItem(Uid(1)));
        host.CloseLibrary();
        QVERIFY(!host.GetCompoundTarget().IsValid());
    }

    void MessagesAreKeptAndSent()
    {
        CMessageChannel channel;
        QSignalSpy spy(&channel, &CMessageChannel::MessagePosted);
        for (std::size_t i = 0; i <= CMessageChannel::kLogSize; ++i)
            channel.Post(eSeverity::kWarning, QString::number(i));
        QCOMPARE(channel.GetLog().size(), CMessageChannel::kLogSize);
        QCOMPARE(channel.GetLog().front().text, QString("1"));
        QCOMPARE(spy.last().at(0).value<eSeverity>(), eSeverity::kWarning);
        channel.ClearLog();
        QVERIFY(channel.GetLog().empty());
    }

    void WhatAGuardedCallRaisesIsSaid()
    {
        Expect("A message could not be shown");
        auto channel = std::make_unique<CMessageChannel>();
        connect(channel.get(), &CMessageChannel::MessagePosted, [] { throw 2; });
        auto const run = [&](std::function<void()> const& call) {
            return embeddedhost::RunGuarded(channel.get(), "a.json", call);
        };
        QVERIFY(run([] {}));
        QVERIFY(!run([] { throw std::runtime_error("refused"); }));
        QVERIFY(!run([] { throw 1; }));
        QCOMPARE(channel->GetLog().at(0).text, QString("a.json: refused."));
        QCOMPARE(channel->GetLog().at(1).text, QString("a.json: an unknown failure."));
        Expect("a.json: an unknown failure.");
        QVERIFY(!run([&] {
            channel.reset();
            throw 1;
        }));
    }

    void CommandsAreRunAndRemembered()
    {
        {
            CCommandManager manager;
            Run(manager, nullptr);
            Run(manager, new Command(m_Record, "A"));
            Run(manager, new Command(m_Record, "B"));
            manager.GetUndoStack().undo();
            manager.GetUndoStack().undo();
            manager.GetUndoStack().redo();
            QCOMPARE(m_Record, QStringList({"do A", "do B", "undo B", "undo A", "do A"}));
            Run(manager, new Command(m_Record, "C"));
            QCOMPARE(GetStack(manager), QStringList({"A", "C"}));
            QCOMPARE(Command::living, 2);
        }
        QCOMPARE(Command::living, 0);
    }

    void ACommandThatFailsIsNotKept()
    {
        CCommandManager manager;
        Run(manager, new Command(m_Record, "A"));
        auto const fail = [&] {
            Run(manager, new Command(m_Record, "within"));
            throw std::runtime_error("failed");
        };
        QVERIFY_EXCEPTION_THROWN(Run(manager, new Command(m_Record, "B", fail)),
                                 std::runtime_error);
        QCOMPARE(GetStack(manager), QStringList({"A", "within"}));
        QCOMPARE(Command::living, 2);
    }

    void CommandsWithinCommandsAreUndoneInReverse()
    {
        CCommandManager manager;
        auto const once = [&](char const* text) {
            return [&manager, this, text, isFirst = true]() mutable {
                if (std::exchange(isFirst, false))
                    Run(manager, new Command(m_Record, text));
            };
        };
        Run(manager, new Command(m_Record, "outer", once("inner")));
        QCOMPARE(GetStack(manager), QStringList({"outer", "inner"}));
        manager.GetUndoStack().setIndex(0);
        QCOMPARE(m_Record, QStringList({"do outer", "do inner", "undo inner", "undo outer"}));
    }

    void ACommandDuringUndoTakesThePlaceOfRedo()
    {
        CCommandManager manager;
        int left = 2;
        Run(manager, new Command(m_Record, "A", [&] {
                if (--left == 0)
                    Run(manager, new Command(m_Record, "B"));
            }));
        manager.GetUndoStack().undo();
        QCOMPARE(m_Record, QStringList({"do A", "undo A", "do B"}));
        QCOMPARE(GetStack(manager), QStringList("B"));
        QVERIFY(manager.GetUndoStack().canUndo() && !manager.GetUndoStack().canRedo());
    }

    void TheStackIsClearedWithinACommand()
    {
        CCommandManager manager;
        bool clears = false;
        auto const react = [&] {
            if (clears)
                manager.Clear();
        };
        Run(manager, new Command(m_Record, "A", react));
        Run(manager, new Command(m_Record, "B", react));
        clears = true;
        manager.GetUndoStack().undo();
        QCOMPARE(GetStack(manager), QStringList());
        QCOMPARE(Command::living, 0);
    }

    void EitherEndOfATrackedConnectionGoesFirst()
    {
        Signal signal;
        {
            KvTrackedSlotList entries;
            KvTrackedSlot* const first = entries.Add();
            KvTrackedSlot* const second = entries.Add();
            first->Connect(&signal);
            second->Connect(&signal);
            QVERIFY(first->IsConnected());
            second->Reset();
            QVERIFY(!second->IsConnected());
        }
        QCOMPARE(signal.disconnected, 1);
    }

private:
    void SetUp() override
    {
        m_Record.clear();
    }

    QStringList m_Record;
};

NODEBROWSER_TEST_MAIN(TestFramework)
#include "tst_framework.moc"
