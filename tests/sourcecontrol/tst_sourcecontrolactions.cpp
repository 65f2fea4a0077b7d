#include "gittest.h"
#include "sourcecontrol/tooltip.h"

#include <QTextDocument>

using namespace embeddedhost;
using namespace embeddedhost::StateBits;
using namespace tarno::datamodel;

namespace {

/// Without the icon and the looks.
QStringList GetLines(QString const& toolTip)
{
    QTextDocument document;
    document.setHtml(toolTip);
    QString text = document.toPlainText();
    text.remove(QChar::ObjectReplacementCharacter);
    return text.trimmed().split('\n');
}

} // namespace

/// What the panel asks of source control for one object: menu commands and tool tips.
class TestSourceControlActions : public GitTest
{
    Q_OBJECT

private:
    void SetUp() override
    {
        GitTest::SetUp();
        m_Library = std::make_unique<GitLibrary>(2);
        m_File = GitLibrary::GetFile(0);
        m_Path = m_Library->folder.GetPath(m_File);
    }

    void TearDown() override
    {
        m_Library.reset();
    }

    QString GetStatus() const
    {
        return m_Library->folder.Git({"status", "--porcelain"});
    }

    QString GetToolTip(int number) const
    {
        return ScsUtils::GetToolTip(m_Library->GetObject(number), QStringLiteral(":compound.png"));
    }

    std::unique_ptr<GitLibrary> m_Library;
    /// Of the first compound.
    QString m_File;
    QString m_Path;

private Q_SLOTS:
    void checkOutAndMakeWritable()
    {
        StateRecorder const recorder(m_Library->host->GetLibrary());
        TaskPtr const task = AskForAll(*m_Library);
        QTRY_COMPARE(recorder.count, 2);
        for (unsigned const expected : {kClean, kClean | kCheckedOut}) {
            QVERIFY(QFile::setPermissions(m_Path, QFile::ReadOwner | QFile::ReadGroup));
            if (expected == kClean)
                GetUIHelper().MakeWritable(m_Library->GetObject(0), true);
            else
                QVERIFY(CheckOut(m_Library->GetObject(0)));
            QFile::Permissions const permissions = QFile::permissions(m_Path);
            QVERIFY(permissions.testFlag(QFile::WriteOwner));
            QVERIFY(!permissions.testFlag(QFile::WriteGroup));
            QTRY_COMPARE(recorder.GetState(m_Library->GetItem(0)), expected);
        }
        QSignalSpy const shown(m_Library->host.get(), &CEmbeddedHost::ShowFilesRequested);
        GetUIHelper().ShowFiles(m_Library->GetObject(0), false);
        QCOMPARE(shown.value(0).value(0).toStringList(), QStringList(m_Path));
        QVERIFY(GetStatus().isEmpty() && GetMessages(*m_Library->host).isEmpty());
    }

    void refusedCheckOutsSayWhy()
    {
        CEmbeddedHost& host = *m_Library->host;
        QDir folder(m_Library->folder.GetPath());
        auto const refuses = [&](std::string const& uid, QString const& reason) {
            host.GetMessages().ClearLog();
            return !CheckOut(FindObject(uid)) && GetMessages(host).join('|').contains(reason);
        };
        ItemID const unsaved = LibraryUser(host).Create("new");
        QVERIFY(refuses(ItemIDUnlock::GetItemIDUID(unsaved), "\"new\" has no file on disk. Save"));
        QString const refusal = m_File + ": it cannot be checked out: ";
        QVERIFY(folder.mkpath(".git/checkedout.json"));
        QVERIFY(refuses(GitLibrary::GetUid(0), refusal + "nothing can be written into "));
        QVERIFY(folder.rename(".git", "git"));
        QVERIFY2(refuses(GitLibrary::GetUid(0), refusal), qPrintable(GetMessages(host).join('|')));
    }

