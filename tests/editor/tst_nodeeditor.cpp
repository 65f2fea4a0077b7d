#include "loggedtest.h"

#include <QImage>

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
        std::pair<char const*, QString> const rows[] = {
            {"--generate out 0", "The number of items must be between 1 and 10000000; not \"0\""},
            {"--generate out 10000001", "The number of items"},
            {"--generate out", "--generate takes a folder and a number"},
            {"--generate= 5", "--generate needs the name"},
            {"--generate out 5 --dark", "--dark does not go with --generate"},
            {"--scale 2", "--scale goes with --render only"},
            {"--render a.png --size 0x5", "--size takes width x height"},
            {"--render a.png --size 5x10001", "--size takes"},
            {"--render a.png --scale 0", "--scale takes a number above 0"},
            {"--render a.png --scale 8.1", "--scale takes"},
            {"--render=", "--render needs the name"},
            {"--new=", "--new needs the name"},
            {"--new a b", "One library at a time; unexpected argument \"b\""},
            {"a b", "One library at a time; unexpected argument \"b\""},
            {"--what", "Unknown option 'what'"}};
        for (auto const& [arguments, fault] : rows) {
            QString const said = Run(arguments);
            QVERIFY2(said.startsWith("2 nodeeditor: " + fault), qPrintable(said));
        }
        QVERIFY(Run("nowhere").startsWith("1 nodeeditor: nowhere: there is no library"));
        QVERIFY(Run("--version").startsWith("0 nodeeditor "));
        QVERIFY(Run("--help").contains("--generate"));
        QVERIFY(QDir(m_Folder.path()).isEmpty());
    }

    void generatedLibrariesAreTheSameEverywhere()
    {
        QCOMPARE(Run("--generate made 2500"), QStringLiteral("0 2500 items are in made.\n"));
        // Figures taken from such libraries can be compared only as long as this holds.
        QFile file(m_Folder.filePath("made/factory/items0000.json"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex(),
                 QByteArray("c667fe63a155d03ea78e6350e8190c21a79a9f42"));
    }

    void picturesAreRendered()
    {
        // Without a word about what was generated above, or is new.
        QCOMPARE(Run("--render made.png made --size 500x300 --scale 2 --dark --search zip"),
                 QStringLiteral("0 "));
        QImage const picture(m_Folder.filePath("made.png"));
        QCOMPARE(picture.size(), QSize(1000, 600));
        // The canvas, near its lower right corner, is dark.
        QVERIFY(picture.pixelColor(950, 540).lightness() < 100);
        QCOMPARE(Run("--new empty --render empty.png"), QStringLiteral("0 "));
        QCOMPARE(QImage(m_Folder.filePath("empty.png")).size(), QSize(1100, 700));
        // Nothing of pictures is left, of the sample library's neither.
        QCOMPARE(Run("--render sample.png"), QStringLiteral("0 "));
        QVERIFY(!QFileInfo::exists(m_Home.filePath("XDG_CONFIG_HOME/nodeeditor")));
        QVERIFY(!QFileInfo::exists(m_Home.filePath("XDG_DATA_HOME")));
    }

    void startsOnTheLastLibrary()
    {
        QString const data = m_Home.filePath("XDG_DATA_HOME/nodeeditor/");
        StartAndKill(QString(), data + "sample-library");
        QCOMPARE(QDir(data).entryList({"sample*"}), QStringList("sample-library"));
        StartAndKill("--new fresh/.", m_Folder.filePath("fresh"));
        // What was open last comes without being named, whatever it was called then.
        QSettings(m_Home.filePath(kSettings), QSettings::IniFormat)
            .setValue("libraries/recent", m_Folder.filePath("fresh/."));
        StartAndKill(QString(), m_Folder.filePath("fresh"));
    }
};

NODEBROWSER_TEST(TestNodeEditor)

#include "tst_nodeeditor.moc"
