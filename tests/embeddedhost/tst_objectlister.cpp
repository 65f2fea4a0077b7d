#include "hosttest.h"
#include "storage/filetext.h"
#include "storage/objectlister.h"
#include "storage/objectreader.h"

#include <QTest>

using namespace embeddedhost;
using namespace tarno::datamodel;

/// Objects that are listed without a tree of them being made.
class TestObjectLister : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void readingCanBeCancelled()
    {
        LibraryFolder folder;
        folder.Write("project/a.json", Object(1, "solver", "1"));
        folder.Write("project/b.json", Object(2, "solver", "2"));
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QVERIFY(!host.OpenLibrary(folder.GetPath(), [&](int done, int /*total*/) {
            if (done == 1)
                host.CancelOpening();
        }));
        QVERIFY(!host.GetLibrary().IsValid());
        QVERIFY(host.FindItem(Uid(1)).IsNull());
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QVERIFY(!host.FindItem(Uid(1)).IsNull() && !host.FindItem(Uid(2)).IsNull());
    }

    void leavesFaultsToTheParser_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isTaken");
        auto const object = [](char const* name, QByteArray const& more, bool isTaken) {
            QTest::newRow(name) << QByteArray(Object(1, "compound", "Glow", more)) << isTaken;
        };
        object("whole", R"(, "tags": {"ApplicationTags": "a;b", "x": ""}, "loop": true,
            "inputs": [{"name": "a", "type": "t"}], "other": [1, -2.5e3, null, {"a": {"b": []}}],
            "nodes": [{"id": "n", "item": "i", "position": [0, 1.5]}],
            "connections": [{"from": ["in", "a"], "to": ["n", 3]}], "category": "c")",
               true);
        object("key twice", R"(, "name": "Other")", false);
        object("deep key twice", R"(, "other": [{"a": 1, "a": 2}])", false);
        object("huge number", R"(, "other": 1e999)", false);
        object("half a character", R"(, "other": "\ud800")", false);
        object("not UTF-8", ", \"other\": \"\xff\"", false);
        object("zero", R"(, "parent": "\u0000")", false);
        object("long text", ", \"other\": \"" + QByteArray(70000, 'x') + '"', false);
        object("many levels", ", \"other\": " + QByteArray(60, '[') + QByteArray(60, ']'), false);
        object("tag", R"(, "tags": {"ApplicationTags": 1})", false);
        object("flag", R"(, "signature": 1)", false);
        object("port", R"(, "outputs": [{"name": "a"}])", false);
        object("node twice", R"(, "nodes": [{"id": "n", "item": "i", "position": [0, 0]},
            {"id": "n", "item": "i", "position": [0, 0]}])",
               false);
        object("reserved node", R"(, "nodes": [{"id": "in", "item": "i", "position": [0, 0]}])",
               false);
        object("connection", R"(, "connections": [{"from": ["in"], "to": ["n", "b"]}])", false);
        QTest::newRow("escapes") << QByteArray('[' + Object(1, "type", R"(\"}\\)") + " ,\n"
                                               + Object(2, "solver", R"(])") + "\n]\n")
                                 << true;
        QTest::newRow("no object") << QByteArray("[1]") << false;
        QTest::newRow("kind") << QByteArray(Object(1, "node", "1")) << false;
        QTest::newRow("rest") << QByteArray(Object(1, "type", "1") + '}') << false;
        QTest::newRow("empty") << QByteArray() << false;
    }

    /// What it takes has no fault for others to find, and is listed as they would list it.
    void leavesFaultsToTheParser()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, isTaken);
        CObjectLister lister;
        QCOMPARE(lister.Read(text), isTaken);
        if (!isTaken)
            return;
        CFileText const file(text);
        auto const places = file.FindPlaces(lister.IsArray());
        QCOMPARE(places.size(), lister.GetObjects().size());
        for (std::size_t i = 0; i < places.size(); ++i) {
            nlohmann::ordered_json const tree = file.Read(places[i]);
            QVERIFY(CheckObject(tree, [](QString const& key, QString const& reason) {
                QFAIL(qPrintable(key + ' ' + reason));
            }));
            ListedObject const expected = ListObject(tree);
            ListedObject const& listed = lister.GetObjects()[i];
            QVERIFY(listed.kind == expected.kind && listed.uid == expected.uid
                    && listed.name == expected.name && listed.tags == expected.tags
                    && listed.isLoop == expected.isLoop);
        }
    }

    void objectsStayAsTheyWereRead()
    {
        LibraryFolder folder;
        QByteArray const body = R"(, "nodes": [{"id": "n", "item": "i", "position": [0, 0]}])";
        folder.Write("project/a.json", Object(1, "compound", "A", body));
        folder.Write("project/b.json", '[' + Object(2, "compound", "B", body) + ']');
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        folder.Write("project/a.json", Object(3, "compound", "Other"));
        folder.Write("project/b.json", "broken");
        QCOMPARE(host.GetBody(host.FindItem(Uid(1))).nodes.size(), std::size_t(1));
        QCOMPARE(host.GetBody(host.FindItem(Uid(2))).nodes.size(), std::size_t(1));
    }
};

NODEBROWSER_TEST(TestObjectLister)

#include "tst_objectlister.moc"
