#include "hosttest.h"

#include <embeddedhost/journal.h>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

void MakeChanges(LibraryUser& user, CEmbeddedHost& host)
{
    user.Rename(host.FindItem(Uid(1)), "Soft Glow");
    user.Tag(host.FindItem(Uid(3)), "light;warm");
    user.Create("Brand New");
}

/// Changes a library, tells once that is journaled, and goes on until it is killed.
int ChangeForever(QStringList const& folders)
{
    CEmbeddedHost host;
    CJournal journal(host, folders[1]);
    journal.SetPause(1);
    host.OpenLibrary(folders[0]);
    LibraryUser user(host);
    MakeChanges(user, host);
    while (QDir(folders[1]).entryList({QStringLiteral("*.json")}).isEmpty())
        QCoreApplication::processEvents();
    std::puts("journaled");
    std::fflush(stdout);
    for (int number = 0;; ++number) {
        user.Tag(host.FindItem(Uid(2)), std::to_string(number).c_str());
        QCoreApplication::processEvents();
    }
}

bool const gIsChildAdded = AddChild("change-forever", ChangeForever);

} // namespace

/// Unsaved changes outlive the process.
class TestJournal : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow", R"(, "later": [1, {"b": 2}])"));
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Ramp") + ", 7, "
                                      + Object(3, "compound", "Fade") + ']');
    }

    void Open() override
    {
        HostTest::Open();
        m_Journal = std::make_unique<CJournal>(*m_Host, GetFolder());
        m_Journal->SetPause(20);
    }

    void Close() override
    {
        m_Journal.reset();
        HostTest::Close();
    }

private:
    QString const kGlowFile = QStringLiteral("project/glow.json");
    QString const kTwoFile = QStringLiteral("project/two.json");
    QString const kNewFile = QStringLiteral("project/brand-new.json");

    /// Of the journals, one for each test function.
    QString GetFolder() const
    {
        return m_Parent.filePath(QTest::currentTestFunction());
    }

    QFileInfoList FindJournals(char const* pattern = "*.json") const
    {
        return QDir(GetFolder()).entryInfoList({pattern}, QDir::Files);
    }

    int Count(char const* pattern = "*.json") const
    {
        return int(FindJournals(pattern).size());
    }

    /// As a kill leaves it: once the changes are journaled the process is gone, and before it is
    /// started again the file gets other content.
    void Restart(QString const& file = QString(), QByteArray const& content = QByteArray())
    {
        QTRY_COMPARE(Count(), 1);
        Close();
        if (!file.isEmpty())
            m_Folder->Write(file, content);
        Open();
    }

    void ChangeAndRestart()
    {
        MakeChanges(*m_User, *m_Host);
        Restart();
    }

    void RecoverAll()
    {
        for (CJournal::Leftover const& leftover : m_Journal->FindLeftovers())
            m_Journal->Recover(leftover);
    }

    void VerifyChanges()
    {
        QCOMPARE(NameOf(1), QString("Soft Glow"));
        QCOMPARE(TagsOf(3), QString("light;warm"));
        QVERIFY(m_Host->GetUnsavedChanges().contains("Brand New"));
    }

    QTemporaryDir m_Parent;
    std::unique_ptr<CJournal> m_Journal;

