#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include "model/accessorcontext.h"

#include <QTest>

#include <functional>
#include <stdexcept>

using namespace tarno::datamodel;

namespace {

/// Writes down what it is told, and then does as the test likes.
class Listener : public IItemTOCNotification, public IItemLibraryNotification
{
public:
    typedef std::function<void()> Reaction;

    Listener(QStringList& record, QString const& name, Reaction const& react = Reaction())
        : m_Record(record)
        , m_Name(name)
        , m_React(react)
    {}

    void Register(ItemLibraryAccessor const& library)
    {
        ItemTOCAccessor const toc = GetTOC(library);
        library.AddNotification(this, kItemLibraryNotificationInterface, library.GetContextID());
        toc.AddNotification(this, kItemTOCNotificationInterface, toc.GetContextID());
    }

    void Unregister(ItemLibraryAccessor const& library)
    {
        library.RemoveNotification(this, kItemLibraryNotificationInterface, library.GetContextID());
        ItemTOCAccessor const toc(library.GetContext(), embeddedhost::kTocHandle);
        toc.RemoveNotification(this, kItemTOCNotificationInterface, toc.GetContextID());
    }

    void SetReaction(Reaction const& react)
    {
        m_React = react;
    }

    void ItemAdded(ItemAccessor& item) override
    {
        Tell("added " + QString::fromStdString(item.GetItemID().Serialize()));
        item = ItemAccessor();
    }
    void ItemRemoved(ItemAccessor& item) override
    {
        Tell("removed " + QString::fromStdString(item.GetItemID().Serialize()));
    }
    void OnBeginChanges(ItemLibraryAccessor& library) override
    {
        Tell(library.IsValid() ? "begin" : "begin of nothing");
        library = ItemLibraryAccessor();
    }
    void OnEndChanges(ItemLibraryAccessor&) override
    {
        Tell("end");
    }
    void LibraryInvalidated(ItemLibraryAccessor&) override
    {
        Tell("invalidated");
    }
    void ItemNameChanged(ItemLibraryAccessor&, ItemID const& id) override
    {
        Tell("name " + QString::fromStdString(id.Serialize()));
    }
    void ItemTagsChanged(ItemLibraryAccessor&, ItemID const&, char const* category) override
    {
        Tell(QStringLiteral("tags ") + category);
    }
    void ItemAccessStateChanged(ItemLibraryAccessor&, ItemID const&, long state) override
    {
        Tell(QStringLiteral("state %1").arg(state));
    }
    void OnPreCommit(ItemLibraryAccessor&, bool* cancel) override
    {
        *cancel = m_Name == "canceller";
        Tell("pre");
    }
    void OnPostCommit(ItemLibraryAccessor&) override
    {
        Tell("post");
    }

private:
    void Tell(QString const& what)
    {
        m_Record << m_Name + ": " + what;
        // The reaction may destroy this listener, and the reaction with it.
        Reaction const react = m_React;
        if (react)
            react();
    }

    QStringList& m_Record;
    QString const m_Name;
    Reaction m_React;
};

} // namespace

