#include "faultyfiles.h"
#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"
#include "model/accessorcontext.h"
#include "storage/filemove.h"

#include <journal.h>
#include <nlohmann/json.hpp>

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

QString const kFolder = QStringLiteral("project/below");
QString const kChanged = kFolder + QStringLiteral("/changed.json");
QString const kRemoved = QStringLiteral("project/removed.json");
QString const kNew = QStringLiteral("project/new.json");

char const* const kTwoSources = R"({"format": 1, "name": "Test", "dataSources": [
    {"uid": "AAAAAAAA-0000-0000-0000-000000000001", "name": "Project", "path": "project",
     "access": "read-write"},
    {"uid": "AAAAAAAA-0000-0000-0000-000000000003", "name": "Other", "path": "other",
     "access": "read-write"}]})";

/// More calls than anything here makes.
int const kMostCalls = 2000;

QByteArray WithName(int uid, char const* name)
{
    return QByteArray::fromStdString(
        nlohmann::ordered_json::parse(Object(uid, "compound", name).toStdString()).dump(2) + '\n');
}

} // namespace

/// What happens in the middle of a save: at each call to the system in turn something fails, the
/// process is killed, or another program writes.
class tst_FaultySaves : public LoggedTest
{
    Q_OBJECT

protected:
    void TearDown() override
    {
        faultyfiles::Stop();
        Close();
    }

private:
    /// A file that is going to be replaced, one to be removed and one to be made.
    void Prepare()
    {
        Close();
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(kChanged, WithName(1, "Old"));
        Open();
        ItemID const removed = m_User->Create("Removed");
        QVERIFY(m_User->Save());
        m_Host->GetCommandManager().GetUndoStack().undo();
        QVERIFY(m_User->NameOf(removed).empty());
        m_User->Create("New");
        m_User->Rename(Item(), "Ours");
        m_Host->GetMessages().ClearLog();
        m_Before = m_Folder->Read();
    }

    void Open()
    {
        Close();
        m_Host = std::make_unique<CEmbeddedHost>();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        m_User = std::make_unique<LibraryUser>(*m_Host);
    }

    void Close()
    {
        m_User.reset();
        m_Host.reset();
    }

    ItemID Item()
    {
        return m_Host->FindItem(Uid(1));
    }

    QByteArray Content(QString const& file)
    {
        return m_Folder->Read().value(m_Folder->GetPath(file));
    }

    QString Log()
    {
        return GetMessages(*m_Host).join('\n');
    }

    /// Nothing torn: each file is the one before, or the one that was to be saved.
    void VerifyWhole()
    {
        QByteArray const changed = Content(kChanged);
        QVERIFY2(changed == WithName(1, "Old") || changed == WithName(1, "Ours"),
                 changed.constData());
        QByteArray const removed = Content(kRemoved);
        QVERIFY(removed.isEmpty() || removed == m_Before[m_Folder->GetPath(kRemoved)]);
        QByteArray const made = Content(kNew);
        QVERIFY(made.isEmpty() || nlohmann::json::parse(made.toStdString())["name"] == "New");
    }

    /// And nothing is left behind.
    void VerifySaved()
    {
        QCOMPARE(Content(kChanged), WithName(1, "Ours"));
        QVERIFY(Content(kRemoved).isEmpty());
        QVERIFY(Content(kNew).contains("\"New\""));
        QString const all = QStringList(m_Folder->Read().keys()).join(' ');
        QVERIFY2(!QDir(m_Folder->GetPath("project/.nodebrowser")).exists(), qPrintable(all));
        QCOMPARE(m_Folder->Read().size(), m_Before.size());
    }

