#include "loggedtest.h"

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

bool Has(GraphBody const& body, GraphConnection const& connection)
{
    for (GraphConnection const& other : body.connections)
        if (other == connection)
            return true;
    return false;
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
        QCOMPARE(AddNode(body, "ITEM", "Vector Length (2D)", {}), std::string("vector-length-2d"));
        QCOMPARE(AddNode(body, "ITEM", "Vector Length (2D)", {}),
                 std::string("vector-length-2d-2"));
        // These two stand for the compound's own ports.
        QCOMPARE(AddNode(body, "ITEM", "In", {}), std::string("in-2"));
        QCOMPARE(AddNode(body, "ITEM", "Out", {}), std::string("out-2"));
        QCOMPARE(AddNode(body, "ITEM", "?!", {}), std::string("node"));
    }

    void inputsTakeOneConnectionAndOutputsMany()
    {
        GraphBody body = MakeChain();
        Connect(body, {{"a", "y"}, {"c", "x"}});
        QVERIFY(!Has(body, {{"b", "y"}, {"c", "x"}}));
        QVERIFY(Has(body, {{"a", "y"}, {"c", "x"}}));
        QVERIFY(Has(body, {{"a", "y"}, {"b", "x"}}));
        ConnectAll(body, {{{"a", "x"}, {"c", "x"}}, {{"a", "y"}, {"c", "x"}}});
        QVERIFY(Has(body, {{"a", "y"}, {"c", "x"}}));
        QCOMPARE(body.connections.size(), std::size_t(4));
    }

    void removedNodesTakeTheirConnectionsAlong()
    {
        GraphBody body = MakeChain();
        RemoveNodes(body, {"b"});
        QCOMPARE(body.nodes.size(), std::size_t(2));
        QCOMPARE(body.connections.size(), std::size_t(2));
        QVERIFY(Has(body, {{"in", "value"}, {"a", "x"}}));
        QVERIFY(Has(body, {{"c", "y"}, {"out", "result"}}));
    }

    void removedPortsTakeTheirConnectionsAlong()
    {
        GraphBody body = MakeChain();
        body.nodes.push_back({"d", "ITEM", {}});
        // A node's port of the same name is another one.
        Connect(body, {{"a", "value"}, {"d", "result"}});
        RemoveInput(body, "value");
        RemoveOutput(body, "result");
        QVERIFY(body.inputs.empty() && body.outputs.empty());
        QCOMPARE(body.connections.size(), std::size_t(3));
        QVERIFY(Has(body, {{"a", "value"}, {"d", "result"}}));
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

    void compatibleTypes_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("fromName");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QByteArray>("toName");
        QTest::addColumn<bool>("areCompatible");
        typedef QByteArray Text;
        QTest::newRow("same") << Text("AB") << Text("Float") << Text("AB") << Text("Float") << true;
        QTest::newRow("letters") << Text("ab") << Text("Float") << Text("AB") << Text("Float")
                                 << true;
        QTest::newRow("other") << Text("AB") << Text("Float") << Text("CD") << Text("Text")
                               << false;
        QTest::newRow("of one name")
            << Text("AB") << Text("Float") << Text("CD") << Text("Float") << false;
        QTest::newRow("start of the other")
            << Text("AB") << Text("") << Text("ABC") << Text("") << false;
        QTest::newRow("into any") << Text("AB") << Text("Float") << Text("CD") << Text("Any")
                                  << true;
        QTest::newRow("from any") << Text("CD") << Text("Any") << Text("AB") << Text("Float")
                                  << true;
        QTest::newRow("untyped") << Text("") << Text("") << Text("AB") << Text("Float") << true;
    }

    void compatibleTypes()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, fromName);
        QFETCH(QByteArray, to);
        QFETCH(QByteArray, toName);
        QTEST(AreTypesCompatible(from.toStdString(), fromName.toStdString(), to.toStdString(),
                                 toName.toStdString()),
              "areCompatible");
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
        auto const find = [&](std::string const& other) {
            auto const bodyOf = [&](std::string const& uid) {
                ++askedCount;
                return bodies[uid];
            };
            std::set<std::string> const items{"0", "1", "LOOP", "OTHER"};
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

    void pastedNodesAreNewAndKeepTheirConnections()
    {
        GraphBody body = MakeChain();
        GraphBody const copy = CopyNodes(body, {"a", "b"});
        QCOMPARE(copy.connections.size(), std::size_t(1));
        QVERIFY(PasteNodes(body, copy, {40, 60}) == std::set<std::string>({"a-2", "b-2"}));
        QVERIFY(PasteNodes(body, CopyNodes(body, {"a-2"}), {}) == std::set<std::string>({"a-3"}));
        QCOMPARE(FindNode(body, "b-2")->position, QPointF(240, 60));
        QVERIFY(Has(body, {{"a-2", "y"}, {"b-2", "x"}}));
        // What is there already stays connected as it was.
        QVERIFY(Has(body, {{"a", "y"}, {"b", "x"}}));
        QCOMPARE(body.connections.size(), std::size_t(5));
    }

    void newPortsGetNamesOfTheirOwn()
    {
        GraphBody body = MakeChain();
        AddPort(body.inputs, "value", "T");
        QCOMPARE(body.inputs.back().name, std::string("value 2"));
    }

    void clipboardGivesBackWhatWasPut()
    {
        std::unique_ptr<QMimeData> const data(
            MakeClipboardData(CopyNodes(MakeChain(), {"a", "b"})));
        GraphBody const read = ReadClipboardData(data.get());
        QCOMPARE(read.nodes.size(), std::size_t(2));
        QCOMPARE(read.nodes[1].position, QPointF(200, 0));
        QVERIFY(Has(read, {{"a", "y"}, {"b", "x"}}));
        GraphBody tooLarge;
        tooLarge.nodes = {{std::string(16 << 20, 'a'), "ITEM", {}}};
        QVERIFY(!MakeClipboardData(tooLarge));
    }

    void clipboardOfOthersIsExplained_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("reason");
        QString const noObject = QStringLiteral("it is no JSON object");
        QString const incomplete = QStringLiteral("none of them is complete");
        QString const deep = QStringLiteral("it is nested deeper than 100 levels");
        QByteArray const levels = QByteArray("{\"a\":").repeated(100000);
        QTest::newRow("nothing") << QByteArray("") << noObject;
        QTest::newRow("array") << QByteArray("[]") << noObject;
        QTest::newRow("cut short") << QByteArray("{") << noObject;
        QTest::newRow("number") << QByteArray("{\"nodes\": 3}") << incomplete;
        QTest::newRow("empty") << QByteArray("{\"nodes\": [{}]}") << incomplete;
        QTest::newRow("brackets in a text")
            << "{\"\\\"" + QByteArray(200, '[') + "\": []}" << incomplete;
        QTest::newRow("deep") << "{\"nodes\": [{\"id\": " + levels + '1' + QByteArray(100002, '}')
                              << deep;
        QTest::newRow("large") << QByteArray((16 << 20) + 1, ' ')
                               << QStringLiteral("there is more than 16 MB of it");
    }

    void clipboardOfOthersIsExplained()
    {
        QFETCH(QByteArray, bytes);
        QString reason;
        auto const data = MakeData("application/x-nodeeditor-nodes+json", bytes);
        QVERIFY(HasClipboardNodes(data.get()) && !HasClipboardNodes(nullptr));
        QVERIFY(ReadClipboardData(data.get(), &reason).nodes.empty());
        QTEST(reason, "reason");
    }

    void payloads_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("serialized");
        QByteArray const good("\0\0\0\6\0a\0:\0b", 10);
        QTest::newRow("documented bytes") << good << QByteArray("a:b");
        QTest::newRow("nothing") << QByteArray() << QByteArray();
        QTest::newRow("null text") << Stream(QString()) << QByteArray();
        QTest::newRow("cut short") << good.left(9) << QByteArray();
        QTest::newRow("more behind") << good + '\0' << QByteArray();
        QTest::newRow("odd length") << QByteArray("\0\0\0\5\0a\0:\0", 9) << QByteArray();
        QTest::newRow("claims to be huge") << QByteArray("\x7f\xff\xff\xf0\0a", 6) << QByteArray();
        QTest::newRow("plain text") << QByteArray("solver:1234") << QByteArray();
        QTest::newRow("a character for a byte")
            << Stream(QStringLiteral("a:\u00e9")) << QByteArray("a:\xe9");
        QTest::newRow("no byte") << Stream(QStringLiteral("a:\u20ac")) << QByteArray();
        QTest::newRow("zero inside") << Stream(QString(3, QChar(0))) << QByteArray();
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

NODEBROWSER_TEST_MAIN(TestCanvasEdits)
#include "tst_canvasedits.moc"
