#include "changerecorder.h"
#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <QTest>

#include <nlohmann/json.hpp>

#include <ctime>

using namespace tarno::datamodel;

/// Changes of an open library, their notifications, and taking them back.
class tst_Changes : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write("project/glow.json",
                        Object(1, "compound", "Glow", R"(, "later": {"b": 1, "a": [2]})"));
        m_Folder->Write("project/ramp.json",
                        Object(2, "solver", "Ramp", R"(, "tags": {"ApplicationTags": "fade"})"));
        m_Folder->Write("factory/all.json",
                        '[' + Object(3, "compound", "Blur", R"(, "signature": true,
                                     "inputs": [{"name": "image", "type": "local:image"}])")
                            + ',' + Object(4, "constant", "Pi") + ']');
        m_Host = std::make_unique<CEmbeddedHost>();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        m_Recorder = std::make_unique<ChangeRecorder>(m_Host->GetLibrary());
        m_User = std::make_unique<LibraryUser>(*m_Host);
        m_Glow = m_Host->FindItem(Uid(1));
    }

    void TearDown() override
    {
        m_User.reset();
        m_Recorder.reset();
        m_Host.reset();
        m_Folder.reset();
    }

private:
    QUndoStack& Stack()
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    std::string TagsOf(ItemID const& id)
    {
        return m_Host->GetLibrary().GetItemTags(id, "ApplicationTags");
    }

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<ChangeRecorder> m_Recorder;
    std::unique_ptr<LibraryUser> m_User;
    ItemID m_Glow;

