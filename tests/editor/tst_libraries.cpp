#include "testprogram.h"

#include <embeddedhost.h>
#include <libraryfiles.h>
#include <libraryfolder.h>
#include <librarygenerator.h>
#include <librarysummary.h>
#include <samplelibrary.h>

#include <QCryptographicHash>
#include <QDir>
#include <QProcess>
#include <QRegularExpression>

#include <stdexcept>

/// The libraries that the editor makes: generated ones, empty ones and a copy of the sample.
class TestLibraries : public LoggedTest
{
    Q_OBJECT

public:
    TestLibraries()
    {
        // No settings of git but the test's. They are looked for once in a process.
        for (char const* const name : {"HOME", "XDG_CONFIG_HOME"})
            qputenv(name, QFile::encodeName(m_GitHome.path()));
        qputenv("GIT_CONFIG_NOSYSTEM", "1");
    }

protected:
    void SetUp() override
    {
        m_Home = std::make_unique<QTemporaryDir>();
        m_Copy = Path("data/copy");
    }

private:
    QString Path(char const* name) const
    {
        return m_Home->filePath(name);
    }

    /// Why the function refuses; empty when it does not.
    template <class Function>
    static QString Refusal(Function const& function)
    {
        try {
            function();
        } catch (std::runtime_error const& error) {
            return QString::fromStdString(error.what());
        }
        return QString();
    }

    QString Copy(QString const& source)
    {
        QString fault;
        return Refusal([&] { PrepareSampleLibrary(source, m_Copy, &fault); }) + fault;
    }

    /// What git says of the copy; null where there is no git.
    QByteArray Git(QStringList const& arguments) const
    {
        QProcess git;
        git.start("git", QStringList{"-C", m_Copy} + arguments);
        return git.waitForFinished() ? git.readAll().trimmed() + '.' : QByteArray();
    }

    static QStringList Entries(QString const& folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_GitHome;
    std::unique_ptr<QTemporaryDir> m_Home;
    QString m_Copy;

private Q_SLOTS:
    void generatedLibrariesAreTheSameEverywhere()
    {
        GenerateLibrary(Path("new/large"), 2500);
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(Path("new/large")));
        QCOMPARE(GetMessages(host), QStringList());
        // A file for each project compound, and one for each thousand of the others.
        QCOMPARE(Entries(Path("new/large/project")).size(), 250);
        QCOMPARE(Entries(Path("new/large/factory")).size(), 3);
        QString const summary = SummarizeItems(host.GetLibrary());
        int total = 0;
        for (QString const& part : summary.split(", "))
            total += QString(part).remove(QRegularExpression("[^0-9]")).toInt();
        QCOMPARE(total, 2500);
        QCOMPARE(summary.count(','), 4 + summary.count(QRegularExpression("[0-9],[0-9]")));
        // Figures taken from such libraries can be compared only as long as this holds.
        GenerateLibrary(Path("small"), 300);
        QFile file(Path("small/factory/items0000.json"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex(),
                 QByteArray("755ae284cd19fcfc33d0228a37e6740c2b36b75a"));
    }

    void usedFoldersAreRefused()
    {
        QDir().mkpath(Path("used"));
        QString const file = Path("used/.hidden");
        WriteFile(file, "mine");
        QVERIFY(Refusal([&] { GenerateLibrary(Path("used"), 10); }).contains("not empty"));
        QVERIFY(Refusal([&] { MakeLibrary(Path("used")); }).contains("not empty"));
        QCOMPARE(Entries(Path("used")), QStringList(".hidden"));
        QVERIFY(Refusal([&] { GenerateLibrary(file, 10); }).contains(file));
        QVERIFY(Refusal([&] { GenerateLibrary(file + "/below", 10); }).contains(file));
    }

    void emptyLibrariesOpen()
    {
        MakeLibrary(Path("My Graphs"));
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(Path("My Graphs")));
        QCOMPARE(GetMessages(host), QStringList());
        QCOMPARE(host.GetLibraryName(), QStringLiteral("My Graphs"));
        QCOMPARE(SummarizeItems(host.GetLibrary()), QStringLiteral("no items"));
    }

    /// That can be written even where the sample is installed for reading alone.
    void sampleIsCopiedIntoAWorkTree()
    {
        LibraryFolder const source;
        source.Write("project/glow.json", Object(1, "compound", "Glow"));
        QFile::setPermissions(source.GetPath("project/glow.json"), QFile::ReadOwner);
        QCOMPARE(Copy(source.GetPath()), QString());
        QVERIFY(QFile::permissions(m_Copy + "/project/glow.json") & QFile::WriteOwner);
        // It is made once.
        WriteFile(m_Copy + "/project/mine.json", "{}");
        QCOMPARE(Copy(source.GetPath()), QString());
        QVERIFY(QFile::remove(m_Copy + "/project/mine.json"));
        if (Git({"--version"}).isNull())
            QSKIP("There is no git to ask.");
        QCOMPARE(Git({"status", "--porcelain"}), QByteArray("."));
        QCOMPARE(Git({"ls-files"}), QByteArray("library.json\nproject/glow.json."));
        QCOMPARE(Git({"log", "--format=%an <%ae>"}),
                 QByteArray("Node Editor <nodeeditor@localhost>."));
        WriteFile(m_GitHome.filePath(".gitconfig"), "[user]\n\tname = Ada\n\temail = ada@home\n");
        m_Copy = Path("data/again");
        QCOMPARE(Copy(source.GetPath()), QString());
        QFile::remove(m_GitHome.filePath(".gitconfig"));
        QCOMPARE(Git({"log", "--format=%an <%ae>"}), QByteArray("Ada <ada@home>."));
    }

    void failedCopiesLeaveNothing()
    {
        QVERIFY(Copy(Path("nowhere")).contains("nowhere"));
        QCOMPARE(Entries(Path("data")), QStringList());
        LibraryFolder const source;
        source.Write("project/glow.json", Object(1, "compound", "Glow"));
        QDir().mkpath(m_Copy + "/in/the/way");
        QVERIFY(Copy(source.GetPath()).contains("in the way"));
        QCOMPARE(Entries(Path("data")), QStringList("copy"));
    }
};

static TestProgram::Entry<TestLibraries> const kEntry;

#include "tst_libraries.moc"
