#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <journal.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace tarno::datamodel;

namespace {

QString const kGlowFile = QStringLiteral("project/glow.json");
QString const kTwoFile = QStringLiteral("project/two.json");
char const* const kChild = "--change-forever";

/// In milliseconds.
int const kPause = 20;

void MakeChanges(LibraryUser& user, CEmbeddedHost& host)
{
    user.Rename(host.FindItem(Uid(1)), "Soft Glow");
    user.Tag(host.FindItem(Uid(3)), "light;warm");
    user.Create("Brand New");
}

/// Changes a library, tells once that is journaled, and goes on until it is killed.
int ChangeForever(QString const& library, QString const& journals)
{
    CEmbeddedHost host;
    CJournal journal(host, journals);
    journal.SetPause(1);
    host.OpenLibrary(library);
    LibraryUser user(host);
    MakeChanges(user, host);
    while (QDir(journals).entryList({QStringLiteral("*.json")}).isEmpty())
        QCoreApplication::processEvents();
    std::puts("journaled");
    std::fflush(stdout);
    for (int number = 0;; ++number) {
        user.Tag(host.FindItem(Uid(2)), std::to_string(number).c_str());
        QCoreApplication::processEvents();
    }
}

} // namespace

/// Unsaved changes outlive the process.
class tst_Journal : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow", R"(, "later": [1, {"b": 2}])"));
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Ramp") + ", 7, "
                                      + Object(3, "compound", "Fade") + ']');
        m_JournalFolder = std::make_unique<QTemporaryDir>();
        Open();
    }

    void TearDown() override
    {
        Die();
        m_JournalFolder.reset();
        m_Folder.reset();
    }

private:
    void Open()
    {
        m_Host = std::make_unique<CEmbeddedHost>();
        m_Journal = std::make_unique<CJournal>(*m_Host, GetJournalFolder());
        m_Journal->SetPause(kPause);
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        m_User = std::make_unique<LibraryUser>(*m_Host);
    }

    /// As far as the files are concerned this is what a kill leaves.
    void Die()
    {
        m_User.reset();
        m_Journal.reset();
        m_Host.reset();
    }

    void DieAndOpen()
    {
        Die();
        Open();
    }

    void ChangeAndDie()
    {
        MakeChanges(*m_User, *m_Host);
        QTRY_COMPARE(CountJournals(), 1);
        DieAndOpen();
    }

    void RecoverAll()
    {
        for (CJournal::Leftover const& leftover : m_Journal->FindLeftovers())
            m_Journal->Recover(leftover);
    }

    void VerifyChanges()
    {
        QCOMPARE(m_User->NameOf(Item(1)), std::string("Soft Glow"));
        QCOMPARE(m_Host->GetLibrary().GetItemTags(Item(3), "ApplicationTags"),
                 std::string("light;warm"));
        QVERIFY(m_Host->GetUnsavedChanges().contains("Brand New"));
    }

    QString GetJournalFolder() const
    {
        return m_JournalFolder->filePath(QStringLiteral("journals"));
    }

    int CountJournals() const
    {
        return int(FindJournals(QStringLiteral("*.json")).size());
    }

    QStringList FindJournals(QString const& pattern) const
    {
        return QDir(GetJournalFolder()).entryList({pattern}, QDir::Files);
    }

    ItemID Item(int number)
    {
        return m_Host->FindItem(Uid(number));
    }

    QByteArray Content(QString const& file)
    {
        return m_Folder->Read().value(m_Folder->GetPath(file));
    }

    QString Log()
    {
        return GetMessages(*m_Host).join('\n');
    }

    QUndoStack& Stack()
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<QTemporaryDir> m_JournalFolder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<CJournal> m_Journal;
    std::unique_ptr<LibraryUser> m_User;