private Q_SLOTS:
    void RenamesAndTakesItBack()
    {
        QVERIFY(m_User->Rename(m_Glow, "Soft Glow"));
        QCOMPARE(m_User->NameOf(m_Glow), std::string("Soft Glow"));
        QCOMPARE(m_Recorder->Take(), (QStringList{"begin", "name Soft Glow", "end"}));
        QVERIFY(m_User->IsModified(m_Glow));
        QCOMPARE(Stack().undoText(), QString("Rename Glow"));

        Stack().undo();
        QCOMPARE(m_Recorder->Take(), (QStringList{"begin", "name Glow", "end"}));
        QVERIFY2(!m_User->IsModified(m_Glow), "what is on disk again is not modified");
        Stack().redo();
        QCOMPARE(m_Recorder->Take(), (QStringList{"begin", "name Soft Glow", "end"}));
    }

    void TagsAndTakesItBack()
    {
        QVERIFY(m_User->Tag(m_Glow, "light;soft"));
        QCOMPARE(TagsOf(m_Glow), std::string("light;soft"));
        QCOMPARE(m_Recorder->Take(), (QStringList{"begin", "tags Glow ApplicationTags", "end"}));
        QVERIFY(m_User->Tag(m_Glow, ""));
        QCOMPARE(TagsOf(m_Glow), std::string());
        Stack().undo();
        QCOMPARE(TagsOf(m_Glow), std::string("light;soft"));
        Stack().undo();
        QCOMPARE(TagsOf(m_Glow), std::string());
        QVERIFY(!m_User->IsModified(m_Glow));
    }

    void CreatesAndTakesItBack()
    {
        ItemID const blur = m_Host->FindItem(Uid(3));
        ItemID const id =
            m_User->Create("Fast Blur", false, ItemIDUnlock::GetItemIDUID(blur), "Images/Blur");
        QVERIFY(m_User->IsBound());
        QCOMPARE(m_Recorder->Take(), (QStringList{"begin", "added Fast Blur", "end"}));
        QVERIFY(m_User->IsModified(id));
        QCOMPARE(m_Host->GetBody(id).inputs.size(), std::size_t(1));

        m_User->Rename(id, "Quick Blur");
        m_Recorder->Take();
        Stack().undo();
        Stack().undo();
        QCOMPARE(m_Recorder->Take(),
                 (QStringList{"begin", "name Fast Blur", "end", "begin", "removed", "end"}));
        QVERIFY(!m_Host->GetLibrary().GetModel(id, nullptr).IsValid());
        Stack().redo();
        Stack().redo();
        QCOMPARE(m_User->NameOf(id), std::string("Quick Blur"));
    }

    void CreatesEachKindOfCompound()
    {
        ItemID const signature = m_User->Create("Any Filter", true);
        ItemAccessor item;
        item.SetFrom(m_Host->GetLibrary().GetModel(signature, nullptr));
        QVERIFY(Helpers::IsAbstractFunction(item));

        LoopCompoundModifierAccessor modifier;
        modifier.CreateAndSetFromNewLoopCompound(m_Host->GetLibrary(), "Repeat", "", "", nullptr);
        LoopCompoundAccessor loop;
        loop.SetFrom(modifier);
        QVERIFY(loop.IsValid());
        QVERIFY2(Stack().count() == 1, "a change without a command manager is not recorded");
    }

    void UndoLeavesAloneWhatOthersChanged()
    {
        m_User->Rename(m_Glow, "Soft Glow");
        m_Folder->Write("project/ramp.json",
                        Object(2, "solver", "Ramp", R"(, "tags": {"ApplicationTags": "other"})"));
        m_Host->CheckFolder();
        Stack().undo();
        QCOMPARE(TagsOf(m_Host->FindItem(Uid(2))), std::string("other"));
    }

    void IgnoresTagsOfTheWrongType_data()
    {
        QTest::addColumn<QByteArray>("tags");
        for (char const* tags : {"null", "5", R"("fade")", "[1, {}]", R"({"ApplicationTags": 7})"})
            QTest::newRow(tags) << QByteArray(tags);
    }

    /// Whoever writes them, and whatever is changed beside them.
    void IgnoresTagsOfTheWrongType()
    {
        QFETCH(QByteArray, tags);
        QByteArray const more = ", \"tags\": " + tags;
        m_Folder->Write("project/glow.json", Object(1, "compound", "Odd", more));
        m_Folder->Write("project/ramp.json", Object(2, "solver", "Odd", more));
        m_Folder->Write("project/than.json", Object(9, "solver", "Odd", more));
        m_Host->CheckFolder();
        QVERIFY2(m_Host->FindItem(Uid(9)).IsValid(), "each file of the burst is read");
        QCOMPARE(m_User->NameOf(m_Glow), std::string("Odd"));
        QCOMPARE(TagsOf(m_Glow), std::string());
        m_Recorder->Take();

        QVERIFY(m_User->Rename(m_Glow, "Soft Glow"));
        QCOMPARE(m_Recorder->Take(), (QStringList{"begin", "name Soft Glow", "end"}));
        QVERIFY(m_User->Tag(m_Glow, "light"));
        QCOMPARE(m_Recorder->Take(),
                 (QStringList{"begin", "tags Soft Glow ApplicationTags", "end"}));
        QVERIFY(m_Host->SetBody(m_Glow, {{{"in", Uid(2)}}, {}, {}, {}}, "Add input"));
        Stack().setIndex(0);
        QVERIFY(!m_User->IsModified(m_Glow));
    }

    void TellsWhatListsDependOn_data()
    {
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<QByteArray>("more");
        for (char const* more :
             {R"(, "signature": true)", R"(, "loop": true)", R"(, "parent": "x")",
              R"(, "specializes": "x")", R"(, "readOnly": true)"})
            QTest::newRow(more) << QByteArray("compound") << QByteArray(more);
        QTest::newRow("kind") << QByteArray("type") << QByteArray();
    }

    /// Whether it came from disk, was taken from there, or is undone.
    void TellsWhatListsDependOn()
    {
        QFETCH(QByteArray, kind);
        QFETCH(QByteArray, more);
        auto const isTold = [&] {
            QStringList const told = m_Recorder->Take();
            return told.contains("invalidated")
                   || (told.contains("removed") && told.contains("added Glow"));
        };
        QByteArray const changed = Object(1, kind, "Glow", more);
        m_Folder->Write("project/glow.json", changed);
        m_Host->CheckFolder();
        QVERIFY(isTold());
        m_Folder->Write("project/glow.json", Object(1, "compound", "Glow"));
        m_Host->CheckFolder();
        QVERIFY(isTold());

        QVERIFY(m_User->Tag(m_Glow, "ours"));
        m_Folder->Write("project/glow.json", changed);
        m_Host->CheckFolder();
        m_Recorder->Take();
        QVERIFY(m_Host->TakeFileFromDisk(m_Folder->GetPath("project/glow.json")));
        QVERIFY(isTold());
        Stack().undo();
        QVERIFY(isTold());
        QCOMPARE(TagsOf(m_Glow), std::string("ours"));
        Stack().redo();
        QVERIFY(isTold());
    }

    void ChangesBodies()
    {
        GraphBody body = m_Host->GetBody(m_Glow);
        body.nodes.push_back({"n1", Uid(2), QPointF(20, 40.5)});
        QVERIFY(m_Host->SetBody(m_Glow, body, "Add node"));
        QCOMPARE(m_Host->GetBody(m_Glow).nodes.at(0).position, QPointF(20, 40.5));
        body.nodes[0].position = QPointF(1e300, -1e300);
        QVERIFY(m_Host->SetBody(m_Glow, body, "Move node"));
        QCOMPARE(m_Host->GetBody(m_Glow).nodes.at(0).position, QPointF(1e300, -1e300));
        Stack().undo();
        Stack().undo();
        QVERIFY(m_Host->GetBody(m_Glow).nodes.empty());
        QVERIFY(!m_User->IsModified(m_Glow));
    }

    /// The first entry that is the same keeps its keys, the others go.
    void KeepsWhatABodyDoesNotKnow()
    {
        m_Folder->Write("project/glow.json", Object(1, "compound", "Glow", R"(,
            "inputs": [{"name": "a", "type": "t", "more": 1}, {"name": "a", "type": "u"}],
            "nodes": [{"id": 7, "item": "i", "position": [0, 0], "more": 2},
                      {"id": "7", "item": "j", "position": [0, 0]}, "odd"],
            "connections": [{"from": ["7", "o"], "to": ["7", "a"], "more": 3},
                            {"from": ["7", "o"], "to": ["7", "a"], "more": 4},
                            {"from": [7, "o"], "to": ["7", "b"], "more": 5}])"));
        m_Host->CheckFolder();
        GraphBody body = m_Host->GetBody(m_Glow);
        body.nodes.at(0).position.rx() = 1;
        QVERIFY(m_Host->SetBody(m_Glow, body, "Move node"));
        QVERIFY(m_User->Save());
        auto const saved = nlohmann::ordered_json::parse(
            m_Folder->Read().value(m_Folder->GetPath("project/glow.json")).toStdString());
        QCOMPARE(saved["inputs"].dump(), std::string(R"([{"name":"a","type":"t","more":1},)"
                                                     R"({"name":"a","type":"u","more":1}])"));
        QCOMPARE(saved["nodes"].dump(),
                 std::string(R"([{"id":7,"item":"i","position":[1,0],"more":2}])"));
        QCOMPARE(saved["connections"].dump(),
                 std::string(R"([{"from":["7","o"],"to":["7","a"],"more":3},)"
                             R"({"from":["7","o"],"to":["7","a"],"more":3},)"
                             R"({"from":["7","o"],"to":["7","b"]}])"));
    }

    /// In processor time, since a machine may be busy.
    void ChangesLargeBodiesFast()
    {
        GraphBody body;
        for (int number = 0; number < 16000; ++number) {
            std::string const id = std::to_string(number);
            body.nodes.push_back({id, Uid(2), QPointF(number, 0)});
            body.connections.push_back({{id, "out"}, {id, "in"}});
        }
        QVERIFY(m_Host->SetBody(m_Glow, body, "Fill"));
        body.nodes.front().position.rx() = 1;
        std::clock_t const begin = std::clock();
        QVERIFY(m_Host->SetBody(m_Glow, body, "Move node"));
        double const seconds = double(std::clock() - begin) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 5, qPrintable(QString::number(seconds)));
    }

    void Refuses_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("reason");

        QTest::newRow("empty name") << "create:"
                                    << "name is empty";
        QTest::newRow("used name") << "create:GLOW"
                                   << "\"GLOW\" is used already";
        QTest::newRow("name of another item") << "rename1:ramp"
                                              << "\"ramp\" is used already";
        QTest::newRow("no such signature") << "implement"
                                           << "no signature with the uid";
        QTest::newRow("read-only source, rename") << "rename3:New"
                                                  << "\"Factory\" is read-only";
        QTest::newRow("read-only source, tags") << "tag4:x"
                                                << "\"Factory\" is read-only";
        QTest::newRow("long name") << "create:*"
                                   << "The name is longer than 65536";
        QTest::newRow("long name, rename") << "rename1:*"
                                           << "The name is longer than 65536";
        QTest::newRow("long tags") << "tag1:*"
                                   << "The tag text is longer than 65536";
        QTest::newRow("long node") << "node:*"
                                   << "more than 65536 characters";
        QTest::newRow("infinite position") << "place:inf"
                                           << "\"n\" is not a finite number";
        QTest::newRow("position of no number") << "place:nan"
                                               << "\"n\" is not a finite number";
        QTest::newRow("other encoding") << "node:\u00FC"
                                        << "not UTF-8";
    }

    void Refuses()
    {
        QFETCH(QString, change);
        QFETCH(QString, reason);
        auto const contents = m_Folder->Read();
        QByteArray text = change.mid(change.indexOf(':') + 1).toLatin1();
        if (text == "*")
            text.fill('x', 65537);
        bool isDone = true;
        if (change.startsWith("create")) {
            isDone = !m_User->Create(text).IsNull();
            QVERIFY(!m_User->IsBound());
        } else if (change.startsWith("implement")) {
            isDone = !m_User->Create("New", false, Uid(1).c_str()).IsNull();
        } else if (change.startsWith("place")) {
            QPointF const position(text.toDouble(), 0);
            isDone = m_Host->SetBody(m_Glow, {{}, {}, {{"n", Uid(2), position}}, {}}, "Move");
        } else if (change.startsWith("node")) {
            isDone = m_Host->SetBody(m_Glow, {{}, {}, {{text.data(), Uid(2), {}}}, {}}, "Add");
        } else if (change.startsWith("rename")) {
            isDone = m_User->Rename(m_Host->FindItem(Uid(change.mid(6, 1).toInt())), text);
        } else {
            isDone = m_User->Tag(m_Host->FindItem(Uid(change.mid(3, 1).toInt())), text);
        }
        QVERIFY(!isDone);
        QVERIFY2(GetMessages(*m_Host).join('\n').contains(reason),
                 qPrintable(GetMessages(*m_Host).join('\n')));
        QCOMPARE(m_Recorder->Take(), QStringList());
        QCOMPARE(Stack().count(), 0);
        QVERIFY(m_Host->GetUnsavedChanges().isEmpty());
        m_User->Save();
        QCOMPARE(m_Folder->Read(), contents);
    }

    void AllowsItsOwnNameInAnotherCase()
    {
        QVERIFY(m_User->Rename(m_Glow, "GLOW"));
        QCOMPARE(m_User->NameOf(m_Glow), std::string("GLOW"));
        QVERIFY(GetMessages(*m_Host).isEmpty());
    }

    /// Commands that are left on a stack of somebody else's do nothing to another library.
    void CommandsOfAClosedLibraryDoNothing()
    {
        CCommandManager manager;
        CompoundModifierAccessor modifier;
        modifier.SetFrom(m_Host->GetLibrary().GetModel(m_Glow, nullptr));
        QVERIFY(modifier.RenameCompound("Soft Glow", &manager));
        m_Recorder.reset();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        manager.GetUndoStack().undo();
        manager.GetUndoStack().redo();
        QCOMPARE(m_User->NameOf(m_Glow), std::string("Glow"));
        QVERIFY(!modifier.RenameCompound("Again", &manager));
    }
};

NODEBROWSER_TEST_MAIN(tst_Changes)
#include "tst_changes.moc"
