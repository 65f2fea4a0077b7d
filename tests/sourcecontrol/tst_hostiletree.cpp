#include "gitlibrary.h"
#include "loggedtest.h"
#include "sourcecontrol/statebits.h"
#include "sourcecontroltask.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace embeddedhost::StateBits;

namespace {

/// In milliseconds. Much more than opening, closing or ending takes, even on a machine that is
/// busy; a thread that waits for a pipe waits for ever.
constexpr int kInTime = 2000;

char const* const kSilence = "Git does not answer for ";

enum eHarm
{
    kPipe,
    kText,
    kCut,
    kOtherOwner,
    kNoPermission
};

void MakePipe(QString const& path)
{
    QDir(path).removeRecursively();
    QFile::remove(path);
    if (mkfifo(qPrintable(path), 0600) != 0)
        qFatal("no pipe can be made at %s", qPrintable(path));
}

void DoHarm(GitFolder const& folder, QString const& file, eHarm harm, QByteArray const& text)
{
    QString const path = folder.GetPath(file);
    switch (harm) {
    case kPipe:
        return MakePipe(path);
    case kText:
        return folder.Write(file, text);
    case kCut:
        return folder.Write(file, folder.Read(file).left(20));
    case kOtherOwner:
        QCOMPARE(chown(qPrintable(path), 12345, 12345), 0);
        QCOMPARE(chown(qPrintable(folder.GetPath()), 12345, 12345), 0);
        return;
    case kNoPermission:
        QVERIFY(QFile::setPermissions(path, QFile::Permissions()));
        return;
    }
}

void Print(QString const& text)
{
    puts(qPrintable(text));
    fflush(stdout);
}

/// What a host program does with the library: open it, show states, close it. Prints how long that
/// took, what was said, and the state.
void UseLibrary(QString const& folder)
{
    QElapsedTimer time;
    time.start();
    CEmbeddedHost host;
    bool isDone = false;
    QObject::connect(&host.GetMessages(), &CMessageChannel::MessagePosted,
                     [&isDone](eSeverity, QString const& text) {
                         Print("said " + text);
                         isDone = isDone || text.startsWith(kSilence);
                     });
    host.OpenLibrary(folder);
    Print(QStringLiteral("opened %1").arg(time.elapsed()));
    StateRecorder recorder(host.GetLibrary());
    recorder.onState = [&isDone] {
        isDone = true;
    };
    TaskPtr const task = MakeTask();
    auto* const helper = dynamic_cast<qorm::IRevisionControlUIHelper*>(
        wekGetSystem()->GetService("RevisionControlUIHelper"));
    task->RequestObjectStates(
        {helper->FindObject(qorm::DbObjectId(GitLibrary::GetUid(0).c_str()))});
    // Where there is no work tree there is neither a state nor silence.
    static_cast<void>(QTest::qWaitFor([&isDone] { return isDone; }));
    Print(QStringLiteral("state %1").arg(recorder.GetState(host.FindItem(GitLibrary::GetUid(0)))));
    time.restart();
    host.CloseLibrary();
    Print(QStringLiteral("closed %1").arg(time.elapsed()));
}

int CountThreads()
{
    return int(QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

int CountMessages(CEmbeddedHost& host, QString const& text)
{
    auto const& log = host.GetMessages().GetLog();
    return int(std::count_if(log.begin(), log.end(),
                             [&text](auto const& message) { return message.text.contains(text); }));
}

} // namespace

/// Work trees that were made, or broken, to do harm, and git that does not answer.
class TestHostileTree : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void goesOn_data();
    void goesOn();
    void answersAfterAll();
    void newWorkTreeIsGivenUp();

private:
    QTemporaryDir m_Home;
};

void TestHostileTree::initTestCase()
{
    GitFolder::UseNoSettings(m_Home.path());
}

void TestHostileTree::goesOn_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("harm");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("said");
    QTest::addColumn<unsigned>("state");

    // What git opens at once is looked at before.
    for (char const* const file :
         {".git/HEAD", ".git/config", ".git/index", ".git/packed-refs", ".git/commondir",
          ".git/info/exclude", ".git/objects/info/alternates", ".git/checkedout.json",
          ".gitignore"})
        QTest::addRow("%s is a pipe", file)
            << file << int(kPipe) << QByteArray() << QString("%1 is a pipe").arg(file) << kUnknown;
    QTest::newRow(".git is a pipe")
        << ".git" << int(kPipe) << QByteArray() << ".git is a pipe" << 0u;
    // These make git hang.
    for (char const* const file : {".git/refs/heads/main", "../home/.gitconfig"})
        QTest::addRow("%s is a pipe", file) << file << int(kPipe) << QByteArray() << kSilence << 0u;

    QTest::newRow("work tree is nowhere")
        << ".git/config" << int(kText) << QByteArray("[core]\nworktree = /no/such/folder\n")
        << "/no/such/folder" << kUnknown;
    QTest::newRow("config makes no sense") << ".git/config" << int(kText) << QByteArray("[broken")
                                           << "failed to parse config file" << kUnknown;
    QTest::newRow("branch makes no sense")
        << ".git/refs/heads/main" << int(kText) << QByteArray("x") << "" << kUnknown;
    QTest::newRow("index is cut") << ".git/index" << int(kCut) << QByteArray() << "" << kUnknown;
    QTest::newRow("belongs to somebody else")
        << ".git" << int(kOtherOwner) << QByteArray() << "safe.directory" << kUnknown;
    QTest::newRow("may not be read")
        << ".git/index" << int(kNoPermission) << QByteArray() << "" << kUnknown;
}

