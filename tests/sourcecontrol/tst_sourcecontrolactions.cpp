#include "gittest.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>

using namespace embeddedhost;
using namespace embeddedhost::StateBits;

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
    void checkOutAndMakeWritable_data()
    {
        QTest::addColumn<bool>("checksOut");
        QTest::newRow("check out") << true;
        QTest::newRow("make writable") << false;
    }

    void checkOutAndMakeWritable()
    {
        QFETCH(bool, checksOut);
        QVERIFY(QFile::setPermissions(m_Path, QFile::ReadOwner | QFile::ReadGroup));
        StateRecorder const recorder(m_Library->host->GetLibrary());
        TaskPtr const task = AskForAll(*m_Library);
        QTRY_COMPARE(recorder.count, 2);
        if (checksOut)
            QVERIFY(CheckOut(m_Library->GetObject(0)));
        else
            GetUIHelper().MakeWritable(m_Library->GetObject(0), true);
        QFile::Permissions const permissions = QFile::permissions(m_Path);
        QVERIFY(permissions.testFlag(QFile::WriteOwner));
        QVERIFY(!permissions.testFlag(QFile::WriteGroup));
        QCOMPARE(QFileInfo::exists(m_Library->folder.GetPath(".git/checkedout.json")), checksOut);
        QTRY_COMPARE(recorder.GetState(m_Library->GetItem(0)),
                     checksOut ? kClean | kCheckedOut : kClean);
        QCOMPARE(GetStatus(), QString());
        QCOMPARE(GetMessages(*m_Library->host), QStringList());
    }

    void checkOutSaysWhyNot()
    {
        auto const isRefused = [&](QString const& reason) {
            m_Library->host->GetMessages().ClearLog();
            return !CheckOut(m_Library->GetObject(0))
                   && GetMessages(*m_Library->host).join('\n').contains(reason);
        };
        // Nothing of the git folder is known any more.
        m_Library->folder.Write(".git/config", "[broken");
        QVERIFY(isRefused("it cannot be checked out: git cannot read the work tree "
                          + m_Library->folder.GetPath()));
        QVERIFY(QDir(m_Library->folder.GetPath()).rename(".git", ".gone"));
        QVERIFY(isRefused("it is not in a git work tree"));
        QFile::remove(m_Path);
        QVERIFY(isRefused("has no file on disk"));
        bool isCheckedOut = true;
        GetUIHelper().CheckOut(qorm::QormHandle<qorm::IDbObject>(), isCheckedOut, true);
        QVERIFY(!isCheckedOut);
    }

    void showFilesAsksTheHost()
    {
        QSignalSpy const shown(m_Library->host.get(), &CEmbeddedHost::ShowFilesRequested);
        GetUIHelper().ShowFiles(m_Library->GetObject(0), false);
        GetUIHelper().ShowFiles(qorm::QormHandle<qorm::IDbObject>(), false);
        QCOMPARE(shown.count(), 1);
        QCOMPARE(shown.front().front().toStringList(), QStringList(m_Path));
    }

    /// To another data source and back, undone and redone.
    void movesGoThroughGit()
    {
        GitFolder const& folder = m_Library->folder;
        QByteArray const manifest = folder.Read("library.json");
        folder.Write("library.json", QByteArray(manifest).replace("read-only", "read-write"));
        folder.Commit("writable");
        QVERIFY(m_Library->host->OpenLibrary(folder.GetPath()));
        QUndoStack& stack = m_Library->host->GetCommandManager().GetUndoStack();
        QString const target = QString(m_File).replace("project/", "factory/");
        QString const moved = "R  " + m_File + " -> " + target;
        QByteArray const content = folder.Read(m_File);
        MoveObject(GitLibrary::GetUid(0), m_Library->GetObject(-1).GetDataSource());
        QCOMPARE(folder.Read(target), content);
        QTRY_COMPARE(GetStatus(), moved);
        stack.undo();
        QTRY_COMPARE(GetStatus(), QString());

        // Git is busy, and ready soon.
        folder.Write(".git/index.lock", "");
        stack.redo();
        QCOMPARE(folder.Read(target), content);
        QFile::remove(folder.GetPath(".git/index.lock"));
        QTRY_COMPARE(GetStatus(), moved);

        // When it is busy for long, the user is told what to do.
        folder.Write(".git/index.lock", "");
        stack.undo();
        QCOMPARE(folder.Read(m_File), content);
        QTRY_COMPARE(GetMessages(*m_Library->host).size(), 1);
        QVERIFY(GetMessages(*m_Library->host)
                    .front()
                    .contains("moved on disk, but not for git: git's index cannot be"));
        QFile::remove(folder.GetPath(".git/index.lock"));
        folder.Git({"add", "-A"});
        QCOMPARE(GetStatus(), QString());
    }

    void toolTipTellsAllThereIs()
    {
        m_Library->Change(1);
        m_Library->folder.Git({"commit", "-q", "-a", "--author",
                               QString::fromUtf8("J\xC3\xBCrgen <j@example.org>"), "--date",
                               "2024-02-29T23:30:00+0530", "-m", "Second <b>\n\nbody"});
        QString const hash = m_Library->folder.Git({"log", "-1", "--format=%h"});
        m_Library->folder.Write(GitLibrary::GetFile(1), "{}");
        QTRY_COMPARE(GetLines(GetToolTip(1)),
                     (QStringList{"c1", GitLibrary::GetFile(1), "State: modified",
                                  "Last commit: " + hash
                                      + QString::fromUtf8(", J\xC3\xBCrgen, 2024-02-29 23:30"),
                                  "Second <b>"}));
        QVERIFY(GetToolTip(1).contains(":compound.png"));
        QTRY_COMPARE(GetLines(GetToolTip(0)).value(2), QString("State: unchanged"));

        m_Library->folder.Git({"rm", "-q", "-r", "--cached", "."});
        m_Library->folder.Git({"commit", "-q", "-m", "nothing"});
        m_Library->folder.Git({"add", m_File});
        QTRY_COMPARE(GetLines(GetToolTip(0)),
                     (QStringList{"c0", m_File, "State: added", "Not committed yet"}));
        m_Library->host->SetRevisionControlEnabled(false);
        LibraryUser(*m_Library->host).Rename(m_Library->GetItem(0), "<i>");
        QCOMPARE(GetLines(GetToolTip(0)), (QStringList{"<i>", m_File}));

        auto const object = m_Library->GetObject(0);
        m_Library->host->CloseLibrary();
        QCOMPARE(ScsUtils::GetToolTip(object, QString()), QString());
        QCOMPARE(ScsUtils::GetToolTip(qorm::QormHandle<qorm::IDbObject>(), QString()), QString());
    }
};

NODEBROWSER_TEST(TestSourceControlActions)
#include "tst_sourcecontrolactions.moc"
