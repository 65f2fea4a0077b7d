#include "testprogram.h"

#include <containment.h>
#include <graphclipboard.h>
#include <graphedits.h>
#include <itempayload.h>

#include <QDataStream>
#include <QMimeData>
#include <QTest>

#include <map>
#include <memory>

namespace {

/// a -> b -> c, fed by the compound's input and led to its output.
GraphBody MakeChain()
{
    GraphBody body;
    body.inputs = {{"value", "T"}};
    body.outputs = {{"result", "T"}};
    body.nodes = {{"a", "ITEM", {0, 0}}, {"b", "ITEM", {200, 0}}, {"c", "ITEM", {400, 0}}};
    body.connections = {{{"in", "value"}, {"a", "x"}},
                        {{"a", "y"}, {"b", "x"}},
                        {{"b", "y"}, {"c", "x"}},
                        {{"c", "y"}, {"out", "result"}}};
    return body;
}

QByteArray Stream(QString const& text)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << text;
    return bytes;
}

std::unique_ptr<QMimeData> MakeData(char const* format, QByteArray const& bytes)
{
    auto data = std::make_unique<QMimeData>();
    data->setData(QString::fromLatin1(format), bytes);
    return data;
}

} // namespace

/// Graphs, payloads and clipboard contents without a canvas.
class TestCanvasEdits : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void newNodesGetReadableIdsOfTheirOwn()
    {
        GraphBody body;
        std::pair<char const*, char const*> const idsByName[] = {
            {"Vector Length (2D)", "vector-length-2d"},
            {"Vector Length (2D)", "vector-length-2d-2"},
            // These two stand for the compound's own ports.
            {"In", "in-2"},
            {"Out", "out-2"},
            {"?!", "node"}};
        for (auto const& [name, id] : idsByName)
            QCOMPARE(AddNode(body, "ITEM", name, {}), std::string(id));
        // A copy counts on from the number that a copied id ends with.
        body.nodes = {{"a-2", "ITEM", {}}, {"-2", "ITEM", {}}, {"a-", "ITEM", {}}};
        QCOMPARE(PasteNodes(body, body, {}), (std::set<std::string>{"a", "-2-2", "a--2"}));
    }

    void inputsTakeTheLastConnection()
    {
        GraphBody body = MakeChain();
        ConnectAll(body, {{{"a", "x"}, {"c", "x"}}, {{"a", "y"}, {"c", "x"}}});
        QCOMPARE(body.connections.size(), std::size_t(4));
        QVERIFY((body.connections.back() == GraphConnection{{"a", "y"}, {"c", "x"}}));
    }

    void flowIsFollowedBothWays()
    {
        typedef std::set<std::string> Ids;
        GraphBody body = MakeChain();
        QCOMPARE(FindFlow(body, "b", true), (Ids{"b", "c", "out"}));
        QCOMPARE(FindFlow(body, "b", false), (Ids{"a", "b", "in"}));
        // Library files may hold a cycle.
        Connect(body, {{"c", "y"}, {"a", "back"}});
        QCOMPARE(FindFlow(body, "a", true), (Ids{"a", "b", "c", "out"}));
    }

    void typesAreCompared()
    {
        // Uid and name of the output's type, and of the input's.
        char const* const good[][4] = {{"AB", "Float", "AB", "Float"}, {"ab", "x", "AB", "x"},
                                       {"AB", "Float", "CD", "Any"},   {"AB", "Any", "CD", "x"},
                                       {"", "", "AB", "Float"},        {"AB", "Float", "", ""}};
        char const* const bad[][4] = {
            {"AB", "Float", "CD", "Text"}, {"AB", "Float", "CD", "Float"}, {"AB", "", "ABC", ""}};
        for (auto const& row : good)
            QVERIFY2(AreTypesCompatible(row[0], row[1], row[2], row[3]), row[0]);
        for (auto const& row : bad)
            QVERIFY2(!AreTypesCompatible(row[0], row[1], row[2], row[3]), row[2]);
    }

    void containedItemsAreFoundAtAnyDepth()
    {
        std::map<std::string, GraphBody> bodies;
        // A library from elsewhere that is wrong already.
        bodies["LOOP"].nodes = {{"1", "LOOP", {}}};
        bodies["OTHER"].nodes = {{"1", "loop", {}}, {"2", "0", {}}};
        int const depth = 40000;
        for (int level = 0; level < depth; ++level)
            bodies[std::to_string(level)].nodes = {{"1", std::to_string(level + 1), {}}};
        bodies[std::to_string(depth)].nodes = {{"1", "inner", {}}};
        int askedCount = 0;
        std::set<std::string> const items{"0", "1", "LOOP", "OTHER"};
        auto const bodyOf = [&](std::string const& uid) {
            return ++askedCount, bodies[uid];
        };
        auto const find = [&](char const* other) {
            std::string const* const found = FindContainer(items, other, bodyOf);
            return found ? *found : std::string();
        };
        QCOMPARE(find("INNER"), std::string("0"));
        QCOMPARE(find("other"), std::string("OTHER"));
        QCOMPARE(find("LOOP"), std::string("LOOP"));
        askedCount = 0;
        QCOMPARE(find("ABSENT"), std::string());
        QCOMPARE(askedCount, depth + 4);
    }

    void clipboardOfOthersIsExplained_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QString const noObject = QStringLiteral("it is no JSON object");
        QString const incomplete = QStringLiteral("none of them is complete");
        auto const nest = [](int levels) {
            return "{\"nodes\": " + QByteArray(levels - 1, '[') + QByteArray(levels - 1, ']') + '}';
        };
        QTest::newRow("nothing") << QByteArray("") << noObject;
        QTest::newRow("array") << QByteArray("[]") << noObject;
        QTest::newRow("cut short") << QByteArray("{") << noObject;
        QTest::newRow("number") << QByteArray("{\"nodes\": 3}") << incomplete;
        QTest::newRow("empty") << QByteArray("{\"nodes\": [{}]}") << incomplete;
        QTest::newRow("brackets in a text")
            << "{\"\\\"" + QByteArray(200, '[') + "\": []}" << incomplete;
        QTest::newRow("as deep as can be") << nest(100) << incomplete;
        for (int const depth : {101, 100000})
            QTest::addRow("%d levels", depth)
                << nest(depth) << QStringLiteral("it is nested deeper than 100 levels");
        QTest::newRow("large") << QByteArray((16 << 20) + 1, ' ')
                               << QStringLiteral("there is more than 16 MB of it");
    }

    void clipboardOfOthersIsExplained()
    {
        QFETCH(QByteArray, bytes);
        QString reason;
        auto const data = MakeData("application/x-nodeeditor-nodes+json", bytes);
        QVERIFY(ReadClipboardData(data.get(), &reason).nodes.empty());
        QTEST(reason, "reason");
        QVERIFY(!HasClipboardNodes(nullptr));
    }

    void clipboardIsNotOverfilled()
    {
        GraphBody body;
        body.nodes = {{std::string(16 << 20, 'a'), "ITEM", {}}};
        QVERIFY(!MakeClipboardData(body));
    }

    void payloads_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("serialized");
        QByteArray const good("\0\0\0\6\0a\0:\0b", 10);
        QByteArray const none;
        QTest::newRow("documented bytes") << good << QByteArray("a:b");
        QTest::newRow("a character for a byte")
            << Stream(QStringLiteral("a:\u00ff ")) << QByteArray("a:\xff ");
        QTest::newRow("nothing") << none << none;
        QTest::newRow("null text") << Stream(QString()) << none;
        QTest::newRow("cut short") << good.left(9) << none;
        QTest::newRow("more behind") << good + '\0' << none;
        QTest::newRow("odd length") << QByteArray("\0\0\0\5\0a\0:\0", 9) << none;
        QTest::newRow("claims to be huge") << QByteArray("\x7f\xff\xff\xf0\0a", 6) << none;
        QTest::newRow("long") << Stream(QString(32 * 1024 - 1, QLatin1Char('a'))) << none;
        QTest::newRow("plain text") << QByteArray("solver:1234") << none;
        QTest::newRow("no byte") << Stream(QStringLiteral("a:\u0100")) << none;
        QTest::newRow("control") << Stream(QStringLiteral("a:\u001f")) << none;
        QTest::newRow("delete") << Stream(QStringLiteral("a:\u007f")) << none;
    }

    void payloads()
    {
        QFETCH(QByteArray, bytes);
        QTEST(QByteArray::fromStdString(ReadItemPayload(MakeData("tarno/toc.key", bytes).get())),
              "serialized");
    }

    void payloadsOfOtherFormatsAreNotRead()
    {
        QVERIFY(ReadItemPayload(nullptr).empty());
        QVERIFY(ReadItemPayload(MakeData("text/plain", Stream("a:b")).get()).empty());
        QCOMPARE(GetPayloadUid("solver:12:3"), std::string("12:3"));
        QVERIFY(GetPayloadUid(":1").empty() && GetPayloadUid("solver").empty());
    }
};

static TestProgram::Entry<TestCanvasEdits> const kEntry;

#include "tst_canvasedits.moc"
