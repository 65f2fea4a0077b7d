#include "loggedtest.h"
#include "searchindex.h"
#include "searchreference.h"
#include "stringutils.h"

#include <QTest>

class TestSearchIndex : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void scores_data();
    void scores();
    void scoresAsItemByItem();
    void growsAndShrinksWithItsTags();
};

namespace {

std::set<std::string> Split(std::string const& text, char const* delimiters)
{
    std::set<std::string> words;
    SplitString(text, delimiters, words);
    return words;
}

/// The words of a search text as the panel gives them to the index.
std::set<std::string> SearchWords(std::string const& text)
{
    return Split(SearchIndex::ToSearchName(text), " ");
}

void ScoreRow(char const* description, QByteArray const& name, QByteArray const& tags,
              QByteArray const& text, unsigned long score)
{
    QTest::newRow(description) << name << tags << text << score;
}

} // namespace

void TestSearchIndex::scores_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("tags");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<unsigned long>("score");

    ScoreRow("start of the name", "add", "", "add", 0);
    ScoreRow("inside the name", "fastadd", "", "add", 1);
    ScoreRow("only a tag", "sum", "Math-Add", "add", 1000);
    ScoreRow("nothing", "sum", "math", "add", 10000);
    ScoreRow("any case", "fastADD", "", "Add", 1);
    ScoreRow("later word at the start ends it", "multiply_add", "", "mul add", 1);
    ScoreRow("first word at the start ends it", "add_mul", "", "mul add", 0);
    ScoreRow("later word inside overwrites", "xaddmul", "", "mul add", 3);
    ScoreRow("one word of two suffices", "xmul", "", "mul add", 3);
    ScoreRow("tag never beats the name", "xadd", "mul", "mul add", 2);
    ScoreRow("name beats an earlier tag", "xmul", "add", "mul add", 3);
    ScoreRow("words are not joined across items", "ad", "d", "add", 10000);
    ScoreRow("no name", "", "add", "add", 1000);
}

void TestSearchIndex::scores()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, tags);
    QFETCH(QByteArray, text);
    SearchIndex index;
    // Neighbours that match otherwise must not shine through.
    index.Append("", {}, 0);
    index.Append(SearchIndex::ToSearchName(name.toStdString()), Split(tags.toStdString(), ";"), 5);
    index.Append("dd", {"dd"}, 0);
    QTEST(index.Score(SearchWords(text.toStdString())).at(1), "score");
    QCOMPARE(int(index.GetKinds(1)), 5);
}

void TestSearchIndex::scoresAsItemByItem()
{
    RandomTexts random(1);
    for (int round = 0; round < 40; ++round) {
        SearchIndex index;
        std::vector<std::pair<std::string, std::set<std::string>>> items(random.Number(60));
        for (auto& item : items) {
            item = std::make_pair(random.Text(6), Split(random.Tags(), ";"));
            index.Append(SearchIndex::ToSearchName(item.first), item.second, 0);
        }
        for (int search = 0; search < 20; ++search) {
            if (!items.empty()) {
                std::size_t const row = random.Number(items.size());
                items[row].second = Split(random.Tags(), ";");
                index.SetTags(row, items[row].second);
            }
            std::string const text = random.SearchText();
            std::vector<unsigned long> const scores = index.Score(SearchWords(text));
            QCOMPARE(scores.size(), items.size());
            for (std::size_t row = 0; !SearchWords(text).empty() && row < items.size(); ++row)
                QCOMPARE(scores[row], ReferenceScore(items[row].first, items[row].second, text));
        }
    }
}

void TestSearchIndex::growsAndShrinksWithItsTags()
{
    SearchIndex index;
    index.Append("a", {"old"}, 0);
    index.Append("b", {"old"}, 0);
    index.SetTags(0, {"new"});
    QCOMPARE(index.Score({"old"}), (std::vector<unsigned long>{10000, 1000}));
    QCOMPARE(index.Score({"new"}), (std::vector<unsigned long>{1000, 10000}));
    index.Clear();
    QCOMPARE(index.GetCount(), std::size_t(0));
    QVERIFY(index.Score({"old"}).empty());
    index.Append("c", {}, 0);
    QCOMPARE(index.Score({"old"}), std::vector<unsigned long>{10000});
}

NODEBROWSER_TEST_MAIN(TestSearchIndex)

#include "tst_searchindex.moc"
