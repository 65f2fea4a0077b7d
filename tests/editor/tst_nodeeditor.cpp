#include "loggedtest.h"

#include <commandline.h>

#include <QImage>
#include <QtTest>

/// The program as a user runs it.
class TestNodeEditor : public LoggedTest
{
    Q_OBJECT

private:
    void Start(QProcess& process, QString const& arguments) const
    {
        process.setWorkingDirectory(m_Folder.path());
        process.start(NODEEDITOR_PROGRAM, arguments.split(' ', Qt::SkipEmptyParts));
    }

    /// The exit code and what was said.
    QString Run(QString const& arguments)
    {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        Start(process, arguments);
        bool const isEnded =
            process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
        return QString::number(isEnded ? process.exitCode() : -1) + ' ' + process.readAll();
    }

    /// Starts the editor, waits for the library to be remembered, and kills it.
    void StartAndKill(QString const& arguments, QString const& library)
    {
        QProcess process;
        Start(process, arguments);
        // Read by itself each time: another process writes it.
        auto const getLast = [this] {
            QSettings const kept(m_Home.filePath(kSettings), QSettings::IniFormat);
            return kept.value("libraries/recent").toStringList().value(0);
        };
        QTRY_COMPARE_WITH_TIMEOUT(getLast(), library, 30000);
        process.kill();
        QVERIFY(process.waitForFinished());
    }

    QByteArray Read(QString const& path) const
    {
        QFile file(m_Folder.filePath(path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    int CountFiles(QString const& folder) const
    {
        return int(QDir(m_Folder.filePath(folder)).entryList(QDir::Files | QDir::Hidden).size());
    }

    QString const kSettings = QStringLiteral("XDG_CONFIG_HOME/nodeeditor/nodeeditor.ini");
    QTemporaryDir m_Folder;
    QTemporaryDir m_Home;

private Q_SLOTS:
    void initTestCase()
    {
        for (char const* const name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            qputenv(name, QFile::encodeName(m_Home.filePath(name)));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_Home.path()));
    }

    void wrongArgumentsAreExplained()
    {
        // What is wrong stands behind the bar.
        for (QString const row :
             {"--colour|colour", "one two|two", "--generate out|number", "--generate out 0|\"0\"",
              "--generate out 10000001|\"10000001\"", "--generate out many|\"many\"",
              "--generate out 5 --render a.png|--render", "--generate out 5 --dark|--dark",
              "--new|new", "--new out other|other", "--new out --generate more 5|--new",
              "--size 20x20|--size", "--render a.png --size 20|\"20\"",
              "--render a.png --size 0x20|\"0x20\"", "--render a.png --size 9x10001|\"9x10001\"",
              "--render a.png --scale 0|\"0\"", "--render a.png --scale 8.1|\"8.1\"",
              "--render a.png --scale nan|\"nan\""}) {
            QStringList const parts = row.split('|');
            QString const fault = ParseCommandLine(("program " + parts[0]).split(' ')).fault;
            QVERIFY2(fault.contains(parts[1]), qPrintable(row + ": " + fault));
        }
        QVERIFY(Run("--generate out 0").startsWith("2 nodeeditor: The number of items"));
        QVERIFY(Run("--help").contains("--generate"));
        QVERIFY(QDir(m_Folder.path()).isEmpty());
    }

    void generatedLibrariesAreTheSameEverywhere()
    {
        QCOMPARE(Run("--generate made 2500"), QStringLiteral("0 2500 items are in made.\n"));
        // A file for each project compound, and one for each thousand of the others.
        QCOMPARE(CountFiles("made/project"), 250);
        QCOMPARE(CountFiles("made/factory"), 3);
        // Figures taken from such libraries can be compared only as long as this holds.
        Run("--generate small 300");
        QByteArray const file = Read("small/factory/items0000.json");
        QCOMPARE(QCryptographicHash::hash(file, QCryptographicHash::Sha1).toHex(),
                 QByteArray("755ae284cd19fcfc33d0228a37e6740c2b36b75a"));
    }

    void picturesAreRendered()
    {
        // Without a word about what was generated above, or is new.
        QCOMPARE(Run("--render made.png made --size 500x300 --scale 2 --dark --search zip"),
                 QStringLiteral("0 "));
        QImage const picture(m_Folder.filePath("made.png"));
        QCOMPARE(picture.size(), QSize(1000, 600));
        // The canvas, near the right edge, is dark.
        QVERIFY(picture.pixelColor(950, 400).lightness() < 100);
        QCOMPARE(Run("--new empty --render empty.png"), QStringLiteral("0 "));
        QCOMPARE(QImage(m_Folder.filePath("empty.png")).size(), QSize(1100, 700));
        // Nothing of pictures is left, of the sample library's neither.
        QCOMPARE(Run("--render sample.png"), QStringLiteral("0 "));
        QVERIFY(!QFileInfo::exists(m_Home.filePath("XDG_CONFIG_HOME/nodeeditor")));
        QVERIFY(!QFileInfo::exists(m_Home.filePath("XDG_DATA_HOME")));
    }

    void refusalsNameWhatIsWrong()
    {
        // Behind the bar, after the exit code.
        for (QString const row : {"--render a.png nowhere|nowhere", "--generate empty 5|not empty",
                                  "--generate empty.png 5|empty.png: is not a folder",
                                  "--generate empty.png/a 5|empty.png/a", "--new empty|not empty",
                                  "--render no/folder.png empty|no/folder"}) {
            QString const said = Run(row.section('|', 0, 0));
            QVERIFY2(said.startsWith("1 ") && said.contains(row.section('|', 1)), qPrintable(said));
        }
        QVERIFY(!QFile::exists(m_Folder.filePath("a.png")));
        QCOMPARE(CountFiles("empty"), 1);
    }

    void startsOnTheLastLibrary()
    {
        QString const data = m_Home.filePath("XDG_DATA_HOME/nodeeditor/");
        StartAndKill(QString(), data + "sample-library");
        QCOMPARE(QDir(data).entryList({"sample*"}), QStringList("sample-library"));
        StartAndKill("--new fresh/.", m_Folder.filePath("fresh"));
        QVERIFY(Read("fresh/library.json").contains("\"name\": \"fresh\""));
        QFile::remove(m_Home.filePath(kSettings));
        StartAndKill("fresh", m_Folder.filePath("fresh"));
        // What was open last comes without being named.
        StartAndKill(QString(), m_Folder.filePath("fresh"));
    }
};

NODEBROWSER_TEST_MAIN(TestNodeEditor)

#include "tst_nodeeditor.moc"
