#include "gitfolder.h"
#include "loggedtest.h"
#include "sourcecontrol/checkouts.h"
#include "sourcecontrol/gitworktree.h"
#include "sourcecontrol/statebits.h"
#include "sourcecontrol/statepass.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace embeddedhost;
using namespace embeddedhost::StateBits;

class TestGitWorkTree : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void states_data();
    void states();
    void statesBeforeTheFirstCommit();
    void passOverOneFolderSeesNoOther();
    void passLeavesTheIndexAlone();
    void stopsWhenCancelled();
    void filesInSeveralTrees();
    void linkedWorkTree();
    void lastCommitIsWhatGitFinds();
    void moveKeepsWhatIsNotStaged();
    void moveRefuses_data();
    void moveRefuses();
    void checkOutEndsWithTheNextCommit();

private:
    QTemporaryDir m_Home;
    CancelFlag m_NotCancelled;
    std::unique_ptr<GitFolder> m_AllStates;
};

namespace {

/// A work tree with a file in each state.
void MakeAllStates(GitFolder const& folder)
{
    folder.Write(".gitignore", "*.tmp\nbuild/\n");
    QStringList const tracked = {"clean", "modified",   "staged",     "stagedAgain", "deleted",
                                 "gone",  "conflicted", "deep/clean", "forced.tmp",  "touched"};
    for (QString const& file : tracked)
        folder.Write(file, "first\n");
    folder.Write(QString::fromUtf8("gr\xC3\xBC\xC3\x9F"
                                   "e"),
                 "first\n");
    folder.Git({"add", "-f", "forced.tmp"});
    folder.Commit("first");

    folder.Git({"checkout", "-q", "-b", "other"});
    folder.Write("conflicted", "theirs\n");
    folder.Commit("theirs");
    folder.Git({"checkout", "-q", "main"});
    folder.Write("conflicted", "ours\n");
    folder.Commit("ours");
    folder.Git({"merge", "-q", "other"}, true);

    for (char const* const file :
         {"modified", "staged", "stagedAgain", "added", "addedAgain", "addedGone"})
        folder.Write(file, "second\n");
    folder.Git({"add", "staged", "stagedAgain", "added", "addedAgain", "addedGone"});
    for (char const* const file : {"stagedAgain", "addedAgain"})
        folder.Write(file, "third\n");
    for (char const* const file : {"deleted", "addedGone"})
        QFile::remove(folder.GetPath(file));
    folder.Git({"rm", "-q", "--cached", "gone"});
    for (char const* const file :
         {"new", "new/deep/file", "new/deep/x.tmp", "x.tmp", "build/deep/file", "ownrepo/file"}) {
        if (QString(file) != "new")
            folder.Write(file, "new\n");
    }
    folder.Git({"init", "-q", "ownrepo"});
    folder.Write("touched", "first\n");
}

} // namespace

void TestGitWorkTree::initTestCase()
{
    GitFolder::UseNoSettings(m_Home.path());
    m_AllStates = std::make_unique<GitFolder>();
    MakeAllStates(*m_AllStates);
}

void TestGitWorkTree::states_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<unsigned>("state");

    QTest::newRow("clean") << "clean" << kClean;
    QTest::newRow("clean in a folder") << "deep/clean" << kClean;
    QTest::newRow("clean with a newer date") << "touched" << kClean;
    QTest::newRow("clean with umlauts") << QString::fromUtf8("gr\xC3\xBC\xC3\x9F"
                                                             "e")
                                        << kClean;
    QTest::newRow("tracked though ignored") << "forced.tmp" << kClean;
    QTest::newRow("modified") << "modified" << kModified;
    QTest::newRow("staged") << "staged" << kModified;
    QTest::newRow("staged, modified again") << "stagedAgain" << kModified;
    QTest::newRow("deleted") << "deleted" << kModified;
    QTest::newRow("added") << "added" << kAdded;
    QTest::newRow("added, modified again") << "addedAgain" << (kAdded | kModified);
    QTest::newRow("added, deleted again") << "addedGone" << (kAdded | kModified);
    QTest::newRow("untracked") << "new/deep/file" << kUntracked;
    QTest::newRow("taken out of git") << "gone" << kUntracked;
    QTest::newRow("in an untracked repository") << "ownrepo/file" << kUntracked;
    QTest::newRow("ignored") << "x.tmp" << kIgnored;
    QTest::newRow("in an ignored folder") << "build/deep/file" << kIgnored;
    QTest::newRow("ignored in an untracked folder") << "new/deep/x.tmp" << kIgnored;
    QTest::newRow("conflicted") << "conflicted" << kConflicted;
    QTest::newRow("not there") << "deep/nothing" << 0u;
}

