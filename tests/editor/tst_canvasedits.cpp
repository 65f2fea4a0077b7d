#include "canvastest.h"

#include <containment.h>
#include <graphclipboard.h>

#include <map>

using namespace embeddedhost;

namespace {

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
    data->setData(format, bytes);
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
        // "In" and "Out" stand for the compound's own ports.
        for (char const* const name : {"Vector (2D)", "Vector (2D)", "In", "Out", "?!"})
            AddNode(body, "ITEM", name, {});
        std::string ids;
        for (GraphNode const& node : body.nodes)
            ids += node.id + ' ';
        QCOMPARE(ids, std::string("vector-2d vector-2d-2 in-2 out-2 node "));
        // A copy counts on from the number that a copied id ends with.
        body.nodes = {{"a-2", "ITEM", {}}, {"-2", "ITEM", {}}, {"a-", "ITEM", {}}};
        QCOMPARE(PasteNodes(body, body, {}), (std::set<std::string>{"a", "-2-2", "a--2"}));
    }

    void flowIsFollowedAroundCircles()
    {
        // Library files may hold a circle.
        GraphBody body;
        body.connections = {{{"a", ""}, {"b", ""}}, {{"b", ""}, {"c", ""}}, {{"c", ""}, {"b", ""}}};
        QCOMPARE(FindFlow(body, "a", true), (std::set<std::string>{"a", "b", "c"}));
        QCOMPARE(FindFlow(body, "a", false), std::set<std::string>{"a"});
    }

    void containedItemsAreFoundAtAnyDepth()
    {
        std::map<std::string, GraphBody> bodies;
        // A library from elsewhere that is wrong already.
        bodies["LOOP"].nodes = {{"1", "loop", {}}};
        for (int level = 0; level < 40000; ++level)
            bodies[std::to_string(level)].nodes = {{"1", std::to_string(level + 1), {}}};
        std::set<std::string> const items{"0", "1", "LOOP"};
        int askedCount = 0;
        auto const bodyOf = [&](std::string const& item) {
            return ++askedCount, bodies[item];
        };
        QCOMPARE(*FindContainer(items, "40000", bodyOf), std::string("0"));
        QCOMPARE(*FindContainer(items, "LOOP", bodyOf), std::string("LOOP"));
        // Each is asked about once.
        askedCount = 0;
        QVERIFY(!FindContainer(items, "ABSENT", bodyOf));
        QCOMPARE(askedCount, 40002);
    }

    void clipboardOfOthersIsExplained()
    {
        std::pair<QByteArray, QString> const rows[] = {
            {"[]", "it is no JSON object"},
            {"{\"nodes\": [{}]}", "none of them is complete"},
            {"{\"\\\"" + QByteArray(200, '[') + "\": []}", "none of them is complete"},
            {"{\"a\": " + QByteArray(100, '['), "it is nested deeper than 100 levels"},
            {QByteArray((16 << 20) + 1, ' '), "there is more than 16 MB of it"}};
        for (auto const& [bytes, reason] : rows) {
            QString said;
            ReadClipboardData(MakeData("application/x-nodeeditor-nodes+json", bytes).get(), &said);
            QCOMPARE(said, reason);
        }
        GraphBody large;
        for (int number = 0; number < 200; ++number)
            AddNode(large, "ITEM", "wide, but not deep", {});
        std::unique_ptr<QMimeData> const data(MakeClipboardData(large));
        QCOMPARE(ReadClipboardData(data.get(), nullptr).nodes.size(), large.nodes.size());
        large.nodes = {{std::string(16 << 20, 'a'), "ITEM", {}}};
        QVERIFY(!MakeClipboardData(large) && !HasClipboardNodes(nullptr));
    }

    void payloadsAreOneText()
    {
        auto const read = [](QByteArray const& bytes) {
            return ReadItemPayload(MakeData("tarno/toc.key", bytes).get());
        };
        QByteArray const good("\0\0\0\6\0a\0:\0b", 10);
        QCOMPARE(read(good), std::string("a:b"));
        QCOMPARE(read(Stream(QStringLiteral("a:\u00ff "))), std::string("a:\xff "));
        // Null, cut short, with more behind it, of odd length, long, and what is no text.
        for (QByteArray const& bytes :
             {Stream(QString()), good.left(9), good + '\0', QByteArray("\0\0\0\5\0a\0:\0", 9),
              Stream(QString(32 * 1024 - 1, 'a')), Stream(QStringLiteral("a:\u0100")),
              Stream(QStringLiteral("a:\u001f")), Stream(QStringLiteral("a:\u007f"))})
            QVERIFY2(read(bytes).empty(), bytes.left(20).toHex());
        QVERIFY(ReadItemPayload(nullptr).empty());
        QVERIFY(ReadItemPayload(MakeData("text/plain", good).get()).empty());
        QVERIFY(GetPayloadUid(":1").empty() && GetPayloadUid("solver").empty());
    }
};

NODEBROWSER_TEST(TestCanvasEdits)

#include "tst_canvasedits.moc"
