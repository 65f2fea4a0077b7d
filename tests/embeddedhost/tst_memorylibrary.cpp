#include "libraryfolder.h"
#include "libraryuser.h"
#include "testprogram.h"

#include <QTest>

#include <stdexcept>

using namespace tarno::datamodel;

typedef std::vector<MemoryItem> Items;
Q_DECLARE_METATYPE(MemoryItem)
Q_DECLARE_METATYPE(CEmbeddedHost::SaveItems)

namespace {

/// All of an item on one line.
QString Describe(MemoryItem const& item)
{
    QStringList parts = {item.kind.c_str(),
                         item.uid.c_str(),
                         item.name.c_str(),
                         item.tags.c_str(),
                         item.category.c_str(),
                         item.implements.c_str(),
                         item.isSignature ? "signature" : "",
                         item.isLoop ? "loop" : "",
                         item.isReadOnly ? "read-only" : ""};
    for (auto const& [category, tags] : item.otherTags)
        parts << QString::fromStdString(category + '=' + tags);
    for (GraphPort const& port : item.body.inputs)
        parts << QString::fromStdString("in " + port.name + ':' + port.type);
    for (GraphPort const& port : item.body.outputs)
        parts << QString::fromStdString("out " + port.name + ':' + port.type);
    for (GraphNode const& node : item.body.nodes)
        parts << QString::fromStdString("node " + node.id + ':' + node.item);
    for (GraphConnection const& wire : item.body.connections)
        parts << QString::fromStdString(wire.from.node + '.' + wire.from.port + '>' + wire.to.node
                                        + '.' + wire.to.port);
    return parts.join('|');
}

QStringList Describe(Items const& items)
{
    QStringList lines;
    for (MemoryItem const& item : items)
        lines << Describe(item);
    return lines;
}

MemoryItem MakeFullItem()
{
    MemoryItem item = {"compound", Uid(7), "Größe \u2603", "a;b", "maths"};
    item.implements = "unary";
    item.isLoop = item.isReadOnly = true;
    item.otherTags["Internal"] = "x";
    item.body.inputs = {{"value", "number"}};
    item.body.outputs = {{"result", "number"}};
    item.body.nodes = {{"1", "add", QPointF(1, -2.5)}};
    item.body.connections = {{{"in", "value"}, {"1", "a"}}};
    return item;
}

MemoryItem Wave()
{
    return {TarnoType::gCompound, "wave", "Wave", "motion"};
}

MemoryItem WithNodes(std::vector<GraphNode> const& nodes)
{
    MemoryItem item = Wave();
    item.body.nodes = nodes;
    return item;
}

} // namespace

