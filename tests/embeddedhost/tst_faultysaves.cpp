#include "faultyfiles.h"
#include "hosttest.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

QString const kFolder = QStringLiteral("project/below");
QString const kChanged = kFolder + QStringLiteral("/changed.json");
QString const kRemoved = QStringLiteral("project/removed.json");
QString const kNew = QStringLiteral("project/new.json");

QByteArray WithName(char const* name)
{
    return QByteArray::fromStdString(
        nlohmann::ordered_json::parse(Object(1, "compound", name).toStdString()).dump(2) + '\n');
}

} // namespace

/// What happens in the middle of a save: at each call to the system in turn something fails, the
/// process is killed, or another program writes.
class TestFaultySaves : public HostTest
{
    Q_OBJECT

protected:
    void SetUp() override {}

    void TearDown() override
    {
        faultyfiles::Stop();
        faultyfiles::SetRenamesWithFlags(true);
        HostTest::TearDown();
    }

private:
    /// A file that is going to be replaced, one to be removed and one to be made.
    void Prepare()
    {
        Close();
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(kChanged, WithName("Old"));
        Open();
        m_User->Create("Removed");
        QVERIFY(m_User->Save());
        Stack().undo();
        m_User->Create("New");
        m_User->Rename(Item(1), "Ours");
        m_Host->GetMessages().ClearLog();
        m_Before = m_Folder->Read();
    }

    typedef std::function<void(int call, bool& hasMore)> Round;

    /// One call after the other, until the round says that there are no more.
    static void ForEachCall(Round const& round)
    {
        bool hasMore = true;
        for (int call = 1; hasMore && !QTest::currentTestFailed(); ++call) {
            round(call, hasMore);
            QVERIFY2(call < 2000, "more calls than anything here makes");
        }
    }

    bool SaveAnyhow()
    {
        for (QString const& path : m_Host->FindConflicts())
            m_Host->OverwriteFileOnDisk(path);
        return m_User->Save();
    }

    /// Nothing torn: each file is the one before, or the one that was to be saved.
    void VerifyWhole()
    {
        QByteArray const changed = Content(kChanged);
        QVERIFY2(changed == WithName("Old") || changed == WithName("Ours"), changed.constData());
        QByteArray const removed = Content(kRemoved);
        QVERIFY(removed.isEmpty() || removed == m_Before[m_Folder->GetPath(kRemoved)]);
        QByteArray const made = Content(kNew);
        QVERIFY(made.isEmpty() || nlohmann::json::parse(made.toStdString())["name"] == "New");
    }

    /// And nothing is left behind.
    void VerifySaved()
    {
        QCOMPARE(Content(kChanged), WithName("Ours"));
        QVERIFY(Content(kRemoved).isEmpty() && Content(kNew).contains("\"New\""));
        QVERIFY(!QDir(m_Folder->GetPath("project/.nodebrowser")).exists());
        QCOMPARE(m_Folder->Read().size(), m_Before.size());
    }

    void FailAt(int call)
    {
        QFETCH(int, error);
        QFETCH(bool, forGood);
        QFETCH(bool, isHalf);
        faultyfiles::FailAt(call, error, forGood, isHalf);
    }

    /// What another program does to the file.
    void Interfere(QString const& way, QString const& file, QTemporaryDir const& outside,
                   QByteArray const& theirs, std::thread& writer)
    {
        QByteArray const path = QFile::encodeName(m_Folder->GetPath(file));
        if (way == "writes" || way == "makes") {
            m_Folder->Write(file, theirs);
        } else if (way == "replaces") {
            QVERIFY(WriteFile(outside.filePath("new"), theirs));
            ::rename(QFile::encodeName(outside.filePath("new")).constData(), path.constData());
        } else if (way == "writes slowly") {
            // It had the file open before.
            int const descriptor = ::open(path.constData(), O_WRONLY);
            writer = std::thread([descriptor, theirs] {
                std::this_thread::sleep_for(std::chrono::milliseconds(30));
                bool const isWritten =
                    ::ftruncate(descriptor, 0) == 0
                    && ::write(descriptor, theirs.constData(), std::size_t(theirs.size()))
                           == theirs.size();
                if (!isWritten || ::close(descriptor) != 0)
                    std::abort();
            });
        } else if (way == "removes" || way == "links") {
            ::unlink(path.constData());
            if (way == "links")
                QFile::link(outside.filePath("changed.json"), m_Folder->GetPath(file));
        } else {
            QString const folder = m_Folder->GetPath(
                way == "links the folder" ? kFolder : QStringLiteral("project/.nodebrowser"));
            QDir().rename(folder, m_Folder->GetPath("project/moved"));
            QFile::link(outside.path(), folder);
        }
    }

    QMap<QString, QByteArray> m_Before;

private Q_SLOTS:
    void savesThatFailLoseNothing_data()
    {
        AddColumns<int, bool, bool>("error", "forGood", "isHalf");
        AddRow("once: another file system", EXDEV, false, false);
        AddRow("the disk is full after half a write", ENOSPC, true, true);
        AddRow("no more files can be opened", EMFILE, true, false);
    }

