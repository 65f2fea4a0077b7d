#include "changerecorder.h"
#include "hosttest.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

using namespace embeddedhost;
using namespace tarno::datamodel;

/// Changes of an open library, what its listeners are told of them, and taking them back.
class TestChanges : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        m_Folder->Write("project/glow.json",
                        Object(1, "compound", "Glow", R"(, "later": {"b": 1, "a": [2]})"));
        m_Folder->Write("project/ramp.json",
                        Object(2, "solver", "Ramp", R"(, "tags": {"ApplicationTags": "fade"})"));
        m_Folder->Write("factory/all.json",
                        '[' + Object(3, "compound", "Blur", R"(, "signature": true,
                                     "inputs": [{"name": "image", "type": "local:image"}])")
                            + ',' + Object(4, "constant", "Pi") + ']');
    }

    void Open() override
    {
        HostTest::Open();
        m_Recorder = std::make_unique<ChangeRecorder>(m_Host->GetLibrary());
    }

    void Close() override
    {
        m_Recorder.reset();
        m_Record.clear();
        HostTest::Close();
    }

private:
    /// A change by its name: "rename1:Other", "tag1:a;b", "create:New", "implement3:New", where the
    /// number is that of an item, "place:1.5" for the body of the first, and "move1:3" to where the
    /// other item is.
    bool Do(QString const& change)
    {
        QString const what = change.section(':', 0, 0);
        int const number = what.back().digitValue();
        QByteArray const text = change.section(':', 1).toLatin1();
        if (what.startsWith("rename"))
            return m_User->Rename(Item(number), text);
        if (what.startsWith("tag"))
            return m_User->Tag(Item(number), text);
        if (what.startsWith("move")) {
            MoveObject(Uid(number), FindObject(Uid(text.toInt())).GetDataSource());
            return false;
        }
        if (what == "place") {
            GraphNode const node = {"n", Uid(2), QPointF(text.toDouble(), -1e300)};
            return m_Host->SetBody(Item(1), {{}, {}, {node}, {}}, "Add");
        }
        return !m_User->Create(text, false, number > 0 ? Uid(number).c_str() : "", "Images/Blur")
                    .IsNull();
    }

    void Rewrite(QString const& file, QByteArray const& content)
    {
        m_Folder->Write(file, content);
        m_Host->CheckFolder();
    }

    std::unique_ptr<ChangeRecorder> AddListener(char const* name)
    {
        return std::make_unique<ChangeRecorder>(m_Host->GetLibrary(), name, &m_Record);
    }

    QStringList TakeRecord()
    {
        return std::exchange(m_Record, {});
    }

    std::unique_ptr<ChangeRecorder> m_Recorder;
    /// Of the other listeners.
    QStringList m_Record;