class TestNotifications : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void EveryListenerIsToldInOrder()
    {
        Listener first(m_Record, "1");
        Listener second(m_Record, "2");
        first.Register(m_Library);
        second.Register(m_Library);
        first.Register(m_Library);
        ItemID const id = m_Host->FindItem(Uid(1));

        GetNotifier().BeginChanges();
        GetNotifier().ItemAdded(id);
        GetNotifier().TagsChanged(id, "ApplicationTags");
        GetNotifier().AccessStateChanged(id, 0x400000);
        QString const item = QString::fromStdString(id.Serialize());
        QCOMPARE(m_Record,
                 QStringList({"1: begin", "2: begin", "1: added " + item, "2: added " + item,
                              "1: tags ApplicationTags", "2: tags ApplicationTags",
                              "1: state 4194304", "2: state 4194304"}));
        first.Unregister(m_Library);
        second.Unregister(m_Library);
        GetNotifier().Invalidated();
        GetNotifier().ItemRemoved(id);
        QCOMPARE(m_Record.size(), 8);
    }

    void AnyListenerCancelsACommit()
    {
        Listener canceller(m_Record, "canceller");
        Listener other(m_Record, "other");
        canceller.Register(m_Library);
        other.Register(m_Library);
        QVERIFY(!GetNotifier().PreCommit());
        canceller.Unregister(m_Library);
        QVERIFY(GetNotifier().PreCommit());
        QCOMPARE(m_Record, QStringList({"canceller: pre", "other: pre", "other: pre"}));
        other.Unregister(m_Library);
    }

    void RegistrationNeedsInterfaceAndContext()
    {
        Listener listener(m_Record, "1");
        IItemLibraryNotification* const notification = &listener;
        ContextID const context = m_Library.GetContextID();
        m_Library.AddNotification(notification, kItemTOCNotificationInterface, context);
        m_Library.AddNotification(notification, kItemLibraryNotificationInterface, context + 1);
        m_Library.AddNotification(nullptr, kItemLibraryNotificationInterface, context);
        GetNotifier().BeginChanges();
        QCOMPARE(m_Record, QStringList());
    }

    void ListenersComeAndGoWhileTheyAreTold()
    {
        Listener late(m_Record, "late");
        Listener self(m_Record, "self");
        Listener victim(m_Record, "victim");
        Listener last(m_Record, "last");
        self.SetReaction([&] {
            self.Unregister(m_Library);
            victim.Unregister(m_Library);
            late.Register(m_Library);
        });
        for (Listener* listener : {&self, &victim, &last})
            listener->Register(m_Library);

        GetNotifier().EndChanges();
        QCOMPARE(m_Record, QStringList({"self: end", "last: end"}));
        m_Record.clear();
        GetNotifier().EndChanges();
        QCOMPARE(m_Record, QStringList({"last: end", "late: end"}));
        late.Unregister(m_Library);
        last.Unregister(m_Library);
    }

    void ListenersAreDestroyedWhileTheyAreTold()
    {
        auto mortal = std::make_unique<Listener>(m_Record, "mortal");
        auto victim = std::make_unique<Listener>(m_Record, "victim");
        mortal->Register(m_Library);
        victim->Register(m_Library);
        mortal->SetReaction([&] {
            victim->Unregister(m_Library);
            victim.reset();
            mortal->Unregister(m_Library);
            mortal.reset();
        });
        GetNotifier().EndChanges();
        GetNotifier().EndChanges();
        QCOMPARE(m_Record, QStringList("mortal: end"));
    }

    void DeliveriesNest()
    {
        Listener first(m_Record, "1");
        Listener second(m_Record, "2");
        first.Register(m_Library);
        second.Register(m_Library);
        first.SetReaction([&] {
            first.SetReaction(Listener::Reaction());
            GetNotifier().EndChanges();
            second.Unregister(m_Library);
        });
        GetNotifier().BeginChanges();
        QCOMPARE(m_Record, QStringList({"1: begin", "1: end", "2: end"}));
        // The place of the second is free again.
        second.Register(m_Library);
        GetNotifier().EndChanges();
        QCOMPARE(m_Record.size(), 5);
        first.Unregister(m_Library);
        second.Unregister(m_Library);
    }

    /// The change is made and can be undone, the others are told, and the user is.
    void AnExceptionStaysWithItsListener()
    {
        Listener thrower(m_Record, "thrower", [] { throw std::runtime_error("refused"); });
        Listener other(m_Record, "other");
        thrower.Register(m_Library);
        other.Register(m_Library);
        QVERIFY(LibraryUser(*m_Host).Tag(m_Host->FindItem(Uid(1)), "light"));
        QCOMPARE(m_Record,
                 QStringList({"thrower: begin", "other: begin", "thrower: tags ApplicationTags",
                              "other: tags ApplicationTags", "thrower: end", "other: end"}));
        m_Host->GetCommandManager().GetUndoStack().undo();
        QVERIFY(!m_Host->IsModified());
        QCOMPARE(m_Host->GetMessages().GetLog().size(), std::size_t(6));
        QVERIFY(GetMessages(*m_Host).front().contains("refused"));
        thrower.Unregister(m_Library);
        other.Unregister(m_Library);
    }

    void AnExceptionStaysWithTheHostsSlot()
    {
        int calls = 0;
        connect(m_Host.get(), &CEmbeddedHost::ContentChanged, this, [&] {
            ++calls;
            throw std::runtime_error("refused");
        });
        LibraryUser(*m_Host).Tag(m_Host->FindItem(Uid(1)), "light");
        QTRY_COMPARE(calls, 1);
        QVERIFY(GetMessages(*m_Host).front().contains("refused"));
    }

    void TheLibraryIsClosedWhileListenersAreTold_data()
    {
        QTest::addColumn<bool>("isHostDestroyed");
        QTest::newRow("closed") << false;
        QTest::newRow("host destroyed") << true;
    }

    void TheLibraryIsClosedWhileListenersAreTold()
    {
        QFETCH(bool, isHostDestroyed);
        Listener closer(m_Record, "closer", [&] {
            if (isHostDestroyed)
                m_Host.reset();
            else
                m_Host->CloseLibrary();
        });
        Listener other(m_Record, "other");
        closer.Register(m_Library);
        other.Register(m_Library);
        GetNotifier().NameChanged(m_Host->FindItem(Uid(1)));
        QCOMPARE(m_Record.size(), 2);
        QVERIFY(!m_Library.Revalidate());
        closer.Unregister(m_Library);
        other.Unregister(m_Library);
    }

    void TheLibraryIsClosedWhileFilesAreTaken()
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", Object(1, "compound", "Glow"));
        QVERIFY(m_Host->OpenLibrary(folder.GetPath()));
        LibraryUser(*m_Host).Rename(m_Host->FindItem(Uid(1)), "Ours");
        folder.Write("project/a.json", Object(1, "compound", "Theirs"));
        m_Library = m_Host->GetLibrary();
        Listener closer(m_Record, "closer", [&] { m_Host->CloseLibrary(); });
        closer.Register(m_Library);
        QVERIFY(m_Host->TakeFileFromDisk(folder.GetPath("project/a.json")));
        QVERIFY(!m_Library.Revalidate());
        closer.Unregister(m_Library);

        // What an interrupted save left is told, and that closes the library, too.
        folder.Write("project/.nodebrowser/.gitignore",
                     "# Made by a save of the node browser, which removes it.\n*\n");
        folder.Write("project/.nodebrowser/1-a-b-x.staged", "of another program");
        connect(&m_Host->GetMessages(), &CMessageChannel::MessagePosted, m_Host.get(),
                [&] { m_Host->CloseLibrary(); });
        QVERIFY(!m_Host->OpenLibrary(folder.GetPath()));
    }

private:
    void SetUp() override
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", Object(1, "solver", "Solver"));
        m_Record.clear();
        m_Host.reset(new CEmbeddedHost);
        QVERIFY(m_Host->OpenLibrary(folder.GetPath()));
        m_Library = m_Host->GetLibrary();
    }

    void TearDown() override
    {
        m_Library = ItemLibraryAccessor();
        m_Host.reset();
    }

    embeddedhost::CLibraryNotifier& GetNotifier()
    {
        return m_Library.GetContext()->GetNotifier();
    }

    QStringList m_Record;
    std::unique_ptr<CEmbeddedHost> m_Host;
    ItemLibraryAccessor m_Library;
};

NODEBROWSER_TEST_MAIN(TestNotifications)
#include "tst_notifications.moc"