    void AddFaults()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<bool>("forGood");
        QTest::addColumn<bool>("isHalf");
        QTest::newRow("once: another file system") << EXDEV << false << false;
        QTest::newRow("once: the disk is full") << ENOSPC << false << false;
        QTest::newRow("once: the disk is full after half a write") << ENOSPC << true << true;
        QTest::newRow("once: the disk is broken") << EIO << false << false;
        QTest::newRow("the disk is broken") << EIO << true << false;
        QTest::newRow("the disk is full") << ENOSPC << true << false;
        QTest::newRow("no more files can be opened") << EMFILE << true << false;
    }

    void FailAt(int call)
    {
        QFETCH(int, error);
        QFETCH(bool, forGood);
        QFETCH(bool, isHalf);
        faultyfiles::FailAt(call, error, forGood, isHalf);
    }

    /// The reason that is said at least once.
    static QString Explain(char const* otherFileSystem)
    {
        QFETCH(int, error);
        return QString::fromLocal8Bit(error == EXDEV ? otherFileSystem : std::strerror(error));
    }

    void Move()
    {
        CLibrary& library = *m_Host->GetLibrary().GetContext()->GetLibrary();
        MoveItem(library, *library.FindItem(Uid(1).c_str()), library.GetSources().back(), nullptr);
    }

    /// Null when there is none, or it is torn.
    static QByteArray GetJournal(QTemporaryDir const& folder)
    {
        QDir const dir(folder.path());
        QStringList const names = dir.entryList({QStringLiteral("*.json")}, QDir::Files);
        QByteArray const journal = names.size() == 1 ? Get(dir.filePath(names[0])) : QByteArray();
        return nlohmann::json::accept(journal.toStdString()) ? journal : QByteArray();
    }

    static void Put(QString const& path, QByteArray const& content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    static QByteArray Get(QString const& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// What another program does to the file.
    void Interfere(QString const& way, QString const& file, QTemporaryDir const& outside,
                   QByteArray const& theirs, std::thread& writer)
    {
        QByteArray const path = QFile::encodeName(m_Folder->GetPath(file));
        if (way == "writes" || way == "makes") {
            Put(m_Folder->GetPath(file), theirs);
        } else if (way == "replaces") {
            Put(outside.filePath("new"), theirs);
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

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<LibraryUser> m_User;
    QMap<QString, QByteArray> m_Before;

private Q_SLOTS:
    void SavesThatFailLoseNothing_data()
    {
        AddFaults();
    }

    void SavesThatFailLoseNothing()
    {
        Expect("Could not remove our own lock file");
        int failures = 0;
        QString said;
        bool hasFaults = true;
        for (int call = 1; hasFaults && !QTest::currentTestFailed(); ++call) {
            Prepare();
            FailAt(call);
            bool const isSaved = m_User->Save();
            hasFaults = faultyfiles::Stop();
            QVERIFY(call < kMostCalls);
            failures += !isSaved;

            VerifyWhole();
            QCOMPARE(m_Host->IsModified(), !isSaved);
            QCOMPARE(m_User->GetSaveMessages().empty(), isSaved);
            QVERIFY2(isSaved || Log().contains("not saved"), qPrintable(Log()));
            said += Log();
            // What a fault kept us from telling apart may be overwritten on purpose.
            for (QString const& path : m_Host->FindConflicts())
                m_Host->OverwriteFileOnDisk(path);
            QVERIFY2(m_User->Save(), qPrintable(QStringLiteral("call %1: ").arg(call) + Log()));
            Open();
            VerifySaved();
        }
        QVERIFY(failures > 10);
        QVERIFY(said.contains(Explain("another file system than the data source's")));
        qInfo("%d of the saves failed", failures);
    }

    void MovesThatFailLoseNothing_data()
    {
        AddFaults();
    }

    void MovesThatFailLoseNothing()
    {
        QString const from = QStringLiteral("project/below/changed.json");
        QString const to = QStringLiteral("other/below/changed.json");
        int failures = 0;
        QString said;
        bool hasFaults = true;
        for (int call = 1; hasFaults && !QTest::currentTestFailed(); ++call) {
            Close();
            m_Folder = std::make_unique<LibraryFolder>();
            m_Folder->Write("library.json", kTwoSources);
            m_Folder->Write(from, WithName(1, "Old"));
            QVERIFY(QDir().mkdir(m_Folder->GetPath("other")));
            Open();
            FailAt(call);
            Move();
            hasFaults = faultyfiles::Stop();

            bool const isMoved = Content(from).isEmpty();
            failures += !isMoved;
            QCOMPARE(Content(isMoved ? to : from), WithName(1, "Old"));
            QVERIFY(Content(isMoved ? from : to).isEmpty());
            QVERIFY2(isMoved || Log().contains("could not be moved"), qPrintable(Log()));
            said += Log();
            m_User->Rename(Item(), "Ours");
            QVERIFY2(m_User->Save(), qPrintable(Log()));
            QCOMPARE(Content(isMoved ? to : from), WithName(1, "Ours"));
            Move();
            QCOMPARE(Content(to), WithName(1, "Ours"));
        }
        QVERIFY(failures > 0);
#ifndef NODEBROWSER_PORTABLE_FILES
        QVERIFY(said.contains(Explain("different file systems")));
#endif
        qInfo("%d of the moves failed", failures);
    }

    void JournalsThatFailLoseNothing_data()
    {
        AddFaults();
    }

    void JournalsThatFailLoseNothing()
    {
        Expect("Could not remove our own lock file");
        int failures = 0;
        bool hasFaults = true;
        for (int call = 1; hasFaults && !QTest::currentTestFailed(); ++call) {
            Prepare();
            QTemporaryDir const journals;
            CJournal journal(*m_Host, journals.path());
            journal.SetPause(0);
            auto const write = [&](char const* name) {
                m_User->Rename(Item(), name);
                QTest::qWait(1);
                hasFaults = faultyfiles::Stop();
                return GetJournal(journals);
            };
            QByteArray const first = write("First");
            QVERIFY(first.contains("First"));
            FailAt(call);
            QByteArray const second = write("Second");
            bool const wasFaulty = hasFaults;
            bool const isWritten = second.contains("Second");
            // It may have been tried again since, and gone well.
            bool const hasFailed = Log().contains("kept safe");
            failures += hasFailed;
            QVERIFY2(isWritten || second == first, second.constData());
            QVERIFY2(isWritten || hasFailed, qPrintable(Log()));
            QVERIFY(write("Third").contains("Third"));
            hasFaults = wasFaulty;
        }
        QVERIFY(failures > 0);
        qInfo("%d of the writes failed", failures);
    }

    /// At any call of a save.
    void KilledSavesTearNothing()
    {
        bool isKilled = true;
        for (int call = 1; isKilled && !QTest::currentTestFailed(); ++call) {
            Prepare();
            pid_t const child = fork();
            if (child == 0) {
                faultyfiles::RunAt(call, [] { raise(SIGKILL); });
                m_User->Save();
                _exit(0);
            }
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            isKilled = WIFSIGNALED(status);
            VerifyWhole();
            for (QString const& path : m_Host->FindConflicts())
                m_Host->OverwriteFileOnDisk(path);
            QVERIFY2(m_User->Save(), qPrintable(Log()));
            VerifySaved();
            QVERIFY2(!Log().contains("another program"), qPrintable(Log()));
        }
    }

    void OthersAreNotOverwritten_data()
    {
        QTest::addColumn<QString>("way");
        for (char const* const way : {"replaces", "writes", "writes slowly", "removes", "makes",
                                      "links", "links the folder", "links the staging folder"})
            QTest::newRow(way) << way;
    }

    /// Another program writes at any call of a save, as late as between the last look at the old
    /// file and its end.
    void OthersAreNotOverwritten()
    {
#ifdef NODEBROWSER_PORTABLE_FILES
        QSKIP("files cannot be exchanged");
#endif
        QFETCH(QString, way);
        QString const file = way == "makes" ? kNew : kChanged;
        QByteArray const theirs = WithName(1, "Theirs");
        QByteArray const secret = WithName(1, "Old");
        bool isReached = true;
        int conflicts = 0;
        for (int call = 1; isReached && !QTest::currentTestFailed(); ++call) {
            Prepare();
            QTemporaryDir const outside;
            QStringList const secrets = {"changed.json", "lock"};
            for (QString const& name : secrets)
                Put(outside.filePath(name), secret);
            std::thread writer;
            faultyfiles::RunAt(call, [&] { Interfere(way, file, outside, theirs, writer); });
            bool const isSaved = m_User->Save();
            isReached = faultyfiles::Stop();
            if (writer.joinable())
                writer.join();
            if (!isReached)
                break;

            conflicts += !isSaved;
            for (QString const& name : secrets)
                QCOMPARE(Get(outside.filePath(name)), secret);
            QString const at = QStringLiteral("call %1: ").arg(call) + Log();
            bool const isLinked = way.startsWith("links");
            if (!isLinked)
                QVERIFY2(Content(file) == (way == "removes" ? QByteArray() : theirs),
                         qPrintable(at));
            // They know of it, or will when they look.
            QVERIFY2(isSaved || Log().contains("not saved"), qPrintable(at));
            QFileInfo const staging(m_Folder->GetPath("project/.nodebrowser"));
            QVERIFY2(!staging.exists() || staging.isSymLink(), qPrintable(at));
            if (!isSaved)
                QVERIFY(m_Host->IsModified());
        }
        QVERIFY(conflicts > 0);
        qInfo("%d conflicts", conflicts);
    }
};

NODEBROWSER_TEST_MAIN(tst_FaultySaves)
#include "tst_faultysaves.moc"