    void savesThatFailLoseNothing()
    {
        Expect("Could not remove our own lock file");
        int failures = 0;
        ForEachCall([&](int call, bool& hasMore) {
            Prepare();
            FailAt(call);
            bool const isSaved = m_User->Save();
            hasMore = faultyfiles::Stop();
            failures += !isSaved;
            VerifyWhole();
            QCOMPARE(m_Host->IsModified(), !isSaved);
            QCOMPARE(m_User->GetSaveMessages().empty(), isSaved);
            QVERIFY2(isSaved || Log().contains("not saved"), qPrintable(Log()));
            // What a fault kept us from telling apart may be overwritten on purpose.
            QVERIFY2(SaveAnyhow(), qPrintable(QStringLiteral("call %1: ").arg(call) + Log()));
            Open();
            VerifySaved();
        });
        QVERIFY(failures > 10);
    }

    void savesOnPlainFileSystems()
    {
        faultyfiles::SetRenamesWithFlags(false);
        Prepare();
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        VerifySaved();
    }

    void movesThatFailLoseNothing_data()
    {
        savesThatFailLoseNothing_data();
    }

    void movesThatFailLoseNothing()
    {
        QString const to = QStringLiteral("factory/below/changed.json");
        int failures = 0;
        ForEachCall([&](int call, bool& hasMore) {
            Close();
            m_Folder = std::make_unique<LibraryFolder>();
            m_Folder->Write("library.json",
                            QByteArray(kManifest).replace("read-only", "read-write"));
            m_Folder->Write(kChanged, WithName("Old"));
            Open();
            auto const factory = FindObject(kFactoryComponent).GetDataSource();
            FailAt(call);
            MoveObject(Uid(1), factory);
            hasMore = faultyfiles::Stop();

            bool const isMoved = Content(kChanged).isEmpty();
            failures += !isMoved;
            QCOMPARE(Content(isMoved ? to : kChanged), WithName("Old"));
            QVERIFY(Content(isMoved ? kChanged : to).isEmpty());
            QVERIFY2(isMoved || Log().contains("could not be moved"), qPrintable(Log()));
            m_User->Rename(Item(1), "Ours");
            QVERIFY2(m_User->Save(), qPrintable(Log()));
            QCOMPARE(Content(isMoved ? to : kChanged), WithName("Ours"));
            MoveObject(Uid(1), factory);
            QCOMPARE(Content(to), WithName("Ours"));
        });
        QVERIFY(failures > 0);
    }

    /// At any call of a save.
    void killedSavesTearNothing()
    {
        ForEachCall([&](int call, bool& hasMore) {
            Prepare();
            pid_t const child = fork();
            if (child == 0) {
                faultyfiles::RunAt(call, [] { raise(SIGKILL); });
                m_User->Save();
                _exit(0);
            }
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            hasMore = WIFSIGNALED(status);
            VerifyWhole();
            QVERIFY2(SaveAnyhow(), qPrintable(Log()));
            VerifySaved();
            QVERIFY2(!Log().contains("another program"), qPrintable(Log()));
        });
    }

    void othersAreNotOverwritten_data()
    {
        QTest::addColumn<QString>("way");
        for (char const* const way : {"replaces", "writes", "writes slowly", "removes", "makes",
                                      "links", "links the folder", "links the staging folder"})
            QTest::newRow(way) << way;
    }

    /// Another program writes at any call of a save, as late as between the last look at the old
    /// file and its end.
    void othersAreNotOverwritten()
    {
#ifdef NODEBROWSER_PORTABLE_FILES
        QSKIP("files cannot be exchanged");
#endif
        QFETCH(QString, way);
        QString const file = way == "makes" ? kNew : kChanged;
        QByteArray const theirs = WithName("Theirs");
        QByteArray const secret = WithName("Old");
        int conflicts = 0;
        ForEachCall([&](int call, bool& hasMore) {
            Prepare();
            QTemporaryDir const outside;
            for (char const* name : {"changed.json", "lock"})
                QVERIFY(WriteFile(outside.filePath(name), secret));
            std::thread writer;
            faultyfiles::RunAt(call, [&] { Interfere(way, file, outside, theirs, writer); });
            bool const isSaved = m_User->Save();
            hasMore = faultyfiles::Stop();
            if (writer.joinable())
                writer.join();
            if (!hasMore)
                return;
            conflicts += !isSaved;
            for (char const* name : {"changed.json", "lock"})
                QCOMPARE(ReadFile(outside.filePath(name)), secret);
            QString const at = QStringLiteral("call %1: ").arg(call) + Log();
            QByteArray const expected = way == "removes" ? QByteArray() : theirs;
            QVERIFY2(way.startsWith("links") || Content(file) == expected, qPrintable(at));
            // They know of it, or will when they look.
            QVERIFY2(isSaved || (Log().contains("not saved") && m_Host->IsModified()),
                     qPrintable(at));
            QFileInfo const staging(m_Folder->GetPath("project/.nodebrowser"));
            QVERIFY2(!staging.exists() || staging.isSymLink(), qPrintable(at));
        });
        QVERIFY(conflicts > 0);
    }
};

NODEBROWSER_TEST(TestFaultySaves)
#include "tst_faultysaves.moc"
