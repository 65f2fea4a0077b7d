#include "gitlibrary.h"
#include "loggedtest.h"
#include "model/accessorcontext.h"
#include "model/library.h"
#include "sourcecontrol/statebits.h"
#include "sourcecontroltask.h"
#include "testbrowser.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <stdexcept>

using namespace embeddedhost::StateBits;
using namespace tarno::datamodel;

namespace {

embeddedhost::CLibraryNotifier& GetNotifier(CEmbeddedHost const& host)
{
    return host.GetLibrary().GetContext()->GetNotifier();
}

/// Long enough for an answer that should not come.
void WaitForNothing()
{
    QTest::qWait(400);
}

} // namespace

class TestSourceControl : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void statesArriveThroughTheEventLoop();
    void nothingArrivesWhileSwitchedOff();
    void requestsCoalesce();
    void aLaterRequestSeesLaterChanges();
    void droppedTaskDeliversNothing();
    void droppedTaskLeavesTheOthers();
    void hostGoesWhileBusy();
    void listenerDoesAnything_data();
    void listenerDoesAnything();
    void structureChangesAnnounceOnce();
    void lookUpAnnounces();
    void newItemGetsAState();
    void changesFromOutsideAreSeen();
    void saveIsSeen();
    void panelKeepsMarksWhenItRebuilds();
    void activeInsideAWorkTreeOnly();
    void thousandsArriveWithoutHoldingTheThread();

private:
    QTemporaryDir m_Home;
};

void TestSourceControl::initTestCase()
{
    GitFolder::UseNoSettings(m_Home.path());
}

void TestSourceControl::statesArriveThroughTheEventLoop()
{
    GitLibrary const library(3);
    library.Change(1);
    library.folder.Git({"rm", "-q", "--cached", GitLibrary::GetFile(2)});
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    QCOMPARE(recorder.count, 0);
    QTRY_COMPARE(recorder.count, 3);
    QCOMPARE(recorder.GetState(library.GetItem(0)), kClean);
    QCOMPARE(recorder.GetState(library.GetItem(1)), kModified);
    QCOMPARE(recorder.GetState(library.GetItem(2)), kUntracked);
    task->RequestObjectStates(ObjectList());
    task->RequestObjectStates({qorm::QormHandle<qorm::IDbObject>()});
    WaitForNothing();
    QCOMPARE(recorder.count, 3);
}

void TestSourceControl::nothingArrivesWhileSwitchedOff()
{
    GitLibrary const library(2);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    library.host->SetRevisionControlEnabled(false);
    task->RequestObjectStates(library.GetObjects());
    WaitForNothing();
    QCOMPARE(recorder.count, 0);
    library.host->SetRevisionControlEnabled(true);
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder.count, 2);
}

void TestSourceControl::requestsCoalesce()
{
    GitLibrary const library(3);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const first = MakeTask();
    TaskPtr const second = MakeTask();
    for (int i = 0; i < 5; ++i) {
        first->RequestObjectStates(library.GetObjects());
        second->RequestObjectStates(library.GetObjects());
    }
    QTRY_COMPARE(recorder.count, 3);
    WaitForNothing();
    QCOMPARE(recorder.count, 3);
}

void TestSourceControl::aLaterRequestSeesLaterChanges()
{
    GitLibrary const library(1);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    for (int i = 0; i < 20; ++i) {
        bool const isChanged = i % 2 == 0;
        if (isChanged)
            library.Change(0);
        else
            library.folder.Git({"checkout", "-q", "."});
        task->RequestObjectStates(library.GetObjects());
        // Whatever an earlier pass may have seen, this is the state that stays.
        QTest::qWait(i);
        QTRY_COMPARE(recorder.GetState(library.GetItem(0)), isChanged ? kModified : kClean);
    }
}

void TestSourceControl::droppedTaskDeliversNothing()
{
    GitLibrary const library(200);
    StateRecorder const recorder(library.host->GetLibrary());
    ObjectList const objects = library.GetObjects();
    for (int round = 0; round < 60; ++round) {
        TaskPtr task = MakeTask();
        task->RequestObjectStates(objects);
        QElapsedTimer time;
        time.start();
        while (time.elapsed() < round)
            QCoreApplication::processEvents();
        task.reset();
        int const count = recorder.count;
        QTest::qWait(round % 3 == 0 ? 20 : 0);
        QCOMPARE(recorder.count, count);
    }
    int const count = recorder.count;
    WaitForNothing();
    QCOMPARE(recorder.count, count);
}

