#include "paneltest.h"
#include "testbrowser.h"

#include <QRegularExpression>
#include <QTest>

using namespace tarno::datamodel;

typedef CNodeBrowser::Item Item;
typedef std::list<qorm::QormHandle<qorm::IDbObject>> StateRequests;

class TestItems : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void looksComponentsUpOnce();
    void asksForItemsInOrder();
    void sortsByNameIgnoringCase();
    void showsAndTagsItsKind_data();
    void showsAndTagsItsKind();
    void readsSourceFlags_data();
    void readsSourceFlags();
    void staysOrdinaryWithoutDatabaseObject();
    void raisesForObjectWithoutDataSource();
    void composesIcon_data();
    void composesIcon();
    void recomposesOnlyForAnotherState();
    void keepsTheStateGivenForCompoundsOnly();
    void requestsStatesOfWritableCompounds();
    void staysSafeWhenTheHostThrows_data();
    void staysSafeWhenTheHostThrows();

protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Library.reset(new TestLibrary);
        m_Browser.reset(new TestBrowser);
        m_Host->TakeCalls();
    }

    void TearDown() override
    {
        m_Browser.reset();
        m_Library.reset();
        PanelTest::TearDown();
    }

private:
    /// Adds an item with a database object in the source.
    TestObject& AddStored(char const* kind, char const* name, TestDataSource* source)
    {
        return m_Library->AddObject(m_Library->Add(kind, name), source);
    }

    Item MakeItem(char const* name, int state = 0)
    {
        ItemAccessor accessor = m_Library->GetAccessor((*m_Library)[name]);
        return Item(m_Browser.get(), accessor, state, ItemID());
    }

    std::unique_ptr<TestLibrary> m_Library;
    std::unique_ptr<TestBrowser> m_Browser;
};

/// Comes first, because the panel keeps the components for the rest of the process.
void TestItems::looksComponentsUpOnce()
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

void TestItems::asksForItemsInOrder()
{
    m_Library->Add(LibType::gType, "type");
    m_Library->Add(TarnoType::gSolver, "solver");
    m_Library->Add(TarnoType::gGlobalConstant, "nested").hasParent = true;
    m_Library->Add(TarnoType::gGlobalConstant, "special").hasSpecializes = true;
    m_Library->Add(TarnoType::gCompound, "hidden").isValidGraphItem = false;
    m_Library->Add(TarnoType::gPolymorphicSolver, "second");
    m_Library->Add(TarnoType::gPolymorphicSolver, "first");

    m_Host->m_ListsQueries = true;
    m_Browser->SetItemLibrary(m_Library->GetAccessor());
    QStringList const asked = m_Host->TakeCalls().filter(
        QRegularExpression("^(GetItems|IsValidGraphItemType|GetValue|GetItemTags) "));
    QStringList expected("GetItems polymorphicSolver");
    for (QString const name : {"second", "first"})
        expected << "IsValidGraphItemType polymorphicSolver " + name
                 << "GetValue " + name + " Parent"
                 << "GetValue " + name + " Specializes"
                 << "GetItemTags " + name + " 'ApplicationTags'";
    expected << "GetItems compound"
             << "IsValidGraphItemType compound hidden"
             << "GetItems constant"
             << "IsValidGraphItemType constant nested"
             << "GetValue nested Parent"
             << "IsValidGraphItemType constant special"
             << "GetValue special Parent"
             << "GetValue special Specializes"
             << "GetItems solver"
             << "IsValidGraphItemType solver solver"
             << "GetValue solver Parent"
             << "GetValue solver Specializes"
             << "GetItemTags solver 'ApplicationTags'"
             << "GetItems type"
             << "IsValidGraphItemType type type"
             << "GetValue type Parent"
             << "GetValue type Specializes"
             << "GetItemTags type 'ApplicationTags'";
    QCOMPARE(asked, expected);
    QCOMPARE(m_Browser->GetNames().join(" "), QString("first second solver type"));
    QVERIFY(m_Browser->m_VisibleListDirty);
}

void TestItems::sortsByNameIgnoringCase()
{
    for (char const* name : {"beta", "Alpha", "alpha2", "_x", "Zeta"})
        m_Library->Add(TarnoType::gSolver, name);
    m_Library->Add(LibType::gType, "apple");
    m_Host->TakeCount("GetItemName");
    m_Browser->SetItemLibrary(m_Library->GetAccessor());
    // One question a name, however long sorting takes.
    QCOMPARE(m_Host->TakeCount("GetItemName"), 6);
    QCOMPARE(m_Browser->GetNames().join(" "), QString("_x Alpha alpha2 apple beta Zeta"));
}

void TestItems::showsAndTagsItsKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("isAbstract");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("tag");

    QTest::newRow("polymorphic solver") << 0 << false << ":solver.png"
                                        << "node";
    QTest::newRow("solver") << 1 << false << ":solver.png"
                            << "node";
    QTest::newRow("compound") << 2 << false << ":compound.png"
                              << "node";
    QTest::newRow("signature") << 2 << true << ":signature.png"
                               << "node";
    QTest::newRow("constant") << 3 << false << ":constant.png"
                              << "constant";
    QTest::newRow("type") << 4 << false << ":type.png"
                          << "type";
}