private Q_SLOTS:
    void changesAreToldAndTakenBack_data()
    {
        AddColumns<QString, QString, QString>("told", "toldBack", "menu");
        AddRow("rename1:Soft Glow", "name Soft Glow", "name Glow", "Rename Glow");
        AddRow("tag2:", "tags Ramp ApplicationTags", "tags Ramp ApplicationTags", "Tag Ramp");
        AddRow("create:Fast Blur", "added Fast Blur", "removed", "Create Fast Blur");
        AddRow("implement3:Sharp", "added Sharp", "removed", "Create Sharp");
        AddRow("place:1e300", "", "", "Add");
    }

    void changesAreToldAndTakenBack()
    {
        QFETCH(QString, told);
        QFETCH(QString, toldBack);
        auto const takeTold = [&] {
            return m_Recorder->Take().join('|').remove("begin|").remove("end").remove('|');
        };
        QVERIFY(Do(QTest::currentDataTag()));
        QByteArray const changes = m_Host->GetUnsavedChanges();
        QCOMPARE(takeTold(), told);
        QVERIFY(m_Host->IsModified() && !changes.isEmpty() && Log().isEmpty());
        QTEST(Stack().undoText(), "menu");
        Stack().undo();
        QCOMPARE(takeTold(), toldBack);
        QVERIFY2(!m_Host->IsModified(), "what is on disk again is not modified");
        QCOMPARE(TagsOf(2), QString("fade"));
        QVERIFY(m_Host->GetBody(Item(1)).nodes.empty());
        Stack().redo();
        QCOMPARE(takeTold(), told);
        QCOMPARE(m_Host->GetUnsavedChanges(), changes);
    }

    void refuses_data()
    {
        AddColumns<QString>("reason");
        AddRow("create:", "name is empty");
        AddRow("create:GLOW", "\"GLOW\" is used already");
        AddRow("implement1:New", "no signature with the uid");
        AddRow("rename3:New", "\"Factory\" is read-only");
        AddRow("place:nan", "\"n\" is not a finite number");
        AddRow("move1:3", "Cannot move \"Glow\": the data source \"Factory\" is read-only.");
        AddRow("move3:1", "it is read-only where it is");
        AddRow("move1:2", "it is there already");
        AddRow("move1:9", "there is no data source to move it to");
    }

    void refuses()
    {
        QFETCH(QString, reason);
        QVERIFY(!Do(QString::fromUtf8(QTest::currentDataTag())));
        QVERIFY2(Log().contains(reason), qPrintable(Log()));
        QCOMPARE(m_Recorder->Take(), QStringList());
        QVERIFY(Stack().count() == 0 && m_Host->GetUnsavedChanges().isEmpty());
    }

    void undoLeavesAloneWhatOthersChanged()
    {
        QVERIFY(Do("tag2:fade") && Do("rename1:Glow"));
        QVERIFY2(Stack().count() == 0 && m_Recorder->Take().isEmpty(), "it was so already");
        QVERIFY(Do("place:1") && Do("rename1:Soft Glow") && m_User->Save());
        Rewrite("project/glow.json",
                Content("project/glow.json")
                    .replace("[2]", "[3]")
                    .replace("\"name\"", R"("tags": {"ApplicationTags": "other"}, "name")"));
        Stack().setIndex(0);
        QCOMPARE(NameOf(1) + ' ' + TagsOf(1), QString("Glow other"));
        QVERIFY(m_Host->GetBody(Item(1)).nodes.empty() && m_User->Save());
        QVERIFY(Content("project/glow.json").contains("[3]"));
    }

    /// A body is read as far as it is well formed. What the host does not know of it is kept, by
    /// the first entry that is the same.
    void keepsWhatABodyDoesNotKnow()
    {
        Rewrite("project/glow.json", Object(1, "compound", "Glow", R"(, "outputs": {},
            "inputs": [{"name": "a", "type": "t", "more": 1}, "odd"],
            "nodes": [{"id": 7, "item": "i", "position": [0, 2.5], "more": 2}, "odd"],
            "connections": [{"from": ["7", "o"], "to": ["7", "a"], "more": 3},
                            {"from": ["7", "o"], "to": ["7", "a"], "more": 4}],
            "portNodes": {"in": "odd", "more": 5})"));
        GraphBody body = m_Host->GetBody(Item(1));
        QVERIFY(m_Host->GetBody(ItemID()).nodes.empty());
        body.nodes.at(0).position.rx() = 1;
        body.outputsPosition = QPointF(20, -40);
        QVERIFY(m_Host->SetBody(Item(1), body, "Move node") && m_User->Save());
        auto const saved =
            nlohmann::ordered_json::parse(Content("project/glow.json").toStdString());
        QCOMPARE(saved["inputs"].dump(), std::string(R"([{"name":"a","type":"t","more":1}])"));
        QCOMPARE(saved["nodes"].dump(),
                 std::string(R"([{"id":7,"item":"i","position":[1,2.5],"more":2}])"));
        QCOMPARE(saved["connections"].dump(),
                 std::string(R"([{"from":["7","o"],"to":["7","a"],"more":3},)"
                             R"({"from":["7","o"],"to":["7","a"],"more":3}])"));
        QCOMPARE(saved["portNodes"].dump(), std::string(R"({"more":5,"out":[20,-40]})"));
    }

    /// Commands that are left on a stack of somebody else's do nothing to another library.
    void commandsOfAClosedLibraryDoNothing()
    {
        CCommandManager manager;
        CompoundModifierAccessor modifier;
        modifier.SetFrom(m_Host->GetLibrary().GetModel(Item(1), nullptr));
        QVERIFY(modifier.RenameCompound("Soft Glow", &manager));
        m_Recorder.reset();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        manager.GetUndoStack().undo();
        manager.GetUndoStack().redo();
        QCOMPARE(NameOf(1), QString("Glow"));
    }

    void everyListenerIsToldInOrder()
    {
        auto const first = AddListener("1: ");
        auto const second = AddListener("2: ");
        first->Register();
        Do("tag1:light");
        QCOMPARE(TakeRecord(), QStringList({"1: begin", "2: begin", "1: tags Glow ApplicationTags",
                                            "2: tags Glow ApplicationTags", "1: end", "2: end"}));
        first->refusesCommits = true;
        auto const contents = m_Folder->Read();
        QVERIFY(!m_User->Save() && m_User->GetSaveMessages().size() == 1);
        QVERIFY(m_User->IsModified(Item(1)) && m_Folder->Read() == contents);
        QCOMPARE(TakeRecord(),
                 QStringList({"1: precommit", "2: precommit", "1: postcommit", "2: postcommit"}));
        first->Unregister();
        second->Unregister();
        QVERIFY2(m_User->Save() && m_Record.isEmpty(), "who has left refuses nothing");
    }

    void listenersComeAndGoWhileTheyAreTold()
    {
        auto const late = AddListener("late: ");
        late->Unregister();
        auto mortal = AddListener("mortal: ");
        auto victim = AddListener("victim: ");
        auto const last = AddListener("last: ");
        mortal->onTold = [&] {
            victim.reset();
            mortal.reset();
            late->Register();
        };
        Do("tag1:light");
        QCOMPARE(TakeRecord(),
                 QStringList({"mortal: begin", "last: begin", "last: tags Glow ApplicationTags",
                              "late: tags Glow ApplicationTags", "last: end", "late: end"}));
        // A change within a change, which is kept.
        last->onTold = [&] {
            last->onTold = nullptr;
            Do("tag2:nested");
            late->Unregister();
        };
        Do("tag1:dark");
        QCOMPARE(TakeRecord().filter("late: "),
                 QStringList({"late: begin", "late: tags Ramp ApplicationTags", "late: end"}));
        QCOMPARE(TagsOf(1) + ' ' + TagsOf(2), QString("dark nested"));
    }

    /// The change is made and can be undone, the others are told, and the user is.
    void anExceptionStaysWithItsListener()
    {
        auto const thrower = AddListener("thrower: ");
        auto const other = AddListener("other: ");
        thrower->onTold = [] {
            throw std::runtime_error("refused");
        };
        connect(m_Host.get(), &CEmbeddedHost::ContentChanged, this,
                [] { throw std::runtime_error("refused, too"); });
        QVERIFY(Do("tag1:light"));
        QCOMPARE(TakeRecord().filter("other: ").size(), 3);
        Stack().undo();
        QVERIFY(!m_Host->IsModified());
        QCOMPARE(Log().count("refused"), 6);
        QTRY_COMPARE(Log().count("refused, too"), 1);
    }

    void theLibraryIsClosedWhileListenersAreTold()
    {
        for (int const round : {0, 1, 2, 3}) {
            // At the beginning of a new object, or of one whose uid was that of another until then.
            bool const isTwin = round > 1;
            int told = isTwin ? -3 : 0;
            m_Folder->Write("project/glow.json", Object(1, "compound", "Glow"));
            m_Folder->Write("project/new.json", isTwin ? Object(1, "compound", "Twin") : "[]");
            Open();
            auto const closer = AddListener("closer: ");
            auto const other = AddListener("other: ");
            closer->onTold = [&] {
                if (++told == 1)
                    round % 2 == 1 ? m_Host.reset() : m_Host->CloseLibrary();
            };
            Rewrite(isTwin ? "project/glow.json" : "project/new.json",
                    isTwin ? "[]" : Object(9, "compound", "New"));
            QCOMPARE(TakeRecord().mid(isTwin ? 6 : 0),
                     QStringList({"closer: begin", "other: begin", "closer: end", "other: end"}));
        }
    }

    void theLibraryIsClosedWhileFilesAreTaken()
    {
        m_User->Rename(Item(1), "Ours");
        Rewrite("project/glow.json", Object(1, "compound", "Theirs"));
        auto const closer = AddListener("");
        closer->onTold = [&] {
            m_Host->CloseLibrary();
        };
        QVERIFY(m_Host->TakeFileFromDisk(m_Folder->GetPath("project/glow.json")));
        QVERIFY(!m_Host->GetLibrary().IsValid());

        // What an interrupted save left is told, and that closes the library, too.
        m_Folder->Write("project/.nodebrowser/.gitignore",
                        "# Made by a save of the node browser, which removes it.\n*\n");
        m_Folder->Write("project/.nodebrowser/1-a-b-x.staged", "of another program");
        connect(&m_Host->GetMessages(), &CMessageChannel::MessagePosted, m_Host.get(),
                [&] { m_Host->CloseLibrary(); });
        QVERIFY(!m_Host->OpenLibrary(m_Folder->GetPath()));
    }
};

NODEBROWSER_TEST(TestChanges)
#include "tst_changes.moc"
