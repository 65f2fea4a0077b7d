#include "browsertest.h"

#include <QRegularExpression>
#include <QTest>

using namespace tarno::datamodel;

typedef CNodeBrowser::Item Item;

class TestBrowserItem : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void looksComponentsUpOnce();
    void readsSourceFlags_data();
    void readsSourceFlags();
    void staysOrdinaryWithoutDatabaseObject();
    void composesIcon_data();
    void composesIcon();
    void recomposesOnlyForAnotherState();
    void keepsTheStateGivenForCompoundsOnly();

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Browser.reset(new TestBrowser);
        m_Host->TakeCalls();
    }

private:
    Item MakeItem(char const* name, int state = 0)
    {
        ItemAccessor accessor = m_Library->GetAccessor((*m_Library)[name]);
        return Item(m_Browser.get(), accessor, state, ItemID());
    }
};

/// Comes first, because the panel keeps the components for the rest of the process.
void TestBrowserItem::looksComponentsUpOnce()
{
    m_Host->AddRevisionControl();
    TestObject const& object =
        AddStored(TarnoType::gSolver, "solver", m_Host->m_Database.AddSource("project"));
    m_Host->m_ListsQueries = true;
    for (int round = 0; round < 2; ++round) {
        MakeItem("solver");
        QStringList expected("FindObject " + QString::fromStdString(object.m_Uid));
        if (round == 0)
            expected = QStringList()
                       << "FindObject D2BA853A-8668-704A-A121-1F7DE917B664"
                       << "FindObject 34F315D3-58CF-4019-9BE3-381FCED0E983" << expected;
        QCOMPARE(m_Host->TakeCalls().filter(QRegularExpression("^FindObject")), expected);
    }
}

void TestBrowserItem::readsSourceFlags_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("accessMode");
    QTest::addColumn<QString>("asset");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<int>("assetQueries");

    auto const row = [](char const* name, QString const& source, int accessMode,
                        QString const& asset, QString const& flags, int assetQueries) {
        QTest::newRow(name) << source << accessMode << asset << flags << assetQueries;
    };
    row("project", "project", 0, "none", "state", 0);
    row("other access mode", "project", 2, "none", "state", 0);
    row("read-only project", "project", 1, "none", "read-only", 0);
    row("first component", "component 0", 0, "none", "factory state", 0);
    row("second component", "component 1", 0, "none", "factory state", 0);
    row("read-only component", "component 1", 1, "locked", "factory read-only", 0);
    row("open asset", "project", 0, "open", "state", 1);
    row("locked asset", "project", 0, "locked", "factory read-only", 1);
    row("locked asset, not loaded", "project", 0, "locked unloaded", "state", 0);
    row("locked asset in a component", "component 0", 0, "locked", "factory read-only", 1);
    row("open asset, read-only project", "project", 1, "open", "read-only", 1);
}

void TestBrowserItem::readsSourceFlags()
{
    QFETCH(QString, source);
    QFETCH(int, accessMode);
    QFETCH(QString, asset);
    QFETCH(int, assetQueries);
    m_Host->AddRevisionControl();
    TestDatabase& database = m_Host->m_Database;
    TestDataSource* const dataSource = source == "project"
                                           ? database.AddSource("project")
                                           : database.m_ComponentSources[source.right(1).toInt()];
    dataSource->m_AccessMode = accessMode;
    TestObject& object = AddStored(TarnoType::gCompound, "item", dataSource);
    object.m_IsTypeAsset = asset != "none";
    object.m_IsReadOnly = asset.startsWith("locked");
    object.m_IsLoaded = !asset.endsWith("unloaded");

    Item const item = MakeItem("item");
    QStringList flags;
    if (item.m_IsFactory)
        flags << "factory";
    if (item.m_IsReadOnlySource)
        flags << "read-only";
    if (item.m_HasScState)
        flags << "state";
    QTEST(flags.join(" "), "flags");
    QCOMPARE(m_Host->TakeCount("IsReadOnly") > 0, assetQueries > 0);
}