void TestItems::showsAndTagsItsKind()
{
    QFETCH(int, kind);
    QFETCH(bool, isAbstract);
    QFETCH(QString, icon);
    QFETCH(QString, tag);
    char const* const kinds[] = {TarnoType::gPolymorphicSolver, TarnoType::gSolver,
                                 TarnoType::gCompound, TarnoType::gGlobalConstant, LibType::gType};
    TestItem& item = m_Library->Add(kinds[kind], "item", "Own");
    item.isAbstract = isAbstract;
    m_Browser->SetItemLibrary(m_Library->GetAccessor());

    Item const& listed = m_Browser->m_Items.at(0);
    QVERIFY(!listed.m_Icon.isNull());
    QCOMPARE(listed.m_Icon.toImage(), QPixmap(icon).toImage());
    QCOMPARE(listed.m_DisplayIcon.toImage(), listed.m_Icon.toImage());
    QCOMPARE(m_Browser->m_TagsRegistry.GetItemTags(item.id),
             (std::set<std::string>{"Own", tag.toStdString()}));
}

void TestItems::readsSourceFlags_data()
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

void TestItems::readsSourceFlags()
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

void TestItems::staysOrdinaryWithoutDatabaseObject()
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

void TestItems::raisesForObjectWithoutDataSource()
{
    m_Host->AddRevisionControl();
    m_Library->Add(TarnoType::gCompound, "before");
    AddStored(TarnoType::gCompound, "broken", nullptr);
    m_Library->Add(TarnoType::gSolver, "after");
    QVERIFY_EXCEPTION_THROWN(m_Browser->SetItemLibrary(m_Library->GetAccessor()),
                             qorm::ExBase::NullPtr);
    QCOMPARE(m_Host->TakeCalls().last(), QString("PrintDebugString 'null pointer: "
                                                 "GetPointeeNotNull:102'"));
    QCOMPARE(m_Browser->GetNames(), QStringList("before"));
}

void TestItems::composesIcon_data()
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

void TestItems::composesIcon()
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

void TestItems::recomposesOnlyForAnotherState()
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

void TestItems::keepsTheStateGivenForCompoundsOnly()
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

void TestItems::requestsStatesOfWritableCompounds()
{
    m_Host->AddRevisionControl();
    TestDatabase& database = m_Host->m_Database;
    TestDataSource* const project = database.AddSource("project");
    std::string const second = AddStored(TarnoType::gCompound, "b second", project).m_Uid;
    std::string const first = AddStored(TarnoType::gCompound, "a first", project).m_Uid;
    AddStored(TarnoType::gCompound, "read-only", database.AddSource("shared", 1));
    AddStored(TarnoType::gSolver, "solver", project);
    m_Library->Add(TarnoType::gCompound, "no UID", "", "Compound:x");

    m_Browser->SetItemLibrary(m_Library->GetAccessor());
    for (Item const& item : m_Browser->m_Items)
        QCOMPARE(item.m_ScState, 0);

    StateRequests requests;
    m_Browser->BuildAllItemList(&requests);
    // In the order of the table of contents, before sorting.
    QCOMPARE(requests.size(), std::size_t(2));
    QCOMPARE(requests.front().GetDbObjectId().GetStr(), second.c_str());
    QCOMPARE(requests.back().GetDbObjectId().GetStr(), first.c_str());
    for (Item const& item : m_Browser->m_Items) {
        bool const isWaiting =
            m_Browser->GetName(item) == "a first" || m_Browser->GetName(item) == "b second";
        QCOMPARE(item.m_ScState, isWaiting ? 0x400000 : 0);
    }

    m_Host->SetService("RevisionControlUIHelper", nullptr);
    m_Browser->BuildAllItemList(&requests);
    QCOMPARE(requests.size(), std::size_t(2));
}

void TestItems::staysSafeWhenTheHostThrows_data()
{
    QTest::addColumn<QByteArray>("operation");
    for (char const* operation :
         {"GetItems", "IsValidGraphItemType", "GetValue", "GetItemTags", "GetItemName",
          "IsAbstractFunction", "FindObject", "GetAccessMode", "getAssetStateIcon", "Revalidate"})
        QTest::newRow(operation) << QByteArray(operation);
}

/// A rebuild broken off anywhere leaves a panel that can be used, and the next one is whole.
void TestItems::staysSafeWhenTheHostThrows()
{
    QFETCH(QByteArray, operation);
    m_Host->AddRevisionControl();
    TestDataSource* const project = m_Host->m_Database.AddSource("project");
    for (char const* name : {"d", "c", "b", "a"})
        AddStored(TarnoType::gCompound, name, project);
    m_Library->Add(TarnoType::gSolver, "e");
    m_Browser->SetItemLibrary(m_Library->GetAccessor());
    QStringList const rows = m_Browser->GetRows();
    QCOMPARE(rows.join(" "), QString("a b c d e"));

    bool hasThrown = true;
    for (int call = 1; hasThrown; ++call) {
        hasThrown = false;
        m_Host->ThrowAt(operation, call);
        try {
            m_Browser->BuildAllItemList(nullptr);
        } catch (HostError const&) {
            hasThrown = true;
        }
        m_Host->ThrowAt(operation, 1000000);
        m_Browser->Paint();
        for (int row = 0; row < 6; ++row)
            QTest::mouseClick(m_Browser.get(), Qt::LeftButton, Qt::NoModifier,
                              m_Browser->GetRowCenter(row));
        TestItem const& item = (*m_Library)["a"];
        m_Library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
            listener.ItemTagsChanged(library, item.id, "ApplicationTags");
            listener.ItemAccessStateChanged(library, item.id, call);
        });
        m_Browser->SearchTextChange("node");
        m_Browser->Paint();
        m_Browser->SearchTextChange("");
        QVERIFY(m_Browser->GetRows().size() <= rows.size());

        m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary);
        QCOMPARE(m_Browser->GetRows(), rows);
        QVERIFY2(hasThrown || call > 1, "The operation is never called.");
    }
}

NODEBROWSER_TEST_MAIN(TestItems)

#include "tst_items.moc"
