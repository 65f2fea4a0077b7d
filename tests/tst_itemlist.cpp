#include "browsertest.h"
#include "searchreference.h"

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
    void keepsUpAsMadeAnew_data();
    void keepsUpAsMadeAnew();
    void findsNoItemThatIsGone();
    void asksForStatesOfAListThatIsNew();
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

namespace {

QString Describe(Item const& item, TestBrowser const& browser)
{
    QImage const icon = item.m_DisplayIcon.toImage();
    QStringList facts{browser.GetName(item), QString::fromStdString(item.GetItemID().Serialize()),
                      QString::number(item.m_ScState, 16)};
    for (bool const flag : {item.m_HasScState, item.m_IsFactory, item.m_IsReadOnlySource})
        facts << QString::number(flag);
    facts << QString::number(icon.width())
          << QString::number(icon.isNull() ? 0 : icon.pixel(icon.width() - 1, 0), 16);
    return facts.join(",");
}

/// All that can be seen of the item list: items, tags in both directions, and searches.
QString Describe(TestBrowser& browser, std::set<ItemID> const& ids, QStringList const& searches)
{
    QStringList lines;
    for (Item const& item : browser.m_Items)
        lines << Describe(item, browser);
    ItemTagsRegistry const& registry = browser.m_TagsRegistry;
    std::set<std::string> tags{"node", "own", "a", "b", "c"};
    for (ItemID const& id : ids) {
        QString line = QString::fromStdString(id.Serialize()) + (registry.HasItem(id) ? " is" : "");
        for (std::string const& tag : registry.GetItemTags(id)) {
            line += " '" + QString::fromLatin1(tag.c_str()) + "'";
            tags.insert(tag);
        }
        lines << line;
    }
    for (std::string const& tag : tags) {
        QString line = QString::fromLatin1(tag.c_str()) + ":";
        for (ItemID const& id : registry.GetTagItems(tag.c_str()))
            line += " " + QString::fromStdString(id.Serialize());
        lines << line;
    }
    for (QString const& search : searches) {
        browser.SearchTextChange(search);
        browser.UpdateVisibleItems();
        QString line = "'" + search + "'";
        for (unsigned long const position : browser.m_VisibleItems)
            line += " " + QString::number(position);
        lines << line;
    }
    return lines.join("\n");
}

/// Changes a library at random, as its host's users do.
class RandomChanges
{
public:
    explicit RandomChanges(unsigned int seed)
        : m_Random(seed)
    {
        for (std::size_t i = 0; i < 2; ++i) {
            m_Sources[i] = TestHost::Get().m_Database.AddSource(i ? "b" : "a", int(i));
            m_Libraries[i].reset(new TestLibrary(i ? "B" : "A"));
        }
        for (int item = 0; item < 30; ++item)
            Add();
    }

    TestLibrary& GetLibrary() const
    {
        return *m_Libraries[m_Shown];
    }

    RandomTexts& GetRandom()
    {
        return m_Random;
    }

    std::set<ItemID> const& GetIDs() const
    {
        return m_IDs;
    }

    void ChangeOne(TestBrowser& browser)
    {
        std::size_t const change = m_Random.Number(14);
        if (change == 0 || GetLibrary().m_Listed.empty())
            return Add();
        std::vector<TestItem*>& listed = GetLibrary().m_Listed;
        TestItem*& item = listed[m_Random.Number(listed.size())];
        switch (change) {
        case 1:
            return GetLibrary().Remove(*item);
        case 2:
            item->name = m_Random.Text(3);
            break;
        case 3:
            item->tags["ApplicationTags"] = m_Random.Tags();
            break;
        case 4:
            Retag(*item);
            break;
        case 5:
            item->hasParent = !item->hasParent;
            break;
        case 6:
            item->isAbstract = !item->isAbstract;
            break;
        case 7:
            m_Sources[0]->m_AccessMode ^= 1;
            break;
        case 8:
            std::swap(item, listed[m_Random.Number(listed.size())]);
            break;
        case 9:
            browser.m_TagsRegistry.AddItemTag(item->id, "own");
            break;
        case 10:
            TellState(*item);
            break;
        case 11: {
            // It stands in the table of contents twice then.
            TestItem* const twice = item;
            listed.push_back(twice);
            break;
        }
        case 12:
            listed.erase(std::find(listed.begin(), listed.end(), item));
            break;
        default:
            Replace(browser);
            break;
        }
    }

private:
    void Add()
    {
        char const* const kinds[] = {TarnoType::gSolver, TarnoType::gCompound, LibType::gType};
        TestItem& item =
            GetLibrary().Add(kinds[m_Random.Number(3)], m_Random.Text(3), m_Random.Tags());
        GetLibrary().AddObject(item, m_Sources[m_Random.Number(2)]);
        m_IDs.insert(item.id);
    }

    void Retag(TestItem& item)
    {
        item.tags["ApplicationTags"] = m_Random.Tags();
        GetLibrary().Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
            listener.ItemTagsChanged(library, item.id, "ApplicationTags");
        });
    }

    void TellState(TestItem& item)
    {
        GetLibrary().Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
            listener.ItemAccessStateChanged(library, item.id, long(m_Random.Number(3)));
        });
    }

    /// Rarely: it takes a while until there is something to compare again.
    void Replace(TestBrowser& browser)
    {
        if (m_Random.Number(10) == 0) {
            m_Shown = 1 - m_Shown;
            browser.SetItemLibrary(GetLibrary().GetAccessor());
        } else {
            browser.SetSourceControlEnabled(!browser.m_SourceControlEnabled);
        }
    }

    RandomTexts m_Random;
    TestDataSource* m_Sources[2];
    std::unique_ptr<TestLibrary> m_Libraries[2];
    std::size_t m_Shown = 0;
    std::set<ItemID> m_IDs;
};

} // namespace

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
    QCOMPARE(m_Host->TakeCalls().last(), QString("PrintDebugString 'Null pointer in "
                                                 "GetPointeeNotNull (qormptr.h:102)'"));
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

