#include "paneltest.h"
#include "testbrowser.h"

#include <QAction>
#include <QApplication>
#include <QProcess>
#include <QTest>

class TestDatasourceChange : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void movesToADataSource_data();
    void movesToADataSource();
    void raisesOnMissingObjects_data();
    void raisesOnMissingObjects();
    void reportsAShortPayload_data();
    void reportsAShortPayload();

protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Host->AddRevisionControl();
        m_Browser.reset(new TestBrowser);
        m_Host->TakeCalls();
    }

    void TearDown() override
    {
        m_Browser.reset();
        PanelTest::TearDown();
    }

    std::unique_ptr<TestBrowser> m_Browser;
};

namespace {

/// Chooses a menu entry with these ids for data.
void Choose(CNodeBrowser& browser, QStringList const& ids)
{
    QAction action(nullptr);
    action.setData(ids);
    QObject::connect(&action, SIGNAL(triggered()), &browser, SLOT(OnDatasourceChange()));
    Q_EMIT action.triggered();
}

char const kCompoundUid[] = "C0000000-0000-4000-8000-000000000001";
char const kResourceUid[] = "E0000000-0000-4000-8000-000000000001";

} // namespace

void TestDatasourceChange::movesToADataSource_data()
{
    QTest::addColumn<bool>("hasService");
    QTest::addColumn<bool>("hasTarget");
    QTest::addColumn<QStringList>("calls");

    QString const call = QString("MoveToDataSource %1 %2 true").arg(kCompoundUid);
    QTest::newRow("move") << true << true << QStringList(call.arg("'project'"));
    // Refusing it is the host's business.
    QTest::newRow("no target") << true << false << QStringList(call.arg("null"));
    QTest::newRow("no service") << false << true << QStringList();
}

void TestDatasourceChange::movesToADataSource()
{
    QFETCH(bool, hasService);
    QFETCH(bool, hasTarget);
    TestDatabase& database = m_Host->m_Database;
    database.AddObject(kCompoundUid, database.AddSource("factory"));
    database.AddResource(kResourceUid, "Project",
                         hasTarget ? database.AddSource("project") : nullptr);
    if (!hasService)
        m_Host->SetService("RevisionControlUIHelper", nullptr);
    Choose(*m_Browser, {kCompoundUid, kResourceUid});
    QTEST(m_Host->TakeCalls(), "calls");
}

void TestDatasourceChange::raisesOnMissingObjects_data()
{
    QTest::addColumn<bool>("hasCompound");
    QTest::addColumn<bool>("hasManager");
    QTest::addColumn<bool>("hasResource");

    QTest::newRow("no compound") << false << true << true;
    QTest::newRow("no manager") << true << false << true;
    QTest::newRow("no resource") << true << true << false;
}

void TestDatasourceChange::raisesOnMissingObjects()
{
    QFETCH(bool, hasCompound);
    QFETCH(bool, hasManager);
    QFETCH(bool, hasResource);
    TestDatabase& database = m_Host->m_Database;
    TestDataSource* const source = database.AddSource("project");
    if (hasCompound)
        database.AddObject(kCompoundUid, source).m_HasManager = hasManager;
    if (hasResource)
        database.AddResource(kResourceUid, "Project", source);
    QVERIFY_EXCEPTION_THROWN(Choose(*m_Browser, {kCompoundUid, kResourceUid}),
                             qorm::ExBase::NullPtr);
    QStringList const calls = m_Host->TakeCalls();
    QCOMPARE(calls.size(), 1);
    QVERIFY2(calls[0].startsWith("PrintDebugString"), qPrintable(calls[0]));
}

namespace {

/// What the program does instead of its tests when it is given a number: chooses an entry with
/// that many ids. Tells whether the host heard nothing of it.
int ChooseShortPayload(int argc, char** argv)
{
    QApplication application(argc, argv);
    TestHost host;
    host.AddRevisionControl();
    TestBrowser browser;
    host.TakeCalls();
    host.m_ListsQueries = true;
    QStringList ids;
    for (int count = QString(argv[1]).toInt(); count > 0; --count)
        ids << kCompoundUid;
    Choose(browser, ids);
    return host.TakeCalls().size();
}

} // namespace

void TestDatasourceChange::reportsAShortPayload_data()
{
    QTest::addColumn<QString>("count");

    QTest::newRow("no id") << "0";
    QTest::newRow("the compound alone") << "1";
}

/// The menu always gives two ids; a host that calls the slot by itself may not.
void TestDatasourceChange::reportsAShortPayload()
{
    QFETCH(QString, count);
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), QStringList(count));
    QVERIFY(child.waitForFinished());
#ifdef QT_NO_DEBUG
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
#else
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    QVERIFY(child.readAllStandardError().contains("CNodeBrowser::OnDatasourceChange"));
#endif
}

int main(int argc, char** argv)
{
    if (argc == 2 && QString(argv[1]).size() == 1)
        return ChooseShortPayload(argc, argv);
    TestDatasourceChange test;
    return RunTest(test, argc, argv);
}

#include "tst_datasourcechange.moc"
