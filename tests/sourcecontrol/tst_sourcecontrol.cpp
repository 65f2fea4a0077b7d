#include "gittest.h"

#include <stdexcept>

using namespace embeddedhost::StateBits;
using namespace tarno::datamodel;

/// Which states a library's listeners are told, and when.
class TestSourceControl : public GitTest
{
    Q_OBJECT

private:
    /// A library with that many compounds, and who listens.
    void Make(int count)
    {
        TearDown();
        m_Library = std::make_unique<GitLibrary>(count);
        m_Recorder = std::make_unique<StateRecorder>(m_Library->host->GetLibrary());
        m_User = std::make_unique<LibraryUser>(*m_Library->host);
    }

    void TearDown() override
    {
        m_User.reset();
        m_Recorder.reset();
        m_Library.reset();
    }

    unsigned State(int number) const
    {
        return m_Recorder->GetState(m_Library->GetItem(number));
    }

    /// How many states have been told when everything is answered that was asked for: asked for
    /// now, the read-only compound comes last. It does not count.
    int CountAll()
    {
        ItemID const last = m_Library->GetItem(-1);
        m_Recorder->states.erase(last);
        TaskPtr const task(new ScsTask("Test"));
        task->RequestObjectStates({m_Library->GetObject(-1)});
        bool const isAnswered = QTest::qWaitFor([&] { return m_Recorder->states.count(last) > 0; });
        return isAnswered ? m_Recorder->count - m_Recorder->counts[last] : -1;
    }

    std::unique_ptr<GitLibrary> m_Library;
    std::unique_ptr<StateRecorder> m_Recorder;
    std::unique_ptr<LibraryUser> m_User;

private Q_SLOTS:
    void statesArriveThroughTheEventLoop()
    {
        Make(3);
        m_Library->Change(1);
        m_Library->folder.Git({"rm", "-q", "--cached", GitLibrary::GetFile(2)});
        TaskPtr const first = AskForAll(*m_Library);
        QCOMPARE(m_Recorder->count, 0);
        TaskPtr second;
        for (int i = 0; i < 5; ++i) {
            first->RequestObjectStates(m_Library->GetObjects());
            second = AskForAll(*m_Library);
        }
        QVERIFY2(CountAll() == 3, "requests coalesce");
        QCOMPARE(State(0), kClean);
        QCOMPARE(State(1), kModified);
        QCOMPARE(State(2), kUntracked);
        first->RequestObjectStates(ObjectList());
        first->RequestObjectStates({qorm::QormHandle<qorm::IDbObject>()});
        QCOMPARE(CountAll(), 3);

        first->RequestObjectStates(m_Library->GetObjects());
        m_Library->host->SetRevisionControlEnabled(false);
        first->RequestObjectStates(m_Library->GetObjects());
        m_Library->host->SetRevisionControlEnabled(true);
        QVERIFY2(CountAll() == 3, "nothing arrives while it is switched off");
    }

    void aLaterRequestSeesLaterChanges()
    {
        Make(1);
        TaskPtr const task(new ScsTask("Test"));
        for (int i = 0; i < 20; ++i) {
            bool const isChanged = i % 2 == 0;
            m_Library->Change(0, isChanged ? R"(, "changed": true)" : "");
            task->RequestObjectStates(m_Library->GetObjects());
            // Whatever an earlier pass may have seen, this is the state that stays.
            QTest::qWait(i);
            QTRY_COMPARE(State(0), isChanged ? kModified : kClean);
        }
    }

    /// Whenever the task or the host goes.
    void whoGoesIsToldNothing()
    {
        Make(200);
        for (int round = 0; round < 60; ++round) {
            TaskPtr task = AskForAll(*m_Library);
            QTest::qWait(round);
            task.reset();
            int const count = m_Recorder->count;
            QTest::qWait(round % 3 == 0 ? 20 : 0);
            QCOMPARE(m_Recorder->count, count);
        }
        for (int round = 0; round < 10; ++round) {
            Make(20);
            TaskPtr const task = AskForAll(*m_Library);
            QTest::qWait(round);
            m_Library->host.reset();
            task->RequestObjectStates(ObjectList());
            QVERIFY(!ScsUtils::IsFileVersionControlActive());
        }
    }

    void listenerDoesAnything()
    {
        for (QString const what : {"drops the task", "deletes the host", "raises"}) {
            Make(10);
            TaskPtr task = AskForAll(*m_Library);
            m_Recorder->onState = [&] {
                if (m_Recorder->count != 3)
                    return;
                if (what == "drops the task")
                    task.reset();
                else if (what == "deletes the host")
                    m_Library->host.reset();
                else
                    throw std::runtime_error("too many");
            };
            QTRY_VERIFY(m_Recorder->count >= 3);
            if (!m_Library->host) {
                QTest::qWait(50);
                QCOMPARE(m_Recorder->count, 3);
                continue;
            }
            bool const raises = what == "raises";
            QVERIFY2(CountAll() == (raises ? 10 : 3), qPrintable(what));
            QString const said = "could not follow a change of the library: too many.";
            QCOMPARE(GetMessages(*m_Library->host).filter(said).size(), int(raises));
        }
    }

    /// Panels that rebuild show marks of waiting until they are told what is known.
    void whatIsKnownIsAnnounced()
    {
        Make(3);
        m_Library->Change(2);
        TaskPtr const task = AskForAll(*m_Library);
        QCOMPARE(CountAll(), 3);
        m_Recorder->states.clear();
        for (int i = 0; i < 10; ++i)
            m_User->Rename(m_Library->GetItem(0), ("Name " + std::to_string(i)).c_str());
        QTRY_COMPARE(m_Recorder->states.size(), std::size_t(4));
        QVERIFY2(CountAll() == 6, "once for a burst");
        QCOMPARE(State(2), kModified);
        // A rebuild looks up what it shows.
        m_Library->GetObject(2);
        QTRY_COMPARE(m_Recorder->count - m_Recorder->counts[m_Library->GetItem(-1)], 7);
    }

    /// What other programs do, and what a save does.
    void changesAreSeen()
    {
        Make(3);
        TaskPtr const task = AskForAll(*m_Library);
        QCOMPARE(CountAll(), 3);
        m_Library->Change(0);
        m_Library->folder.Write("project/new.json", Object(11, "compound", "New"));
        m_Library->folder.Write("factory/new.json", Object(12, "compound", "Also new"));
        m_Library->host->CheckFolder();
        QTRY_COMPARE(State(0), kModified);
        QTRY_COMPARE(State(10), kUntracked);
        QVERIFY(m_Library->GetItem(11).IsValid());
        QVERIFY2(CountAll() > 0 && State(11) == 0, "panels show no states of what is read-only");
        // The commit of a terminal.
        m_Library->folder.Commit("second");
        QTRY_COMPARE(State(0), kClean);

        QVERIFY(m_User->Tag(m_Library->GetItem(0), "new"));
        ItemID const made = m_User->Create("made");
        // Not on disk yet.
        QTRY_COMPARE(m_Recorder->GetState(made), kUntracked);
        QVERIFY(m_User->Save());
        QTRY_COMPARE(State(0), kModified);
        m_Library->folder.Git({"add", "-A"});
        QTRY_COMPARE(m_Recorder->GetState(made), kAdded);
    }
};

NODEBROWSER_TEST(TestSourceControl)
#include "tst_sourcecontrol.moc"