void TestHostileTree::goesOn()
{
    QFETCH(QString, file);
    QFETCH(int, harm);
    QFETCH(QByteArray, text);
    QFETCH(QString, said);
    QFETCH(unsigned, state);
    bool const isRoot = geteuid() == 0;
    if (harm == kOtherOwner && !isRoot)
        QSKIP("nobody but root can give a folder away");
    if (harm == kNoPermission && isRoot)
        QSKIP("root may read everything");

    GitLibrary library(1);
    library.host.reset();
    QString const home = library.folder.GetPath("../home");
    QVERIFY(QDir().mkpath(home));
    DoHarm(library.folder, file, eHarm(harm), text);

    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home);
    // A search for leaks at the end takes seconds of its own.
    environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), {"--use", library.folder.GetPath()});
    QByteArray output;
    while (!output.contains("closed ") && child.waitForReadyRead(20000))
        output += child.readAllStandardOutput();
    QElapsedTimer ending;
    ending.start();
    bool const hasEnded = child.waitForFinished(20000);
    output += child.readAllStandardOutput();
    QVERIFY2(hasEnded && child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0,
             output);
    qInfo("%s ended %d", output.replace('\n', ';').constData(), int(ending.elapsed()));

    auto const find = [&output](QByteArray const& word) {
        return output.mid(output.indexOf(word) + word.size()).split(';').front();
    };
    QVERIFY(find("opened ").toInt() < kInTime);
    QVERIFY(find("closed ").toInt() < kInTime);
    QVERIFY(ending.elapsed() < kInTime);
    QCOMPARE(find("state ").toUInt(), state);
    QCOMPARE(output.count("said "), said.isEmpty() ? 0 : 1);
    QVERIFY2(output.contains(said.toUtf8()), output);
}

void TestHostileTree::answersAfterAll()
{
    GitLibrary library(3);
    library.host.reset();
    QString const branch = ".git/refs/heads/main";
    QByteArray const commit = library.folder.Read(branch);
    MakePipe(library.folder.GetPath(branch));
    library.host = std::make_unique<CEmbeddedHost>();
    int const threadCount = CountThreads();

    // However often it is asked, no more threads hang than there are kinds of questions.
    for (int i = 0; i < 10; ++i) {
        QVERIFY(library.host->OpenLibrary(library.folder.GetPath()));
        TaskPtr const task = MakeTask();
        task->RequestObjectStates(library.GetObjects());
        ScsUtils::GetToolTip(library.GetObject(0), QString());
        QTest::qWait(20);
    }
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE_WITH_TIMEOUT(CountMessages(*library.host, kSilence), 1, 10000);
    QVERIFY(CountThreads() <= threadCount + 3);
    QCOMPARE(recorder.count, 0);

    auto& helper = dynamic_cast<qorm::IRevisionControlUIHelper&>(
        *wekGetSystem()->GetService("RevisionControlUIHelper"));
    bool isCheckedOut = true;
    helper.CheckOut(library.GetObject(0), isCheckedOut, true);
    QVERIFY(!isCheckedOut);
    QCOMPARE(CountMessages(*library.host, "it cannot be checked out: git does not answer"), 1);

    // A file in place of the pipe, then what those get who wait for the pipe.
    int const pipe = open(qPrintable(library.folder.GetPath(branch)), O_WRONLY | O_NONBLOCK);
    QVERIFY(pipe >= 0);
    QFile::remove(library.folder.GetPath(branch));
    library.folder.Write(branch, commit);
    close(pipe);
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder.GetState(library.GetItem(2)), kClean);
    QTRY_VERIFY(ScsUtils::GetToolTip(library.GetObject(0), QString()).contains("Last commit"));
    QTRY_VERIFY((helper.CheckOut(library.GetObject(0), isCheckedOut, true), isCheckedOut));
    QCOMPARE(CountMessages(*library.host, kSilence), 1);
    QTRY_VERIFY(CountThreads() <= threadCount);
}

void TestHostileTree::newWorkTreeIsGivenUp()
{
    QString const settings = m_Home.filePath(".gitconfig");
    MakePipe(settings);
    QTemporaryDir const parent;
    QDir(parent.path()).mkdir("new");
    QString const folder = parent.filePath("new");
    int const threadCount = CountThreads();
    QString fault;
    QVERIFY(!CEmbeddedHost::MakeWorkTree(folder, &fault));
    QVERIFY2(fault.startsWith("git does not answer"), qPrintable(fault));

    // When git comes back it makes nothing of a folder that has moved on.
    QVERIFY(QDir(parent.path()).rename("new", "moved"));
    int const pipe = open(qPrintable(settings), O_WRONLY | O_NONBLOCK);
    QVERIFY(pipe >= 0);
    QFile::remove(settings);
    close(pipe);
    QTRY_COMPARE(CountThreads(), threadCount);
    QVERIFY(!QFile::exists(folder));
    QVERIFY(CEmbeddedHost::MakeWorkTree(parent.filePath("moved"), &fault));
}

int main(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--use") == 0) {
        QApplication const application(argc, argv);
        UseLibrary(QFile::decodeName(argv[2]));
        return 0;
    }
    TestHostileTree test;
    return RunTest(test, argc, argv);
}

#include "tst_hostiletree.moc"