private Q_SLOTS:
    void outlivesAKilledProcess()
    {
        auto const before = m_Folder->Read();
        for (int round = 0; round < 10; ++round) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(),
                        {"change-forever", m_Folder->GetPath(), GetFolder()});
            QVERIFY(child.waitForReadyRead(30000));
            QVERIFY2(m_Journal->FindLeftovers().empty(), "its process is still there");
            // At any moment: it is writing all the time.
            QTest::qSleep(1 + 3 * round);
            child.kill();
            QVERIFY(child.waitForFinished());

            auto const leftovers = m_Journal->FindLeftovers();
            QCOMPARE(leftovers.size(), std::size_t(1));
            QVERIFY(leftovers.front().objectCount >= 3);
            m_Journal->Recover(leftovers.front());
            VerifyChanges();
            QCOMPARE(m_Folder->Read(), before);
            m_Journal->Drop();
            Close();
            Open();
        }
    }

    /// What a save writes after a recovery is what it would have written before.
    void recoversWhatWasToBeSaved()
    {
        ChangeAndRestart();
        QVERIFY(m_Host->GetUnsavedChanges().isEmpty());
        RecoverAll();
        QVERIFY2(Count() == 1 && Stack().count() == 1, "recovered is not saved");
        Stack().undo();
        QVERIFY(!m_Host->IsModified());
        QTRY_COMPARE(Count(), 0);
        Stack().redo();
        VerifyChanges();
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(Content(kGlowFile).contains("Soft Glow"));
        QVERIFY(Content(kTwoFile).contains("light;warm"));
        QVERIFY(Content(kNewFile).contains("Brand New"));
        QTRY_COMPARE(Count(), 0);
    }

    void aRemovalTakenBackKeepsOtherChanges()
    {
        ItemID const id = m_User->Create("Brand New");
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        Stack().undo();
        Restart();
        m_User->Rename(id, "Newer");
        RecoverAll();
        QVERIFY(m_User->NameOf(id).empty());
        Stack().undo();
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(Content(kNewFile).contains("Newer"));
        // After a save has removed the file, another program has made one of its name.
        Stack().redo();
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        m_Folder->Write(kNewFile, Object(9, "compound", "Other"));
        m_Host->CheckFolder();
        Stack().undo();
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(Content(kNewFile).contains("Other"));
        QVERIFY(m_Folder->Read().values().join().contains("Newer"));
    }

    void keepsConflictsWithChangesMadeSince()
    {
        m_User->Rename(Item(2), "Ours");
        Restart(kTwoFile, '[' + Object(2, "compound", "Theirs") + ']');
        RecoverAll();
        QCOMPARE(NameOf(2), QString("Ours"));
        // Also after another look at the file.
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Theirs") + "  ]");
        m_Host->CheckFolder();
        QVERIFY2(!m_User->Save(), "their change must not be lost");
        QVERIFY(Content(kTwoFile).contains("Theirs"));
        QCOMPARE(m_Host->FindConflicts(), QStringList(m_Folder->GetPath(kTwoFile)));
        Stack().undo();
        m_Host->CheckFolder();
        QCOMPARE(NameOf(2), QString("Theirs"));
        QVERIFY(!m_Host->IsModified() && m_Host->FindConflicts().isEmpty());
    }

    /// What is read-only now is left out, and the file of somebody else's that has taken the name
    /// of a new item stays.
    void recoversWhatStillCanBe()
    {
        MakeChanges(*m_User, *m_Host);
        m_Folder->Write(kNewFile, Object(9, "compound", "Other"));
        Restart(kGlowFile, Object(1, "compound", "Glow", R"(, "readOnly": true)"));
        RecoverAll();
        QCOMPARE(NameOf(1), QString("Glow"));
        QVERIFY2(Log().contains("\"Soft Glow\" was not recovered: it is read-only now."),
                 qPrintable(Log()));
        QCOMPARE(Count("*.aside"), 1);
        QVERIFY2(m_Host->IsModified() && m_User->Save(), qPrintable(Log()));
        QVERIFY(Content(kNewFile).contains("Other"));
        QVERIFY(m_Folder->Read().values().join().contains("Brand New"));
    }

    void setsDamagedJournalsAside()
    {
        ChangeAndRestart();
        QString const file = FindJournals().at(0).filePath();
        QByteArray const content = ReadFile(file);
        QByteArray const faulty[] = {
            content.left(content.indexOf("Soft Glow")),
            QByteArray(content).replace("\"library\": \"", "\"library\": \"/elsewhere"),
            QByteArray(content).replace("\"format\": 1", "\"format\": 2")};
        int count = 0;
        for (QByteArray const& left : faulty) {
            QVERIFY(left != content && WriteFile(file, left));
            QVERIFY(m_Journal->FindLeftovers().empty() && Count() == 0);
            QCOMPARE(Count("*.aside*"), ++count);
        }
        QVERIFY2(Log().contains(".aside"), qPrintable(Log()));
    }

    void eachProcessHasItsOwn()
    {
        ChangeAndRestart();
        auto const leftovers = m_Journal->FindLeftovers();
        QCOMPARE(leftovers.size(), std::size_t(1));
        // Undecided, and a second journal of our own beside it.
        m_User->Rename(Item(1), "Second Thoughts");
        QTRY_COMPARE(Count(), 2);
        CJournal other(*m_Host, GetFolder());
        QVERIFY(other.FindLeftovers().empty());
        m_Journal->Discard(leftovers.front());
        QCOMPARE(Count(), 1);
        Stack().undo();
        QTRY_COMPARE(Count(), 0);
    }

    void keepsWhatItCannotTakeOver()
    {
        ChangeAndRestart();
        QString const leftover = m_Journal->FindLeftovers().at(0).file;
        m_User->Create("Another");
        QTRY_COMPARE(Count(), 2);
        QString own;
        for (QFileInfo const& info : FindJournals())
            own = info.filePath() == leftover ? own : info.filePath();
        QVERIFY(QFile::remove(own) && QDir().mkpath(own + "/in the way"));
        m_Journal->Recover({leftover, QDateTime(), 0});
        QVERIFY(Log().contains("kept safe"));
        QVERIFY(QFileInfo::exists(leftover));
    }
};

NODEBROWSER_TEST(TestJournal)
#include "tst_journal.moc"