void TestSourceControl::droppedTaskLeavesTheOthers()
{
    GitLibrary const library(3);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr dropped = MakeTask();
    TaskPtr const kept = MakeTask();
    dropped->RequestObjectStates(library.GetObjects());
    kept->RequestObjectStates({library.GetObject(1)});
    QCoreApplication::processEvents();
    dropped.reset();
    QTRY_COMPARE(recorder.count, 1);
    WaitForNothing();
    QCOMPARE(recorder.count, 1);
    QCOMPARE(recorder.GetState(library.GetItem(1)), kClean);
}

void TestSourceControl::hostGoesWhileBusy()
{
    for (int round = 0; round < 10; ++round) {
        GitLibrary library(20);
        TaskPtr const task = MakeTask();
        task->RequestObjectStates(library.GetObjects());
        QTest::qWait(round);
        library.host.reset();
        task->RequestObjectStates(ObjectList());
        QVERIFY(!ScsUtils::IsFileVersionControlActive());
    }
}

void TestSourceControl::listenerDoesAnything_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("count");
    QTest::newRow("drops the task") << "drop" << 3;
    QTest::newRow("deletes the host") << "delete" << 3;
    QTest::newRow("raises") << "raise" << 10;
}

void TestSourceControl::listenerDoesAnything()
{
    QFETCH(QString, what);
    QFETCH(int, count);
    GitLibrary library(10);
    auto recorder = std::make_unique<StateRecorder>(library.host->GetLibrary());
    TaskPtr task = MakeTask();
    recorder->onState = [&] {
        if (recorder->count != 3)
            return;
        if (what == "drop")
            task.reset();
        else if (what == "delete")
            library.host.reset();
        else
            throw std::runtime_error("too many");
    };
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder->count, count);
    WaitForNothing();
    QCOMPARE(recorder->count, count);
    if (library.host && count == 10)
        QCOMPARE(
            library.host->GetMessages().GetLog().back().text,
            QString("A part of the program could not follow a change of the library: too many."));
}

void TestSourceControl::structureChangesAnnounceOnce()
{
    GitLibrary const library(3);
    library.Change(2);
    StateRecorder recorder(library.host->GetLibrary());
    TaskPtr task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder.count, 3);
    WaitForNothing();
    recorder.count = 0;
    recorder.states.clear();

    for (int i = 0; i < 10; ++i) {
        GetNotifier(*library.host).NameChanged(library.GetItem(0));
        GetNotifier(*library.host).ItemRemoved(library.GetItem(1));
    }
    QTRY_COMPARE(recorder.count, 3);
    WaitForNothing();
    QCOMPARE(recorder.count, 3);
    QCOMPARE(recorder.GetState(library.GetItem(2)), kModified);

    task.reset();
    GetNotifier(*library.host).NameChanged(library.GetItem(0));
    WaitForNothing();
    QCOMPARE(recorder.count, 3);
}

void TestSourceControl::lookUpAnnounces()
{
    GitLibrary const library(2);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    library.GetObjects();
    task->RequestObjectStates({library.GetObject(0)});
    QTRY_COMPARE(recorder.count, 1);
    // Only what is known: nobody has asked for the other one.
    library.GetObjects();
    library.GetObjects();
    QTRY_COMPARE(recorder.count, 2);
    WaitForNothing();
    QCOMPARE(recorder.count, 2);
}

void TestSourceControl::newItemGetsAState()
{
    GitLibrary const library(2);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates({library.GetObject(0)});
    QTRY_COMPARE(recorder.count, 1);
    GetNotifier(*library.host).ItemAdded(library.GetItem(1));
    GetNotifier(*library.host).ItemAdded(library.GetItem(-1));
    QTRY_COMPARE(recorder.GetState(library.GetItem(1)), kClean);
    WaitForNothing();
    // Panels show no states of what is read-only.
    QCOMPARE(recorder.GetState(library.GetItem(-1)), 0u);
}

void TestSourceControl::changesFromOutsideAreSeen()
{
    GitLibrary const library(2);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder.GetState(library.GetItem(0)), kClean);
    library.Change(0);
    library.host->CheckFolder();
    QTRY_COMPARE(recorder.GetState(library.GetItem(0)), kModified);
    // The commit of a terminal.
    library.folder.Commit("second");
    QTRY_COMPARE(recorder.GetState(library.GetItem(0)), kClean);
}

