#include "libraryfolder.h"
#include "loggedtest.h"

#include <embeddedhost.h>
#include <libraryfiles.h>
#include <samplelibrary.h>

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

namespace {

/// What git says, without the line's end.
QByteArray Git(QString const& folder, QStringList const& arguments)
{
    QProcess git;
    git.setWorkingDirectory(folder);
    git.start(QStringLiteral("git"), arguments);
    git.waitForFinished();
    return git.readAllStandardOutput().trimmed();
}

QStringList GetEntries(QString const& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

/// The libraries that the editor makes: the copy of the sample library, and empty ones.
class TestSampleLibrary : public LoggedTest
{
    Q_OBJECT

public:
    TestSampleLibrary()
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
        m_Source.Write(QStringLiteral("project/glow.json"), Object(1, "compound", "Glow"));
        m_Copy = m_Home->filePath(QStringLiteral("data/copy"));
    }

private:
    QString Prepare()
    {
        return Prepare(m_Source.GetPath());
    }

    /// What is wrong; empty for nothing.
    QString Prepare(QString const& source)
    {
        QString fault;
        try {
            PrepareSampleLibrary(source, m_Copy, &fault);
        } catch (std::runtime_error const& error) {
            return QString::fromStdString(error.what());
        }
        return fault;
    }

    QTemporaryDir m_GitHome;
    LibraryFolder m_Source;
    std::unique_ptr<QTemporaryDir> m_Home;
    QString m_Copy;

private Q_SLOTS:
    void copyIsACleanWorkTree()
    {
        QCOMPARE(Prepare(), QString());
        QCOMPARE(Git(m_Copy, {"status", "--porcelain"}), QByteArray());
        QCOMPARE(Git(m_Copy, {"log", "--format=%an <%ae>"}),
                 QByteArray("Node Editor <nodeeditor@localhost>"));
        QCOMPARE(Git(m_Copy, {"ls-files"}), QByteArray("library.json\nproject/glow.json"));
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(m_Copy));
        QVERIFY(!host.FindItem(Uid(1)).IsNull());
    }

    /// As an installed library is for everybody but the administrator.
    void copyCanBeWritten()
    {
        QString const folder = m_Source.GetPath(QStringLiteral("project"));
        QString const file = folder + QStringLiteral("/glow.json");
        QFile::setPermissions(file, QFile::ReadOwner);
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(Prepare(), QString());
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        for (QString const& name :
             {QStringLiteral("/project"), QStringLiteral("/project/glow.json")})
            QVERIFY2(QFile::permissions(m_Copy + name) & QFile::WriteOwner, qPrintable(name));
    }

    void isMadeOnce()
    {
        QCOMPARE(Prepare(), QString());
        WriteFile(m_Copy + QStringLiteral("/project/mine.json"), "{}");
        QCOMPARE(Prepare(), QString());
        QVERIFY(QFile::exists(m_Copy + QStringLiteral("/project/mine.json")));
    }

    void commitsAsTheUser()
    {
        QString const settings = m_GitHome.filePath(QStringLiteral(".gitconfig"));
        WriteFile(settings, "[user]\n\tname = Ada\n\temail = ada@home\n");
        QCOMPARE(Prepare(), QString());
        QCOMPARE(Git(m_Copy, {"log", "--format=%an <%ae>"}), QByteArray("Ada <ada@home>"));
        QFile::remove(settings);
    }

    void failuresLeaveNothing()
    {
        QString const nowhere = m_Home->filePath(QStringLiteral("nowhere"));
        QVERIFY2(Prepare(nowhere).contains(nowhere), "there is no sample library");
        QString const data = m_Home->filePath(QStringLiteral("data"));
        QCOMPARE(GetEntries(data), QStringList());
        QVERIFY(QDir().mkpath(m_Copy + QStringLiteral("/in/the/way")));
        QVERIFY2(Prepare().contains(QStringLiteral("in the way")), "something else is there");
        QCOMPARE(GetEntries(data), QStringList("copy"));
    }

    void emptyLibrariesOpen()
    {
        QString const folder = m_Home->filePath(QStringLiteral("My Graphs"));
        MakeLibrary(folder);
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder));
        QCOMPARE(GetMessages(host), QStringList());
        QCOMPARE(host.GetLibraryName(), QStringLiteral("My Graphs"));
        QVERIFY_EXCEPTION_THROWN(MakeLibrary(folder), std::runtime_error);
    }
};

NODEBROWSER_TEST_MAIN(TestSampleLibrary)
#include "tst_samplelibrary.moc"