void TestItemList::keepsUpAsMadeAnew_data()
{
    QTest::addColumn<QByteArray>("failing");
    QTest::newRow("whole") << QByteArray();
    for (char const* operation : {"IsValidGraphItemType", "GetItemTags", "GetItemName",
                                  "IsAbstractFunction", "FindObject", "getAssetStateIcon"})
        QTest::newRow(operation) << QByteArray(operation);
}

/// A list that is brought up to changes is the one that is made from nothing, whether or not the
/// host failed while it was made.
void TestItemList::keepsUpAsMadeAnew()
{
    QFETCH(QByteArray, failing);
    m_Host->AddRevisionControl();
    m_Host->m_IsFileVersionControlActive = true;
    RandomChanges changes(unsigned(failing.size()));
    RandomTexts& random = changes.GetRandom();
    m_Browser->SetItemLibrary(changes.GetLibrary().GetAccessor());
    for (int round = 0; round < (failing.isEmpty() ? 1200 : 150); ++round) {
        for (std::size_t count = random.Number(3) + 1; count > 0; --count)
            changes.ChangeOne(*m_Browser);
        TestBrowser anew;
        anew.SetSourceControlEnabled(m_Browser->m_SourceControlEnabled);
        StateRequests requests;
        StateRequests expected;
        bool const asksForStates = random.Number(2) == 0;
        int const call = failing.isEmpty() ? 1000000 : int(random.Number(40)) + 1;
        auto const build = [&](TestBrowser& browser, StateRequests& into) {
            m_Host->ThrowAt(failing, call);
            try {
                browser.BuildAllItemList(asksForStates ? &into : nullptr);
            } catch (HostError const&) {
            }
            m_Host->ThrowAt(failing, 1000000);
        };
        anew.m_ItemLibrary = changes.GetLibrary().GetAccessor();
        anew.m_ItemTOC = GetTOC(anew.m_ItemLibrary);
        anew.m_TagsRegistry.SetItemLibrary(anew.m_ItemLibrary);
        build(anew, expected);
        build(*m_Browser, requests);

        QString const text = QString::fromLatin1(random.SearchText().c_str());
        // As it is typed, so that each search may build on the one before.
        QStringList const searches{"", text.left(1), text.left(2), text};
        QCOMPARE(Describe(*m_Browser, changes.GetIDs(), searches),
                 Describe(anew, changes.GetIDs(), searches));
        QCOMPARE(requests.size(), expected.size());
        QVERIFY(std::equal(requests.begin(), requests.end(), expected.begin(),
                           [](auto const& left, auto const& right) {
                               return left.GetCacheIndex() == right.GetCacheIndex();
                           }));
        // Unregisters what was never registered otherwise.
        anew.m_ItemLibrary = ItemLibraryAccessor();
        anew.m_ItemTOC = ItemTOCAccessor();
    }
    m_Browser.reset();
}

void TestItemList::findsNoItemThatIsGone()
{
    ItemID const id = m_Library->Add(TarnoType::gCompound, "gone").id;
    m_Library->Add(TarnoType::gCompound, "there");
    m_Browser->SetItemLibrary(m_Library->GetAccessor());
    m_Library->Remove((*m_Library)["gone"]);
    auto const tellState = [&](ItemID const& item, long state) {
        m_Library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
            listener.ItemAccessStateChanged(library, item, state);
        });
    };
    tellState(id, 1);
    QCOMPARE(m_Browser->m_Items[0].m_ScState, 0);
    // It answers the null identifier now.
    tellState(ItemID(), 2);
    QCOMPARE(m_Browser->m_Items[0].m_ScState, 2);
    QCOMPARE(m_Browser->m_Items[1].m_ScState, 0);
}

void TestItemList::asksForStatesOfAListThatIsNew()
{
    m_Host->AddRevisionControl();
    TestDataSource* const project = m_Host->m_Database.AddSource("project");
    std::string const second = AddStored(TarnoType::gCompound, "b", project).m_Uid;
    std::string const first = AddStored(TarnoType::gCompound, "a", project).m_Uid;
    QString const request = "RequestObjectStates [" + QString::fromStdString(second) + " "
                            + QString::fromStdString(first) + "]";
    m_Browser->SetItemLibrary(m_Library->GetAccessor());
    m_Host->TakeCalls();
    m_Host->TakeCount("GetItems");
    m_Browser->Paint();
    QCOMPARE(m_Host->TakeCalls().filter("RequestObjectStates"), QStringList(request));
    QCOMPARE(m_Host->TakeCount("GetItems"), 0);
    QCOMPARE(m_Browser->m_Items[0].m_ScState, 0x400000);

    // What was heard of since, and a service that was not there, make it anew.
    std::vector<std::function<void()>> const news = {
        [&] { m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary); },
        [&] {
            ItemID const id = (*m_Library)["a"].id;
            m_Browser->ItemTagsChanged(m_Browser->m_ItemLibrary, id, "ApplicationTags");
        },
        [&] { m_Host->SetService("RevisionControlUIHelper", nullptr); },
    };
    for (auto const& tell : news) {
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        tell();
        m_Host->TakeCount("GetItems");
        m_Browser->Paint();
        QCOMPARE(m_Host->TakeCount("GetItems"), 5);
    }
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
