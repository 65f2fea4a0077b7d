#include "gittest.h"
#include "sourcecontrol/checkouts.h"
#include "sourcecontrol/gitworktree.h"
#include "sourcecontrol/statepass.h"

using namespace embeddedhost;
using namespace embeddedhost::StateBits;

namespace {

typedef std::vector<unsigned> States;

QString const kUmlauts = QString::fromUtf8("gr\xC3\xBC\xC3\x9F\x65");

/// A work tree with a file in each state.
std::unique_ptr<GitFolder> MakeAllStates()
{
    auto made = std::make_unique<GitFolder>();
    GitFolder const& folder = *made;
    folder.Write(".gitignore", "*.tmp\nbuild/\n");
    QStringList const tracked = {"clean", "modified",   "staged",     "stagedAgain", "deleted",
                                 "gone",  "conflicted", "deep/clean", "touched"};
    for (QString const& file : tracked + QStringList(kUmlauts))
        folder.Write(file, "first\n");
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
    for (char const* const file : {"new/deep/file", "new/deep/x.tmp", "x.tmp", "build/deep/file"})
        folder.Write(file, "new\n");
    folder.Write("touched", "first\n");
    return made;
}

} // namespace

/// What git says of files, read without the git command.
class TestGitWorkTree : public GitTest
{
    Q_OBJECT

private:
    States Read(std::vector<QString> const& files)
    {
        return ReadFileStates(files, m_NotCancelled);
    }

    CancelFlag m_NotCancelled;

private Q_SLOTS:
    void everyStateIsSeen()
    {
        auto const folder = MakeAllStates();
        CGitWorkTree const tree(folder->GetPath("deep"));
        QCOMPARE(tree.GetAccess(), CGitWorkTree::kReadable);
        QCOMPARE(tree.GetRoot(), folder->GetPath());
        CFileStates states;
        QByteArray const index = folder->Read(".git/index");
        QVERIFY(tree.ReadStates("", m_NotCancelled, states));
        QVERIFY2(folder->Read(".git/index") == index, "dates are left to git");
        std::pair<unsigned, QStringList> const expected[] = {
            {kClean, {"clean", "deep/clean", "touched", kUmlauts}},
            {kModified, {"modified", "staged", "stagedAgain", "deleted"}},
            {kAdded, {"added"}},
            {kAdded | kModified, {"addedAgain", "addedGone"}},
            {kUntracked, {"new/deep/file", "gone"}},
            {kIgnored, {"x.tmp", "build/deep/file", "new/deep/x.tmp"}},
            {kConflicted, {"conflicted"}},
            {0u, {"deep/nothing", "d/nothing"}},
        };
        for (auto const& [state, files] : expected) {
            for (QString const& file : files) {
                unsigned const found = states.Find(tree.GetRelativePath(folder->GetPath(file)));
                QVERIFY2(found == state, qPrintable(file + ": " + QString::number(found)));
            }
        }

        CFileStates deep;
        QVERIFY(tree.ReadStates("deep/", m_NotCancelled, deep));
        QVERIFY(deep.Find("deep/clean") == kClean && deep.Find("clean") == 0u);

        CancelFlag const cancelled(true);
        CFileStates none;
        QVERIFY(!tree.ReadStates("", cancelled, none));
        QVERIFY(!tree.FindLastCommit("clean", cancelled));
    }

    void checkOutEndsWithTheNextCommit()
    {
        GitFolder const folder;
        folder.Write("file", "1");
        folder.Commit("first");
        folder.Write("new", "1");
        CGitWorkTree const tree(folder.GetPath());
        QVERIFY(MarkCheckedOut(tree, "file") && MarkCheckedOut(tree, "new"));
        std::vector<QString> const files = {folder.GetPath("file"), folder.GetPath("new")};
        QCOMPARE(Read(files), (States{kClean | kCheckedOut, kUntracked | kCheckedOut}));

        folder.Write("file", "2");
        folder.Git({"commit", "-q", "--allow-empty", "-m", "of no file"});
        QCOMPARE(Read(files), (States{kModified | kCheckedOut, kUntracked | kCheckedOut}));
        folder.Commit("second");
        QCOMPARE(Read(files), (States{kClean, kClean}));
    }

    void aWorkTreeIsMadeOfAFolder()
    {
        TestFolder const folder;
        folder.Write(".gitignore", "b");
        folder.Write("a/b", "1");
        QString fault;
        QVERIFY2(CEmbeddedHost::MakeWorkTree(folder.GetPath(), &fault), qPrintable(fault));
        std::optional<GitCommit> const commit =
            CGitWorkTree(folder.GetPath()).FindLastCommit("a/b", m_NotCancelled);
        QVERIFY(commit && commit->author == "Node Editor"
                && commit->subject == "Start the library");
        QVERIFY(!CEmbeddedHost::MakeWorkTree(folder.GetPath("nowhere"), &fault)
                && !fault.isEmpty());
    }
};

NODEBROWSER_TEST(TestGitWorkTree)
#include "tst_gitworktree.moc"