void TestGitWorkTree::states()
{
    QFETCH(QString, file);
    QFETCH(unsigned, state);

    CGitWorkTree const tree(m_AllStates->GetPath("deep"));
    QCOMPARE(tree.GetAccess(), CGitWorkTree::kReadable);
    QCOMPARE(tree.GetRoot(), m_AllStates->GetPath());
    CFileStates states;
    QVERIFY(tree.ReadStates("", m_NotCancelled, states));
    std::string const path = tree.GetRelativePath(m_AllStates->GetPath(file));
    QCOMPARE(states.Find(path), state);
}

void TestGitWorkTree::statesBeforeTheFirstCommit()
{
    GitFolder const folder;
    folder.Write("added", "new\n");
    folder.Git({"add", "added"});
    folder.Write("untracked", "new\n");
    QCOMPARE(ReadFileStates({folder.GetPath("added"), folder.GetPath("untracked"),
                             folder.GetPath("no/such/file")},
                            m_NotCancelled),
             (std::vector<unsigned>{kAdded, kUntracked, kUntracked}));
}

void TestGitWorkTree::passOverOneFolderSeesNoOther()
{
    GitFolder const folder;
    folder.Write("some/deep/file", "1");
    folder.Write("something/file", "1");
    folder.Write("[s]ome/file", "1");
    folder.Commit("first");
    CGitWorkTree const tree(folder.GetPath());
    for (std::string const name : {"some/", "[s]ome/"}) {
        CFileStates states;
        QVERIFY(tree.ReadStates(name, m_NotCancelled, states));
        QCOMPARE(states.Find("some/deep/file"), name == "some/" ? kClean : 0u);
        QCOMPARE(states.Find("[s]ome/file"), name == "some/" ? 0u : kClean);
        QCOMPARE(states.Find("something/file"), 0u);
    }
}

void TestGitWorkTree::passLeavesTheIndexAlone()
{
    GitFolder const folder;
    folder.Write("file", "first\n");
    folder.Commit("first");
    QByteArray const index = folder.Read(".git/index");
    // What git itself would note in the index: the same content with a new date.
    QTest::qWait(1100);
    folder.Write("file", "first\n");
    CGitWorkTree const tree(folder.GetPath());
    for (int pass = 0; pass < 2; ++pass) {
        CFileStates states;
        QVERIFY(tree.ReadStates("", m_NotCancelled, states));
        QCOMPARE(states.Find("file"), kClean);
        QCOMPARE(folder.Read(".git/index"), index);
    }
    folder.Git({"update-index", "--refresh"});
    QVERIFY(folder.Read(".git/index") != index);
}

void TestGitWorkTree::stopsWhenCancelled()
{
    CancelFlag const cancelled(true);
    CFileStates states;
    CGitWorkTree const tree(m_AllStates->GetPath());
    QVERIFY(!tree.ReadStates("", cancelled, states));
    QCOMPARE(states.Find("clean"), 0u);
    QVERIFY(tree.FindLastCommit("clean", m_NotCancelled));
    QVERIFY(!tree.FindLastCommit("clean", cancelled));
}

void TestGitWorkTree::filesInSeveralTrees()
{
    GitFolder const outer("outer");
    outer.Write("file", "first\n");
    outer.Commit("first");
    outer.Write("inner/file", "first\n");
    outer.Git({"init", "-q", "inner"});
    outer.Git({"-C", "inner", "add", "file"});
    QTemporaryDir const outside;
    QVERIFY(QFile::link(outer.GetPath(), outside.filePath("link")));
    // Through a link the folder is the same one.
    QCOMPARE(ReadFileStates({outer.GetPath("inner/file"), outer.GetPath("file"),
                             outside.filePath("link/file"), outside.filePath("file")},
                            m_NotCancelled),
             (std::vector<unsigned>{kAdded, kClean, kClean, 0}));
}

void TestGitWorkTree::linkedWorkTree()
{
    GitFolder const folder;
    folder.Write("file", "first\n");
    folder.Commit("first");
    folder.Git({"worktree", "add", "-q", "../linked"});
    QString const linked = QFileInfo(folder.GetPath("../linked")).canonicalFilePath();
    QFile::remove(linked + "/file");
    QCOMPARE(CGitWorkTree(linked).GetRoot(), linked);
    QCOMPARE(ReadFileStates({linked + "/file", folder.GetPath("file")}, m_NotCancelled),
             (std::vector<unsigned>{kModified, kClean}));
}

