#include "loggedtest.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// Runs the program as a user does.
class TestNodeEditor : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void wrongArguments_data();
    void wrongArguments();
    void generatesAndRenders();
    void reportsWhatCannotBeDone();

private:
    struct Outcome
    {
        int exitCode;
        QString errors;
    };

    Outcome Run(QStringList const& arguments);

    QTemporaryDir m_Folder;
};

TestNodeEditor::Outcome TestNodeEditor::Run(QStringList const& arguments)
{
    QProcess process;
    process.setWorkingDirectory(m_Folder.path());
    process.start(QStringLiteral(NODEEDITOR_PROGRAM), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardError())};
}

void TestNodeEditor::wrongArguments_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("unknown option") << "--colour"
                                    << "colour";
    QTest::newRow("two libraries") << "one two"
                                   << "two";
    QTest::newRow("generate without a number") << "--generate out"
                                               << "number";
    QTest::newRow("generate no items") << "--generate out 0"
                                       << "\"0\"";
    QTest::newRow("generate some text") << "--generate out many"
                                        << "\"many\"";
    QTest::newRow("generate and render") << "--generate out 5 --render a.png"
                                         << "--render";
    QTest::newRow("size without a picture") << "--size 20x20"
                                            << "--size";
    QTest::newRow("size of one number") << "--render a.png --size 20"
                                        << "\"20\"";
    QTest::newRow("size of nothing") << "--render a.png --size 0x20"
                                     << "\"0x20\"";
    QTest::newRow("scale of nothing") << "--render a.png --scale 0"
                                      << "\"0\"";
    QTest::newRow("scale that is no number") << "--render a.png --scale nan"
                                             << "\"nan\"";
}

void TestNodeEditor::wrongArguments()
{
    QFETCH(QString, arguments);
    QFETCH(QString, complaint);
    Outcome const outcome = Run(arguments.split(QLatin1Char(' ')));
    QCOMPARE(outcome.exitCode, 2);
    QVERIFY2(outcome.errors.contains(complaint), qPrintable(outcome.errors));
    QVERIFY(QDir(m_Folder.path()).isEmpty());
}

void TestNodeEditor::generatesAndRenders()
{
    QCOMPARE(Run({"--generate", "made", "40"}).exitCode, 0);
    Outcome const outcome =
        Run({"--render", "made.png", "made", "--size", "500x300", "--scale", "2", "--dark"});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));

    QImage const picture(m_Folder.filePath(QStringLiteral("made.png")));
    QCOMPARE(picture.size(), QSize(1000, 600));
    // The canvas, near the right edge, is dark.
    QVERIFY(picture.pixelColor(950, 400).lightness() < 100);
}

void TestNodeEditor::reportsWhatCannotBeDone()
{
    Outcome const missing = Run({"--render", "a.png", "nowhere"});
    QCOMPARE(missing.exitCode, 1);
    QVERIFY2(missing.errors.contains(QStringLiteral("nowhere")), qPrintable(missing.errors));
    QVERIFY(!QFile::exists(m_Folder.filePath(QStringLiteral("a.png"))));

    Outcome const occupied = Run({"--generate", ".", "5"});
    QCOMPARE(occupied.exitCode, 1);
    QVERIFY2(occupied.errors.contains(QStringLiteral("not empty")), qPrintable(occupied.errors));

    Outcome const unwritable = Run({"--render", "no/such/folder.png", "made"});
    QCOMPARE(unwritable.exitCode, 1);
    QVERIFY2(unwritable.errors.contains(QStringLiteral("no/such/folder.png")),
             qPrintable(unwritable.errors));
}

NODEBROWSER_TEST_MAIN(TestNodeEditor)
#include "tst_nodeeditor.moc"