private Q_SLOTS:
    void OutlivesAKilledProcess()
    {
        auto const before = m_Folder->Read();
        for (int round = 0; round < 10; ++round) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(),
                        {QString::fromLatin1(kChild), m_Folder->GetPath(), GetJournalFolder()});
            QVERIFY(child.waitForReadyRead(30000));
            QVERIFY2(m_Journal->FindLeftovers().empty(), "its process is still there");
            // At any moment: it is writing all the time.
            QTest::qSleep(1 + 3 * round);
            child.kill();
            QVERIFY(child.waitForFinished());
            QCOMPARE(m_Folder->Read(), before);

            auto const leftovers = m_Journal->FindLeftovers();
            QCOMPARE(leftovers.size(), std::size_t(1));
            QVERIFY(leftovers.front().objectCount >= 3);
            m_Journal->Recover(leftovers.front());
            VerifyChanges();
            QCOMPARE(m_Folder->Read(), before);
            m_Journal->Drop();
            DieAndOpen();
        }
    }

    /// What a save writes after a recovery is what it would have written before.
    void RecoversWhatWasToBeSaved()
    {
        ChangeAndDie();
        auto const before = m_Folder->Read();
        QByteArray const fresh = m_Host->GetUnsavedChanges();
        QVERIFY(fresh.isEmpty());
        RecoverAll();
        VerifyChanges();
        QCOMPARE(Stack().count(), 1);
        QVERIFY2(CountJournals() == 1, "recovered is not saved");
        QCOMPARE(m_Folder->Read(), before);

        Stack().undo();
        QVERIFY(!m_Host->IsModified());
        QTRY_COMPARE(CountJournals(), 0);
        Stack().redo();
        VerifyChanges();
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(Content(kGlowFile).contains("Soft Glow"));
        QVERIFY(Content(kTwoFile).contains("light;warm"));
        QVERIFY(Content(QStringLiteral("project/brand-new.json")).contains("Brand New"));
        QTRY_COMPARE(CountJournals(), 0);
    }

    void GoesWithTheLastUnsavedChange()
    {
        m_User->Create("Brand New");
        QTRY_COMPARE(CountJournals(), 1);
        Stack().undo();
        QTRY_COMPARE(CountJournals(), 0);
        QVERIFY(!m_Host->IsModified());

        m_User->Rename(Item(1), "Soft Glow");
        QTRY_COMPARE(CountJournals(), 1);
        m_Journal->Drop();
        DieAndOpen();
        QVERIFY(m_Journal->FindLeftovers().empty());
    }

    /// The file of an item whose creation was undone after a save is still there.
    void RecoversRemovals()
    {
        m_User->Create("Brand New");
        m_User->Save();
        Stack().undo();
        QTRY_COMPARE(CountJournals(), 1);
        DieAndOpen();
        QString const file = QStringLiteral("project/brand-new.json");
        QVERIFY(!Content(file).isEmpty());
        RecoverAll();
        QVERIFY(m_Host->IsModified());
        Stack().undo();
        QVERIFY(!m_Host->IsModified());
        Stack().redo();
        QVERIFY(m_User->Save());
        QVERIFY(Content(file).isEmpty());
    }

    void KeepsConflictsWithChangesMadeSince_data()
    {
        QTest::addColumn<bool>("isOverwritten");
        QTest::newRow("ours") << true;
        QTest::newRow("theirs") << false;
    }

    void KeepsConflictsWithChangesMadeSince()
    {
        QFETCH(bool, isOverwritten);
        m_User->Rename(Item(2), "Ours");
        QTRY_COMPARE(CountJournals(), 1);
        Die();
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Theirs") + ']');
        Open();
        RecoverAll();
        QCOMPARE(m_User->NameOf(Item(2)), std::string("Ours"));
        // Also after another look at the file.
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Theirs") + "  ]");
        m_Host->CheckFolder();
        QVERIFY2(!m_User->Save(), "their change must not be lost");
        QVERIFY(Content(kTwoFile).contains("Theirs"));
        QString const path = m_Folder->GetPath(kTwoFile);
        QCOMPARE(m_Host->FindConflicts(), QStringList(path));

        QVERIFY(isOverwritten ? m_Host->OverwriteFileOnDisk(path) : m_Host->TakeFileFromDisk(path));
        QVERIFY(m_User->Save());
        QVERIFY(Content(kTwoFile).contains(isOverwritten ? "Ours" : "Theirs"));
        QVERIFY(m_Host->FindConflicts().isEmpty());
    }

    void UndoneConflictsLeaveNothing()
    {
        m_User->Rename(Item(2), "Ours");
        QTRY_COMPARE(CountJournals(), 1);
        Die();
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Theirs") + ']');
        Open();
        RecoverAll();
        Stack().undo();
        QCOMPARE(m_User->NameOf(Item(2)), std::string("Theirs"));
        QVERIFY(!m_Host->IsModified());
        m_User->Rename(Item(2), "Ours again");
        QVERIFY2(m_User->Save(), qPrintable(Log()));
    }

    /// A file of somebody else's has taken the name that a new item was to have.
    void NewItemsDoNotReplaceFiles()
    {
        m_User->Create("Brand New");
        QTRY_COMPARE(CountJournals(), 1);
        Die();
        QString const file = QStringLiteral("project/brand-new.json");
        m_Folder->Write(file, Object(9, "compound", "Other"));
        Open();
        RecoverAll();
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(Content(file).contains("Other"));
        QVERIFY(m_Folder->Read().values().join().contains("Brand New"));
    }

    void LeavesOutWhatIsReadOnlyNow()
    {
        ChangeAndDie();
        Die();
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow", R"(, "readOnly": true)"));
        Open();
        RecoverAll();
        QCOMPARE(m_User->NameOf(Item(1)), std::string("Glow"));
        QVERIFY2(m_Host->IsModified(), "the others are there");
        QVERIFY2(Log().contains("Soft Glow"), qPrintable(Log()));
        QCOMPARE(FindJournals(QStringLiteral("*.aside")).size(), 1);
    }

    void SetsDamagedJournalsAside_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("torn") << QByteArray("Soft Glow\"") << QByteArray();
        QTest::newRow("another library")
            << QByteArray("\"library\": \"") << QByteArray("\"library\": \"/elsewhere");
        QTest::newRow("another format")
            << QByteArray("\"format\": 1") << QByteArray("\"format\": 2");
        QTest::newRow("nested without end")
            << QByteArray("\"kind\"")
            << "\"x\": " + QByteArray(100000, '[') + QByteArray(100000, ']') + ", \"kind\"";
        QTest::newRow("an object of no kind") << QByteArray("\"kind\"") << QByteArray("\"kin\"");
    }

    void SetsDamagedJournalsAside()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        ChangeAndDie();
        QString const path =
            GetJournalFolder() + '/' + FindJournals(QStringLiteral("*.json")).front();
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QByteArray content = file.readAll();
        QVERIFY(content.contains(before));
        if (after.isEmpty())
            content.truncate(content.indexOf(before));
        else
            content.replace(before, after);
        file.resize(0);
        file.seek(0);
        file.write(content);
        file.close();

        QVERIFY(m_Journal->FindLeftovers().empty());
        QVERIFY2(Log().contains(".aside"), qPrintable(Log()));
        QCOMPARE(FindJournals(QStringLiteral("*.aside")).size(), 1);
        QCOMPARE(CountJournals(), 0);
    }

    void EachProcessHasItsOwn()
    {
        ChangeAndDie();
        auto const leftovers = m_Journal->FindLeftovers();
        QCOMPARE(leftovers.size(), std::size_t(1));
        // Undecided, and a second journal of our own beside it.
        m_User->Rename(Item(1), "Second Thoughts");
        QTRY_COMPARE(CountJournals(), 2);
        CJournal other(*m_Host, GetJournalFolder());
        QVERIFY(other.FindLeftovers().empty());
        m_Journal->Discard(leftovers.front());
        QCOMPARE(CountJournals(), 1);
        Stack().undo();
        QTRY_COMPARE(CountJournals(), 0);
    }

    void SaysWhenItCannotWrite()
    {
        QFile inTheWay(GetJournalFolder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        m_User->Rename(Item(1), "Soft Glow");
        QTRY_VERIFY(Log().contains("kept safe"));
        // It goes on trying.
        QVERIFY(inTheWay.remove());
        QTRY_COMPARE(CountJournals(), 1);
    }

    void KeepsWhatItCannotTakeOver()
    {
        ChangeAndDie();
        QString const leftover = m_Journal->FindLeftovers().at(0).file;
        m_User->Create("Another");
        QTRY_COMPARE(CountJournals(), 2);
        QString own;
        for (QFileInfo const& info : QDir(GetJournalFolder()).entryInfoList({"*.json"}))
            own = info.filePath() == leftover ? own : info.filePath();
        QVERIFY(QFile::remove(own) && QDir().mkpath(own + "/in the way"));
        m_Journal->Recover({leftover, QDateTime(), 0});
        QVERIFY(Log().contains("kept safe"));
        QVERIFY(QFileInfo::exists(leftover));
    }
};

int main(int argc, char** argv)
{
    if (argc == 4 && qstrcmp(argv[1], kChild) == 0) {
        QCoreApplication application(argc, argv);
        return ChangeForever(QFile::decodeName(argv[2]), QFile::decodeName(argv[3]));
    }
    tst_Journal test;
    return RunTest(test, argc, argv);
}
#include "tst_journal.moc"
