#include "loggedtest.h"

#include <QImage>
#include <QProcess>
#include <QSettings>
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
    void rendersANewLibrary();
    void reportsWhatCannotBeDone();
    void leavesNoTraceOfPictures();
    void startsOnACopyOfTheSampleLibrary();
    void startsOnANewLibrary();

private:
    struct Outcome
    {
        int exitCode;
        QString errors;
    };

    Outcome Run(QStringList const& arguments);
    void Prepare(QProcess& process) const;
    /// Starts the editor, waits for the library to be remembered, and kills it.
    void StartAndKill(QStringList const& arguments, QString const& library);
    QString GetHome(QString const& path) const;

    QTemporaryDir m_Folder;
    QTemporaryDir m_Home;
};

TestNodeEditor::Outcome TestNodeEditor::Run(QStringList const& arguments)
{
    QProcess process;
    Prepare(process);
    process.start(QStringLiteral(NODEEDITOR_PROGRAM), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardError())};
}

void TestNodeEditor::Prepare(QProcess& process) const
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (char const* const name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.insert(QString::fromLatin1(name), GetHome(QString::fromLatin1(name)));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(m_Folder.path());
}

QString TestNodeEditor::GetHome(QString const& path) const
{
    return m_Home.filePath(path);
}

void TestNodeEditor::StartAndKill(QStringList const& arguments, QString const& library)
{
    QProcess process;
    Prepare(process);
    process.start(QStringLiteral(NODEEDITOR_PROGRAM), arguments);
    QString const settings = GetHome(QStringLiteral("XDG_CONFIG_HOME/nodeeditor/nodeeditor.ini"));
    // Read by itself each time: another process writes it.
    auto const getLast = [&settings] {
        QSettings const kept(settings, QSettings::IniFormat);
        return kept.value(QStringLiteral("libraries/recent")).toStringList().value(0);
    };
    QTRY_COMPARE_WITH_TIMEOUT(getLast(), library, 30000);
    process.kill();
    QVERIFY(process.waitForFinished());
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
    QTest::newRow("new without a folder") << "--new"
                                          << "new";
    QTest::newRow("new and another one") << "--new out other"
                                         << "other";
    QTest::newRow("new and generate") << "--new out --generate more 5"
                                      << "--new";
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

void TestNodeEditor::rendersANewLibrary()
{
    Outcome const outcome = Run({"--new", "empty", "--render", "empty.png"});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QVERIFY(QFile::exists(m_Folder.filePath(QStringLiteral("empty/library.json"))));
    QVERIFY(QFile::exists(m_Folder.filePath(QStringLiteral("empty.png"))));
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

void TestNodeEditor::leavesNoTraceOfPictures()
{
    Outcome const outcome = Run({"--render", "sample.png"});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.errors));
    QVERIFY(!QFileInfo::exists(GetHome(QStringLiteral("XDG_CONFIG_HOME/nodeeditor"))));
    QVERIFY(!QFileInfo::exists(GetHome(QStringLiteral("XDG_DATA_HOME"))));
}

void TestNodeEditor::startsOnACopyOfTheSampleLibrary()
{
    QString const copy = GetHome(QStringLiteral("XDG_DATA_HOME/nodeeditor/sample-library"));
    StartAndKill({}, copy);
    QVERIFY(QFileInfo(copy + QStringLiteral("/.git/HEAD")).isFile());
    QCOMPARE(QDir(copy + QStringLiteral("/..")).entryList({QStringLiteral("sample-library*")}),
             QStringList(QStringLiteral("sample-library")));
}

void TestNodeEditor::startsOnANewLibrary()
{
    QString const made = m_Folder.filePath(QStringLiteral("fresh"));
    StartAndKill({"--new", "fresh"}, made);
    QFile::remove(GetHome(QStringLiteral("XDG_CONFIG_HOME/nodeeditor/nodeeditor.ini")));
    StartAndKill({"fresh"}, made);
    // What was open last comes without being named.
    StartAndKill({}, made);

    QVERIFY(QDir(m_Folder.path()).mkdir(QStringLiteral("here")));
    StartAndKill({"--new", "here/."}, m_Folder.filePath(QStringLiteral("here")));
    QFile manifest(m_Folder.filePath(QStringLiteral("here/library.json")));
    QVERIFY(manifest.open(QIODevice::ReadOnly));
    QVERIFY(manifest.readAll().contains("\"name\": \"here\""));

    Outcome const again = Run({"--new", "fresh"});
    QCOMPARE(again.exitCode, 1);
    QVERIFY2(again.errors.contains(QStringLiteral("not empty")), qPrintable(again.errors));
}

NODEBROWSER_TEST_MAIN(TestNodeEditor)
#include "tst_nodeeditor.moc"
