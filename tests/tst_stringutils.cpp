#include "loggedtest.h"
#include "stringutils.h"

#include <QTest>

class TestStringUtils : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void splitsAtDelimiters_data();
    void splitsAtDelimiters();
    void splitsAtWhiteSpace();
    void addsToWhatIsThere();
    void convertsToEightBit_data();
    void convertsToEightBit();
};

namespace {

/// The set in its order, one entry a bracket.
QString TextOf(std::set<std::string> const& words)
{
    QString text;
    for (std::string const& word : words)
        text += "[" + QString::fromStdString(word) + "]";
    return text;
}

void SplitRow(char const* name, QString const& text, QString const& delimiters,
              QString const& words)
{
    QTest::newRow(name) << text << delimiters << words;
}

} // namespace

void TestStringUtils::splitsAtDelimiters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("delimiters");
    QTest::addColumn<QString>("words");

    SplitRow("trims, drops empty, merges equal", "a;; b ;a ;", ";", "[a][b]");
    SplitRow("keeps inner white space", "a b;c", ";", "[a b][c]");
    SplitRow("upper case sorts first", "node;nodes;Zeta;Node", ";", "[Node][Zeta][node][nodes]");
    SplitRow("only delimiters", ";;;", ";", "");
    SplitRow("only blanks", "   ", ";", "");
    SplitRow("empty", "", ";", "");
    SplitRow("several delimiters", "a,b;c", ",;", "[a][b][c]");
    SplitRow("no delimiters", " a;b ", "", "[a;b]");
    SplitRow("every kind of white space", "\v\f\r a\t;\n b \f", ";", "[a][b]");
}

void TestStringUtils::splitsAtDelimiters()
{
    QFETCH(QString, text);
    QFETCH(QString, delimiters);
    std::set<std::string> words;
    SplitString(text.toStdString(), delimiters.toStdString(), words);
    QTEST(TextOf(words), "words");
}

void TestStringUtils::splitsAtWhiteSpace()
{
    std::set<std::string> words;
    SplitString("  foo \t bar\nfoo ; \v\f\r", words);
    QCOMPARE(TextOf(words), QString("[;][bar][foo]"));
}

void TestStringUtils::addsToWhatIsThere()
{
    std::set<std::string> words = {"old"};
    SplitString("new old", words);
    SplitString("newer;old", ";", words);
    QCOMPARE(TextOf(words), QString("[new][newer][old]"));
}

void TestStringUtils::convertsToEightBit_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << QString() << QByteArray();
    QTest::newRow("Latin-1") << QString(QChar(0xE4)) << QByteArray("\xE4");
    QTest::newRow("outside eight bits") << "x" + QString(QChar(0x4E00)) << QByteArray("x?");
    QTest::newRow("up to the first zero") << "ab" + QString(QChar(0)) + "c" << QByteArray("ab");
}

void TestStringUtils::convertsToEightBit()
{
    QFETCH(QString, text);
    QTEST(QByteArray::fromStdString(QStringToStdString(text)), "bytes");
}

NODEBROWSER_TEST_MAIN(TestStringUtils)

#include "tst_stringutils.moc"