    /// To another data source and back, undone and redone.
    void movesGoThroughGit()
    {
        GitFolder const& folder = m_Library->folder;
        folder.Write("library.json", QByteArray(kManifest).replace("read-only", "read-write"));
        folder.Commit("writable");
        QVERIFY(m_Library->host->OpenLibrary(folder.GetPath()));
        QUndoStack& stack = m_Library->host->GetCommandManager().GetUndoStack();
        QString const target = QString(m_File).replace("project/", "factory/");
        QString const moved = "R  " + m_File + " -> " + target;
        QByteArray const content = folder.Read(m_File);
        ChangeRecorder recorder(m_Library->host->GetLibrary());
        MoveObject(GitLibrary::GetUid(0), m_Library->GetObject(-1).GetDataSource());
        QCOMPARE(recorder.Take(), QStringList({"begin", "invalidated", "end"}));
        QCOMPARE(folder.Read(target), content);
        QTRY_COMPARE(GetStatus(), moved);
        stack.undo();
        QTRY_COMPARE(GetStatus(), QString());
        stack.redo();
        QTRY_COMPARE(GetStatus(), moved);

        // Git has a file of that name, which is not on disk.
        QString const other = QString(GitLibrary::GetFile(1)).replace("project/", "factory/");
        folder.Write(other, "{}");
        folder.Git({"add", other});
        QVERIFY(QFile::remove(folder.GetPath(other)));
        MoveObject(GitLibrary::GetUid(1), m_Library->GetObject(-1).GetDataSource());
        auto const says = [this](QString const& text) {
            return !GetMessages(*m_Library->host).filter(text).isEmpty();
        };
        QTRY_VERIFY(says("for git: git knows another file of the new name. Stage both"));
        stack.undo();

        // Nothing is overwritten, neither now nor by what was done before.
        folder.Write(m_File, "of another program");
        MoveObject(GitLibrary::GetUid(0), m_Library->GetObject(1).GetDataSource());
        stack.undo();
        QCOMPARE(folder.Read(target), content);
        QVERIFY(says("could not be moved to " + m_Path + ": there is such a file already."));
    }

    void toolTipTellsAllThereIs()
    {
        m_Library->Change(1);
        m_Library->folder.Git({"commit", "-q", "-a", "--author",
                               QString::fromUtf8("J\xC3\xBCrgen <j@example.org>"), "--date",
                               "2024-02-29T23:30:00+0530", "-m",
                               "Second <b>" + QString(71, 'x') + "\n\nbody"});
        QString const hash = m_Library->folder.Git({"log", "-1", "--format=%h"});
        m_Library->folder.Write(GitLibrary::GetFile(1), "{}");
        QStringList const expected = {"c1", GitLibrary::GetFile(1), "State: modified",
                                      "Last commit: " + hash
                                          + QString::fromUtf8(", J\xC3\xBCrgen, 2024-02-29 23:30"),
                                      "Second <b>" + QString(69, 'x') + QChar(0x2026)};
        // A tool tip that is asked for again may be looked up again.
        QTRY_COMPARE(GetLines(GetToolTip(1)), expected);
        QCOMPARE(
            BuildToolTip(":a.png", "<A>", "a.json", std::nullopt),
            QString("<p style='white-space:pre'><img src=\":a.png\"> <b>&lt;A&gt;</b><br>a.json"
                    "<br>Looking up the last commit...</p>"));

        m_Library->host->SetRevisionControlEnabled(false);
        LibraryUser(*m_Library->host).Rename(m_Library->GetItem(0), "<i>");
        QCOMPARE(GetLines(GetToolTip(0)), (QStringList{"<i>", m_File}));

        auto const object = m_Library->GetObject(0);
        m_Library->host->CloseLibrary();
        QCOMPARE(ScsUtils::GetToolTip(object, QString()), QString());
    }
};

NODEBROWSER_TEST(TestSourceControlActions)
#include "tst_sourcecontrolactions.moc"