void TestGitWorkTree::lastCommitIsWhatGitFinds()
{
    GitFolder const folder;
    auto const change = [&folder](QString const& file, QByteArray const& content) {
        folder.Write(file, content);
        folder.Commit(file + ' ' + content);
    };
    change("first", "1");
    change("deep/er/file", "1");
    change("both", "1");
    folder.Git({"checkout", "-q", "-b", "branch"});
    change("onBranch", "1");
    change("both", "2");
    change("undone", "1");
    change("first", "2");
    change("first", "1");
    folder.Git({"checkout", "-q", "main"});
    change("onMain", "1");
    change("both", "3");
    folder.Git({"merge", "-q", "branch"}, true);
    folder.Write("both", "4");
    folder.Commit("merge");
    change("later", "1");
    QFile::remove(folder.GetPath("later"));
    folder.Commit("remove");

    CGitWorkTree const tree(folder.GetPath());
    QStringList const files = {"first", "deep/er/file", "both", "onBranch", "undone", "onMain"};
    for (QString const& file : files) {
        auto const commit = tree.FindLastCommit(file.toStdString(), m_NotCancelled);
        QVERIFY2(commit, qPrintable(file));
        QCOMPARE(commit->shortHash, folder.Git({"log", "-1", "--format=%h", "--", file}));
    }
    QVERIFY(!tree.FindLastCommit("later", m_NotCancelled));
    QVERIFY(!tree.FindLastCommit("never", m_NotCancelled));
}

void TestGitWorkTree::moveKeepsWhatIsNotStaged()
{
    GitFolder const folder;
    folder.Write("a/file", "first\n");
    folder.Commit("first");
    folder.Write("a/file", "second\n");
    QVERIFY(QDir(folder.GetPath()).rename("a", "b"));
    QVERIFY(CGitWorkTree(folder.GetPath()).MoveEntry("a/file", "b/file"));
    QCOMPARE(folder.Git({"status", "--porcelain"}), QString("RM a/file -> b/file"));
}

void TestGitWorkTree::moveRefuses_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("isLocked");

    QTest::newRow("untracked") << "untracked"
                               << "target" << false;
    QTest::newRow("target is tracked") << "tracked"
                                       << "gone" << false;
    QTest::newRow("somebody else writes the index") << "tracked"
                                                    << "target" << true;
}

void TestGitWorkTree::moveRefuses()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, isLocked);

    GitFolder const folder;
    folder.Write("tracked", "first\n");
    folder.Write("gone", "first\n");
    folder.Commit("first");
    folder.Write("untracked", "new\n");
    QFile::remove(folder.GetPath("gone"));
    QString const status = folder.Git({"status", "--porcelain"});
    if (isLocked)
        folder.Write(".git/index.lock", "");

    CGitWorkTree tree(folder.GetPath());
    QVERIFY(!tree.MoveEntry(from.toStdString(), to.toStdString()));
    QVERIFY(!tree.GetError().isEmpty());
    QFile::remove(folder.GetPath(".git/index.lock"));
    QCOMPARE(folder.Git({"status", "--porcelain"}), status);
    QVERIFY(tree.IsTracked("tracked"));
}

void TestGitWorkTree::checkOutEndsWithTheNextCommit()
{
    GitFolder const folder;
    folder.Write("file", "1");
    folder.Commit("first");
    folder.Write("new", "1");
    CGitWorkTree const tree(folder.GetPath());
    QVERIFY(MarkCheckedOut(tree, "file"));
    QVERIFY(MarkCheckedOut(tree, "new"));
    auto const readStates = [&] {
        return ReadFileStates({folder.GetPath("file"), folder.GetPath("new")}, m_NotCancelled);
    };
    typedef std::vector<unsigned> States;
    QCOMPARE(readStates(), (States{kClean | kCheckedOut, kUntracked | kCheckedOut}));

    folder.Write("other", "1");
    folder.Write("file", "2");
    folder.Git({"add", "other"});
    folder.Git({"commit", "-q", "-m", "second"});
    QCOMPARE(readStates(), (States{kModified | kCheckedOut, kUntracked | kCheckedOut}));

    folder.Commit("third");
    QCOMPARE(readStates(), (States{kClean, kClean}));
    folder.Git({"revert", "--no-edit", "HEAD"});
    folder.Write("new", "1");
    QCOMPARE(readStates(), (States{kClean, kUntracked}));
    QVERIFY(!QFileInfo::exists(folder.GetPath("checkedout.json")));
}

NODEBROWSER_TEST_MAIN(TestGitWorkTree)

#include "tst_gitworktree.moc"
