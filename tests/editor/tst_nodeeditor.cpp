#include "testprogram.h"

#include <commandline.h>

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>

/// The program as a user runs it.
class TestNodeEditor : public LoggedTest
{
    Q_OBJECT

private:
    void Start(QProcess& process, QString const& arguments) const
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (char const* const name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            environment.insert(name, m_Home.filePath(name));
        environment.insert("XDG_RUNTIME_DIR", m_Home.path());
        process.setProcessEnvironment(environment);
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

    QString const kSettings = QStringLiteral("XDG_CONFIG_HOME/nodeeditor/nodeeditor.ini");
    QTemporaryDir m_Folder;
    QTemporaryDir m_Home;

private Q_SLOTS:
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

    void generatesAndRenders()
    {
        QCOMPARE(Run("--generate made 40"), QStringLiteral("0 40 items are in made.\n"));
        QCOMPARE(Run("--render made.png made --size 500x300 --scale 2 --dark --search zip"),
                 QStringLiteral("0 "));
        QImage const picture(m_Folder.filePath("made.png"));
        QCOMPARE(picture.size(), QSize(1000, 600));
        // The canvas, near the right edge, is dark.
        QVERIFY(picture.pixelColor(950, 400).lightness() < 100);
        QCOMPARE(Run("--new empty --render empty.png"), QStringLiteral("0 "));
        QVERIFY(QFile::exists(m_Folder.filePath("empty/library.json")));
        QCOMPARE(QImage(m_Folder.filePath("empty.png")).size(), QSize(1100, 700));
        QVERIFY(Run("--render a.png nowhere").contains(QRegularExpression("^1 .*nowhere")));
        QVERIFY(Run("--generate . 5").contains(QRegularExpression("^1 .*not empty")));
        QVERIFY(Run("--render no/folder.png made").contains(QRegularExpression("^1 .*no/folder")));
        QVERIFY(!QFile::exists(m_Folder.filePath("a.png")));
        // Nothing of pictures is left, of the sample library's neither.
        QCOMPARE(Run("--render sample.png"), QStringLiteral("0 "));
        QVERIFY(!QFileInfo::exists(m_Home.filePath("XDG_CONFIG_HOME/nodeeditor")));
        QVERIFY(!QFileInfo::exists(m_Home.filePath("XDG_DATA_HOME")));
    }

    void startsOnTheLastLibrary()
    {
        QString const data = m_Home.filePath("XDG_DATA_HOME/nodeeditor/");
        StartAndKill(QString(), data + "sample-library");
        QVERIFY(QFileInfo(data + "sample-library/.git/HEAD").isFile());
        QCOMPARE(QDir(data).entryList({"sample*"}), QStringList("sample-library"));
        StartAndKill("--new fresh/.", m_Folder.filePath("fresh"));
        QFile manifest(m_Folder.filePath("fresh/library.json"));
        QVERIFY(manifest.open(QIODevice::ReadOnly));
        QVERIFY(manifest.readAll().contains("\"name\": \"fresh\""));
        QFile::remove(m_Home.filePath(kSettings));
        StartAndKill("fresh", m_Folder.filePath("fresh"));
        // What was open last comes without being named.
        StartAndKill(QString(), m_Folder.filePath("fresh"));
        QVERIFY(Run("--new fresh").contains(QRegularExpression("^1 .*not empty")));
    }
};

static TestProgram::Entry<TestNodeEditor> const kEntry;

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    return TestProgram::Run(argc, argv);
}

#include "tst_nodeeditor.moc"
