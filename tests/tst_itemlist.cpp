#include "browsertest.h"

#include <QRegularExpression>
#include <QTest>

using namespace tarno::datamodel;

typedef CNodeBrowser::Item Item;
typedef std::list<qorm::QormHandle<qorm::IDbObject>> StateRequests;

class TestItemList : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void asksForItemsInOrder();
    void sortsByNameIgnoringCase();
    void showsAndTagsItsKind_data();
    void showsAndTagsItsKind();
    void raisesForObjectWithoutDataSource();
    void requestsStatesOfWritableCompounds();
    void staysSafeWhenTheHostThrows_data();
    void staysSafeWhenTheHostThrows();

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Browser.reset(new TestBrowser);
        m_Host->TakeCalls();
    }
};

void TestItemList::asksForItemsInOrder()
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

void TestItemList::sortsByNameIgnoringCase()
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

void TestItemList::showsAndTagsItsKind_data()
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

void TestItemList::showsAndTagsItsKind()
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

void TestItemList::raisesForObjectWithoutDataSource()
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

void TestItemList::requestsStatesOfWritableCompounds()
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

void TestItemList::staysSafeWhenTheHostThrows_data()
{
    QTest::addColumn<QByteArray>("operation");
    for (char const* operation :
         {"GetItems", "IsValidGraphItemType", "GetValue", "GetItemTags", "GetItemName",
          "IsAbstractFunction", "FindObject", "GetAccessMode", "getAssetStateIcon", "Revalidate"})
        QTest::newRow(operation) << QByteArray(operation);
}

/// A rebuild broken off anywhere leaves a panel that can be used, and the next one is whole.
void TestItemList::staysSafeWhenTheHostThrows()
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

NODEBROWSER_TEST_MAIN(TestItemList)

#include "tst_itemlist.moc"