void TestBrowserItem::staysOrdinaryWithoutDatabaseObject()
{
    TestDataSource* const source = m_Host->m_Database.m_ComponentSources[0];
    AddStored(TarnoType::gCompound, "no service", source);
    QVERIFY(!MakeItem("no service").m_IsFactory);
    QVERIFY(MakeItem("no service").m_HasScState);

    m_Host->AddRevisionControl();
    m_Library->AddObject(m_Library->Add(TarnoType::gCompound, "no UID", "", "Compound:x"), source);
    m_Library->Add(TarnoType::gCompound, "no object");
    QVERIFY(MakeItem("no service").m_IsFactory);
    m_Host->TakeCount("FindObject");
    QVERIFY(!MakeItem("no UID").m_IsFactory);
    QCOMPARE(m_Host->TakeCount("FindObject"), 0);
    QVERIFY(!MakeItem("no object").m_IsFactory);

    // A service of another type is none.
    m_Host->SetService("RevisionControlUIHelper", &m_Host->m_Proxy);
    QVERIFY(!MakeItem("no service").m_IsFactory);
}

void TestBrowserItem::composesIcon_data()
{
    QTest::addColumn<bool>("isShown");
    QTest::addColumn<bool>("isVersionControlActive");
    QTest::addColumn<bool>("isFactory");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<QString>("call");

    QTest::newRow("plain") << false << true << false << false
                           << "getAssetStateIcon 20 0x5 false true";
    QTest::newRow("plain, shown") << true << true << false << false
                                  << "getAssetStateIcon 20 0x5 true true";
    QTest::newRow("plain, read-only")
        << true << true << false << true << "getAssetStateIcon 20 0x5 true true";
    QTest::newRow("no version control")
        << true << false << false << false << "getAssetStateIcon 20 0x5 false true";
    QTest::newRow("factory") << true << true << true << false
                             << "getAssetStateIcon 27 0x5 true false";
    QTest::newRow("factory, read-only") << true << true << true << true << "";
}

void TestBrowserItem::composesIcon()
{
    QFETCH(bool, isShown);
    QFETCH(bool, isVersionControlActive);
    QFETCH(bool, isFactory);
    QFETCH(bool, isReadOnly);
    m_Library->Add(TarnoType::gCompound, "item");
    Item item = MakeItem("item", 5);
    item.m_IsFactory = isFactory;
    item.m_IsReadOnlySource = isReadOnly;
    m_Browser->m_SourceControlEnabled = isShown;
    m_Host->m_IsFileVersionControlActive = isVersionControlActive;
    // A picture that no item had before.
    QPixmap base(20, 20);
    base.fill(Qt::green);

    m_Host->m_ListsQueries = true;
    item.setIcon(base);
    QStringList const calls = m_Host->TakeCalls();
    QTEST(calls.filter("getAssetStateIcon").join("; "), "call");
    QCOMPARE(calls.contains("IsFileVersionControlActive"), isShown);
    QCOMPARE(item.m_DisplayIcon.size(), QSize(isFactory ? 27 : 20, 20));
    QColor const expected = isShown && isVersionControlActive && !(isFactory && isReadOnly)
                                ? QColor(0, 0, 5)
                                : QColor(Qt::green);
    QCOMPARE(QColor(item.m_DisplayIcon.toImage().pixel(isFactory ? 17 : 10, 0)), expected);
}

void TestBrowserItem::recomposesOnlyForAnotherState()
{
    m_Host->m_IsFileVersionControlActive = true;
    m_Browser->m_SourceControlEnabled = true;
    m_Library->Add(TarnoType::gCompound, "item");
    Item item = MakeItem("item");
    QColor const before = item.m_DisplayIcon.toImage().pixel(0, 0);
    qint64 const icon = item.m_DisplayIcon.cacheKey();
    item.setScState(0);
    QCOMPARE(item.m_DisplayIcon.cacheKey(), icon);
    item.setScState(0x123456);
    QCOMPARE(QColor(item.m_DisplayIcon.toImage().pixel(0, 0)), QColor(0x12, 0x34, 0x56));
    item.setScState(0);
    QCOMPARE(QColor(item.m_DisplayIcon.toImage().pixel(0, 0)), before);
}

void TestBrowserItem::keepsTheStateGivenForCompoundsOnly()
{
    m_Library->Add(TarnoType::gCompound, "compound");
    m_Library->Add(TarnoType::gSolver, "solver");
    m_Library->Add("unheard of", "odd");
    QCOMPARE(MakeItem("compound", 5).m_ScState, 5);
    QCOMPARE(MakeItem("solver", 5).m_ScState, 0);
    QVERIFY(!MakeItem("solver").m_HasScState);
    m_Host->TakeCount("getAssetStateIcon");
    QVERIFY(MakeItem("odd", 5).m_DisplayIcon.isNull());
    QCOMPARE(m_Host->TakeCount("getAssetStateIcon"), 0);
}

NODEBROWSER_TEST_MAIN(TestBrowserItem)

#include "tst_item.moc"