class TestMemoryLibrary : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void itemsComeBackAsTheyWereGiven()
    {
        Items const items = {MakeFullItem(), Wave(), {LibType::gType, "number", "Number"}};
        QVERIFY(Open(items));
        QCOMPARE(Describe(m_Host->GetItems()), Describe(items));
        QCOMPARE(m_Host->GetLibraryName(), QString("Items"));
        QVERIFY(m_Host->GetLibraryFolder().isEmpty() && !m_Host->IsModified());
    }

    void faultyItemsLeaveTheOpenLibrary_data()
    {
        QTest::addColumn<MemoryItem>("second");
        QTest::addColumn<QString>("reason");
        auto const add = [](char const* name, MemoryItem const& item, char const* reason) {
            QTest::newRow(name) << item << QString(reason);
        };
        std::string const zero("a\0b", 3);
        add("unknown kind", {"gadget", "a", "A"},
            "the kind \"gadget\" is not known, it must be one of solver, polymorphicSolver, "
            "compound, constant, type");
        add("no uid", {"solver", "", "A"}, "the uid is empty");
        add("no name", {"solver", "a", ""}, "the name is empty");
        add("zero byte", {"solver", zero, "A"}, "the uid has a zero byte");
        add("not UTF-8", {"solver", "a", "\xE9"}, "the name is not UTF-8");
        add("long tags", {"solver", "a", "A", std::string(70000, 'x')},
            "the tag text is longer than 65536 characters");
        add("same uid", {"solver", "wave", "A"}, "the uid wave is that of item 1 already");
        add("body", WithNodes({{"1", "a", QPointF(qInf(), 0)}}),
            "the position of the node \"1\" is not a finite number");
        add("node twice", WithNodes({{"1", "a", QPointF()}, {"1", "b", QPointF()}}),
            "nodes[1].id must be a text or a whole number that no other node has, and not \"in\" "
            "or "
            "\"out\"");
    }

    void faultyItemsLeaveTheOpenLibrary()
    {
        QFETCH(MemoryItem, second);
        QFETCH(QString, reason);
        QVERIFY(Open({Wave()}));
        Rename("Ripple");
        ItemLibraryAccessor const open = m_Host->GetLibrary();
        QVERIFY(!m_Host->OpenItems("Other", {Wave(), second}));
        QCOMPARE(GetMessages(*m_Host).last(),
                 QString("\"Other\" cannot be opened: item 2 (\"%1\"): %2.")
                     .arg(QString::fromStdString(second.name), reason));
        QVERIFY(open.Revalidate() && m_Host->GetLibraryName() == "Items");
        QCOMPARE(GetNames(), QStringList("Ripple"));
        QVERIFY(m_Host->GetCommandManager().GetUndoStack().canUndo());
    }

    void uidsAreTheSameInEitherCase()
    {
        QVERIFY(!Open({{"solver", "0000000a-0000-4000-8000-000000000001", "A"},
                       {"solver", "0000000A-0000-4000-8000-000000000001", "B"}}));
    }

    void changesAreUndoneAndSaved()
    {
        QVERIFY(Open({Wave()}, [this](Items const& items) { return Keep(items); }));
        Rename("Ripple");
        QVERIFY(m_User->Tag(m_Host->FindItem("wave"), "sea"));
        QVERIFY(!m_User->Create("New", true, "", "maths").IsNull());
        QVERIFY(m_Host->IsModified() && m_User->Save());
        QCOMPARE(m_Saved.size(), 2);
        QCOMPARE(m_Saved[0], QString("compound|wave|Ripple|sea|||||"));
        QVERIFY(m_Saved[1].endsWith("|New||maths||signature||"));
        QVERIFY(!m_Host->IsModified());

        for (int step = 0; step < 3; ++step)
            m_Host->GetCommandManager().GetUndoStack().undo();
        QCOMPARE(Describe(m_Host->GetItems()), Describe(Items{Wave()}));
        QVERIFY(m_Host->IsModified() && m_User->Save());
        QCOMPARE(m_Saved, Describe(Items{Wave()}));
        m_Host->GetCommandManager().GetUndoStack().redo();
        QCOMPARE(GetNames(), QStringList("Ripple"));
    }

    void tagsKeepLettersThatThePanelCannotShow()
    {
        MemoryItem item = Wave();
        item.tags = "мир;sea; 海 ;é";
        QVERIFY(Open({item}));
        // The panel shows "?" and "???", hands equal tags over once, and in its order.
        m_User->Tag(m_Host->FindItem("wave"), "?;???;new;\xE9");
        QCOMPARE(m_Host->GetItems()[0].tags.c_str(), "海;мир;new;é");
        m_User->Tag(m_Host->FindItem("wave"), "new;what?");
        QCOMPARE(m_Host->GetItems()[0].tags.c_str(), "new;what?");
    }

    void whatIsUndoneIsNotModified()
    {
        QVERIFY(Open({Wave()}));
        m_User->Create("New");
        QVERIFY(m_Host->IsModified());
        m_Host->GetCommandManager().GetUndoStack().undo();
        QVERIFY(!m_Host->IsModified());
        QVERIFY(m_User->Save());
    }

    void refusedSavesKeepTheChanges_data()
    {
        QTest::addColumn<CEmbeddedHost::SaveItems>("save");
        QTest::addColumn<QString>("reason");
        QTest::newRow("nothing to save with")
            << CEmbeddedHost::SaveItems()
            << "it has no folder, and the program did not say how to save it";
        QTest::newRow("refused") << CEmbeddedHost::SaveItems([](Items const&) {
            return QString("the disk is full");
        }) << "the disk is full";
        QTest::newRow("raised") << CEmbeddedHost::SaveItems([](Items const&) -> QString {
            throw std::runtime_error("no connection");
        }) << "no connection";
    }

    void refusedSavesKeepTheChanges()
    {
        QFETCH(CEmbeddedHost::SaveItems, save);
        QFETCH(QString, reason);
        QVERIFY(Open({Wave()}, save));
        QVERIFY(m_User->Save()); // nothing was changed
        Rename("Ripple");
        QVERIFY(!m_User->Save());
        QCOMPARE(GetMessages(*m_Host).last(), "\"Items\" was not saved: " + reason + '.');
        QVERIFY(m_Host->IsModified());
    }

    void savingMayRunAnEventLoop()
    {
        bool hasNested = true;
        QVERIFY(Open({Wave()}, [&](Items const& items) {
            Rename("Later");
            hasNested = m_User->Save();
            return Keep(items);
        }));
        Rename("Ripple");
        QVERIFY(m_User->Save() && !hasNested);
        QCOMPARE(m_Saved, QStringList("compound|wave|Ripple|motion|||||"));
        QVERIFY(m_Host->IsModified());
        m_Host->GetCommandManager().GetUndoStack().undo();
        QVERIFY(!m_Host->IsModified());

        QVERIFY(Open({Wave()}, [this](Items const&) {
            m_Host->CloseLibrary();
            return QString();
        }));
        Rename("Ripple");
        QVERIFY(!m_User->Save());
        QVERIFY(!m_Host->GetLibrary().IsValid());
    }

    void listenersToTheUndoStackCloseAndOpen()
    {
        QUndoStack& stack = m_Host->GetCommandManager().GetUndoStack();
        QVERIFY(Open({Wave()}));
        Rename("Ripple");
        bool isOpened = false;
        auto const listening = connect(&stack, &QUndoStack::indexChanged, this, [&] {
            if (isOpened)
                return;
            m_Host->CloseLibrary();
            isOpened = Open({Wave()});
        });
        m_Host->CloseLibrary();
        QVERIFY(!isOpened && !m_Host->GetLibrary().IsValid());

        QVERIFY(Open({Wave()}));
        Rename("Ripple");
        QVERIFY(isOpened && stack.count() == 0);
        disconnect(listening);
        Rename("Later");
        QCOMPARE(stack.count(), 1);
    }

    void whatNeedsFilesIsRefused()
    {
        // A uid that is the name of a file is still none.
        QVERIFY(Open({{TarnoType::gCompound, Uid(1), "Wave"}, {"solver", __FILE__, "A"}}));
        auto& helper = dynamic_cast<qorm::IRevisionControlUIHelper&>(
            *wekGetSystem()->GetService("RevisionControlUIHelper"));
        auto const object = helper.FindObject(qorm::DbObjectId(Uid(1).c_str()));
        QVERIFY(object.IsValid() && !object.GetDataSource().IsNull());
        bool isCheckedOut = true;
        helper.CheckOut(object, isCheckedOut, true);
        QVERIFY(!isCheckedOut);
        helper.MakeWritable(object, true);
        helper.ShowFiles(object, false);
        QString const noFile = "\"Wave\" has no file: its library is not kept in a folder.";
        QCOMPARE(GetMessages(*m_Host), QStringList({noFile, noFile, noFile}));

        qorm::IHelper::GetHelper(object.GetInstance())
            ->MoveToDataSource(object, qorm::QormPtr<qorm::IDataSource>(), true);
        QCOMPARE(GetMessages(*m_Host).last(),
                 QString("Cannot move \"Wave\": there is no data source to move it to."));
        qorm::Vector<qorm::CQueryResult> sources;
        object.GetManager()->RunQuery(("select object where IS_OF_TYPE_VERSION( {"
                                       + std::string(qorm::UID_Resource().GetStr()) + "} )")
                                          .c_str(),
                                      sources);
        QVERIFY(sources.empty());
        Rename("Ripple", Uid(1));
        QVERIFY(m_Host->GetUnsavedChanges().isEmpty() && m_Host->FindConflicts().isEmpty());
        for (bool const isDone :
             {m_Host->TakeFileFromDisk(__FILE__), m_Host->OverwriteFileOnDisk(__FILE__),
              m_Host->RestoreUnsavedChanges("{}")}) {
            QVERIFY(!isDone);
            QCOMPARE(GetMessages(*m_Host).last(), QString("\"Items\" is not kept in a folder."));
        }
    }

    void foldersAndItemsTakeTurns()
    {
        LibraryFolder const folder;
        folder.Write("project/wave.json", Object(1, "compound", "Wave"));
        QVERIFY(Open({{TarnoType::gCompound, Uid(1), "Ripple"}}));
        QVERIFY(m_Host->OpenLibrary(folder.GetPath()));
        QCOMPARE(GetNames(), QStringList("Wave"));
        QVERIFY(Open({{TarnoType::gCompound, Uid(1), "Ripple"}}));
        QCOMPARE(GetNames(), QStringList("Ripple"));
    }

private:
    bool Open(Items const& items, CEmbeddedHost::SaveItems const& save = {})
    {
        return m_Host->OpenItems("Items", items, save);
    }

    QString Keep(Items const& items)
    {
        m_Saved = Describe(items);
        return QString();
    }

    QStringList GetNames() const
    {
        QStringList names;
        for (MemoryItem const& item : m_Host->GetItems())
            names << QString::fromStdString(item.name);
        return names;
    }

    bool Rename(char const* name, std::string const& uid = "wave")
    {
        return m_User->Rename(m_Host->FindItem(uid), name);
    }

    void SetUp() override
    {
        m_Host.reset(new CEmbeddedHost);
        m_User.reset(new LibraryUser(*m_Host));
        m_Saved.clear();
    }

    void TearDown() override
    {
        m_User.reset();
        m_Host.reset();
    }

    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<LibraryUser> m_User;
    QStringList m_Saved;
};

NODEBROWSER_TEST(TestMemoryLibrary)
#include "tst_memorylibrary.moc"
