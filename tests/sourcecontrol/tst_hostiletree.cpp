#include "gittest.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace embeddedhost::StateBits;

namespace {

/// In milliseconds. Much more than opening, closing or ending takes, even on a machine that is
/// busy; a thread that waits for a pipe waits for ever.
constexpr int kInTime = 2000;

char const* const kSilence = "Git does not answer for ";

void MakePipe(QString const& path)
{
    QDir(path).removeRecursively();
    QFile::remove(path);
    if (mkfifo(qPrintable(path), 0600) != 0)
        qFatal("no pipe can be made at %s", qPrintable(path));
}

/// Lets those go on who wait for the pipe: they read nothing, and whoever comes later the content.
void ReplacePipe(QString const& path, QByteArray const& content)
{
    int const pipe = open(qPrintable(path), O_WRONLY | O_NONBLOCK);
    QVERIFY(pipe >= 0);
    QFile::remove(path);
    QVERIFY(WriteFile(path, content));
    close(pipe);
}

void Print(QString const& text)
{
    puts(qPrintable(text));
    fflush(stdout);
}

/// What a host program does with the library: open it, show states, close it. Prints what took
/// too long, what was said, and the state.
int UseLibrary(QStringList const& arguments)
{
    QElapsedTimer time;
    auto const run = [&time](char const* what, auto const& call) {
        time.restart();
        call();
        if (time.elapsed() >= kInTime)
            Print(QStringLiteral("%1 takes %2 ms").arg(what).arg(time.elapsed()));
    };
    CEmbeddedHost host;
    bool isDone = false;
    QObject::connect(&host.GetMessages(), &embeddedhost::CMessageChannel::MessagePosted,
                     [&isDone](embeddedhost::eSeverity, QString const& text) {
                         Print("said " + text);
                         isDone = isDone || text.startsWith(kSilence);
                     });
    run("opening", [&] { host.OpenLibrary(arguments[0]); });
    StateRecorder recorder(host.GetLibrary());
    recorder.onState = [&isDone] {
        isDone = true;
    };
    TaskPtr const task(new ScsTask("Test"));
    task->RequestObjectStates({FindObject(GitLibrary::GetUid(0))});
    // Where there is no work tree there is neither a state nor silence.
    static_cast<void>(QTest::qWaitFor([&isDone] { return isDone; }));
    Print(QStringLiteral("state %1").arg(recorder.GetState(host.FindItem(GitLibrary::GetUid(0)))));
    run("closing", [&] { host.CloseLibrary(); });
    Print(QStringLiteral("closed"));
    return 0;
}

bool const gIsChildAdded = AddChild("use", UseLibrary);

int CountThreads()
{
    return int(QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
}

int CountMessages(CEmbeddedHost& host, QString const& text)
{
    return int(GetMessages(host).filter(text).size());
}

} // namespace

/// Work trees that were made, or broken, to do harm, and git that does not answer.
class TestHostileTree : public GitTest
{
    Q_OBJECT

private:
    /// The library of the test function, without a host; Use runs one in a process of its own.
    std::unique_ptr<GitLibrary> m_Library;

    void SetUp() override
    {
        GitTest::SetUp();
        m_Library = std::make_unique<GitLibrary>(3);
        m_Library->host.reset();
        QVERIFY(QDir().mkpath(m_Library->folder.GetPath("../home")));
    }

    void TearDown() override
    {
        m_Library.reset();
    }

    /// All goes on in time, and this is said and shown.
    void Use(QString const& said, unsigned state)
    {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", m_Library->folder.GetPath("../home"));
        // A search for leaks at the end takes seconds of its own.
        environment.insert("ASAN_OPTIONS", environment.value("ASAN_OPTIONS") + ":detect_leaks=0");
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.start(QCoreApplication::applicationFilePath(), {"use", m_Library->folder.GetPath()});
        QByteArray output;
        while (!output.contains("closed\n") && child.waitForReadyRead(20000))
            output += child.readAllStandardOutput();
        QVERIFY2(child.waitForFinished(kInTime) && child.exitStatus() == QProcess::NormalExit
                     && child.exitCode() == 0,
                 output);
        QString const expected = QStringLiteral("state %1\nclosed\n").arg(state);
        QVERIFY2(output.endsWith(expected.toUtf8()) && output.contains(said.toUtf8()), output);
        QCOMPARE(int(output.count('\n')), said.isEmpty() ? 2 : 3);
    }

private Q_SLOTS:
    void harmsNobody_data()
    {
        AddColumns<QString, QByteArray, QString, unsigned>("file", "text", "said", "state");
        QByteArray const pipe;
        // What git opens at once is looked at before.
        for (char const* const file : {".git/config", ".git/info/exclude", ".git/checkedout.json"})
            AddRow(file, file, pipe, QString("%1 is a pipe").arg(file), kUnknown);
        AddRow(".git", ".git", pipe, ".git is a pipe", 0u);
        // These make git hang.
        for (char const* const file : {".git/refs/heads/main", "../home/.gitconfig"})
            AddRow(file, file, pipe, kSilence, 0u);
        AddRow("tree elsewhere", ".git/config", QByteArray("[core]\nworktree = /no/such/folder\n"),
               "/no/such/folder", kUnknown);
        AddRow("broken index", ".git/index", QByteArray("DIRC cut off"), "", kUnknown);
    }

    void harmsNobody()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, text);
        QFETCH(QString, said);
        QFETCH(unsigned, state);
        if (text.isNull())
            MakePipe(m_Library->folder.GetPath(file));
        else
            m_Library->folder.Write(file, text);
        Use(said, state);
    }

    void answersAfterAll()
    {
        QString const branch = ".git/refs/heads/main";
        QByteArray const commit = m_Library->folder.Read(branch);
        MakePipe(m_Library->folder.GetPath(branch));
        m_Library->host = std::make_unique<CEmbeddedHost>();
        CEmbeddedHost& host = *m_Library->host;
        int const threadCount = CountThreads();

        // However often it is asked, no more threads hang than there are kinds of questions.
        for (int i = 0; i < 10; ++i) {
            QVERIFY(host.OpenLibrary(m_Library->folder.GetPath()));
            TaskPtr const task = AskForAll(*m_Library);
            ScsUtils::GetToolTip(m_Library->GetObject(0), QString());
            QTest::qWait(20);
        }
        StateRecorder const recorder(host.GetLibrary());
        TaskPtr const task = AskForAll(*m_Library);
        QTRY_COMPARE_WITH_TIMEOUT(CountMessages(host, kSilence), 1, 10000);
        QVERIFY(CountThreads() <= threadCount + 3);
        QCOMPARE(recorder.count, 0);
        QVERIFY(!CheckOut(m_Library->GetObject(0)));
        QCOMPARE(CountMessages(host, "it cannot be checked out: git does not answer"), 1);

        ReplacePipe(m_Library->folder.GetPath(branch), commit);
        task->RequestObjectStates(m_Library->GetObjects());
        QTRY_COMPARE(recorder.GetState(m_Library->GetItem(2)), kClean);
        QTRY_VERIFY(CheckOut(m_Library->GetObject(0)));
        QCOMPARE(CountMessages(host, kSilence), 1);
        QTRY_VERIFY(CountThreads() <= threadCount);
    }
};

NODEBROWSER_TEST(TestHostileTree)
#include "tst_hostiletree.moc"