void TestSourceControl::saveIsSeen()
{
    GitLibrary const library(2);
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder.GetState(library.GetItem(0)), kClean);

    ItemLibraryModifierAccessor modifier;
    modifier.SetFrom(library.host->GetLibrary());
    QVERIFY(modifier.SetItemTags(library.GetItem(0), "ApplicationTags", "new", nullptr));
    CompoundModifierAccessor compound;
    ItemID const made = compound.CreateAndSetFromNewCompound(library.host->GetLibrary(), "made",
                                                             false, "", "", nullptr);
    // Not on disk yet.
    QTRY_COMPARE(recorder.GetState(made), kUntracked);
    bool isSaved = false;
    modifier.CommitToDisk(isSaved, nullptr, false, qorm::UID_Null());
    QVERIFY(isSaved);
    QTRY_COMPARE(recorder.GetState(library.GetItem(0)), kModified);
    library.folder.Git({"add", "-A"});
    QTRY_COMPARE(recorder.GetState(made), kAdded);
}

void TestSourceControl::panelKeepsMarksWhenItRebuilds()
{
    GitLibrary const library(5);
    library.Change(3);
    TestBrowser panel(CNodeBrowser::eConfigNodes);
    panel.SetItemLibrary(library.host->GetLibrary());
    QVERIFY(panel.m_SourceControlEnabled);
    panel.show();
    auto const hasStates = [&panel](QSize const& size) {
        return std::all_of(panel.m_Items.begin(), panel.m_Items.end(), [&](auto const& item) {
            return !item.m_HasScState
                   || (item.m_ScState != 0 && unsigned(item.m_ScState) != kWaiting
                       && item.m_DisplayIcon.size() == size);
        });
    };
    // The icons of all rows.
    auto const grabIcons = [&panel] {
        return panel.grab(QRect(0, panel.m_HeaderHeight + 1, 34, 6 * 24)).toImage();
    };
    QSize const marked(27, 20);
    QTRY_VERIFY(panel.m_Items.size() == 6 && hasStates(marked));
    QImage const picture = grabIcons();

    GetNotifier(*library.host).NameChanged(library.GetItem(0));
    QTRY_VERIFY(!panel.m_ItemListDirty);
    QTRY_VERIFY(hasStates(marked));
    QCOMPARE(grabIcons(), picture);

    // A panel that is hidden meanwhile rebuilds much later.
    panel.hide();
    GetNotifier(*library.host).NameChanged(library.GetItem(0));
    WaitForNothing();
    panel.show();
    QTRY_VERIFY(!panel.m_ItemListDirty);
    QTRY_VERIFY(hasStates(marked));
    QCOMPARE(grabIcons(), picture);

    library.host->SetRevisionControlEnabled(false);
    QVERIFY(!panel.m_SourceControlEnabled);
    WaitForNothing();
    QVERIFY(grabIcons() != picture);
    library.host->SetRevisionControlEnabled(true);
    QTRY_VERIFY(hasStates(marked));
    QCOMPARE(grabIcons(), picture);
}

void TestSourceControl::activeInsideAWorkTreeOnly()
{
    GitLibrary const library(1);
    QVERIFY(ScsUtils::IsFileVersionControlActive());
    QVERIFY(QDir(library.folder.GetPath()).rename(".git", ".gone"));
    QVERIFY(library.host->OpenLibrary(library.folder.GetPath()));
    QVERIFY(!ScsUtils::IsFileVersionControlActive());
    auto* const manager = dynamic_cast<IRevisionControlPropertiesMgr*>(
        wekGetSystem()->GetService("RevisionControlPropertiesMgr"));
    QVERIFY(!manager->HasRevisionControlEnabled());

    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    WaitForNothing();
    QCOMPARE(recorder.count, 0);

    // The next request finds out that there is a work tree by now.
    QVERIFY(QDir(library.folder.GetPath()).rename(".gone", ".git"));
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder.count, 1);
    QVERIFY(manager->HasRevisionControlEnabled());
    library.host->CloseLibrary();
    QVERIFY(!ScsUtils::IsFileVersionControlActive());
}

void TestSourceControl::thousandsArriveWithoutHoldingTheThread()
{
    int const count = 3000;
    GitLibrary const library(count);
    StateRecorder recorder(library.host->GetLibrary());
    // A slow listener: all of it would take 300 ms.
    recorder.onState = [] {
        QElapsedTimer time;
        time.start();
        while (time.nsecsElapsed() < 100000) {
        }
    };
    int arrivedInTurn = 0;
    int mostInATurn = 0;
    QTimer turns;
    connect(&turns, &QTimer::timeout, this, [&] {
        mostInATurn = std::max(mostInATurn, recorder.count - arrivedInTurn);
        arrivedInTurn = recorder.count;
    });
    turns.start(0);
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE_WITH_TIMEOUT(recorder.count, count, 30000);
    // 8 ms of them come at once.
    QVERIFY2(mostInATurn <= 100, qPrintable(QString::number(mostInATurn)));
}

NODEBROWSER_TEST_MAIN(TestSourceControl)

#include "tst_sourcecontrol.moc"
