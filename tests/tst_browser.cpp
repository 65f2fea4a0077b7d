#include "paneltest.h"
#include "testbrowser.h"

#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

#include <cstring>

using namespace tarno::datamodel;

class TestNodeBrowser : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsAsConfigured_data();
    void startsAsConfigured();
    void listsItsMethodsInOrder();
    void castsToTheInterfacesItTells();
    void ordersItsVirtualFunctions();
    void registersOnceWhateverIsAttached();
    void unregistersNothingWithoutLibrary();
    void listsAtOnceAndAsksForStatesWithTheNextPaint();
    void survivesTheEndOfItsLibrary();
    void followsRevisionControlProperties_data();
    void followsRevisionControlProperties();
    void disconnectsFromProperties();
    void switchesSourceControl();
};

void TestNodeBrowser::startsAsConfigured_data()
{
    QTest::addColumn<int>("config");
    QTest::addColumn<QStringList>("tabs");
    QTest::addColumn<int>("filter");
    QTest::addColumn<int>("headerHeight");

    QTest::newRow("full browser") << 0
                                  << (QStringList() << "Nodes"
                                                    << "Types"
                                                    << "All")
                                  << 0 << 43;
    QTest::newRow("type chooser") << 1 << QStringList() << 1 << 23;
    QTest::newRow("any other") << 2 << QStringList() << 1 << 23;
    QTest::newRow("unknown") << 9 << QStringList() << 1 << 23;
}

void TestNodeBrowser::startsAsConfigured()
{
    QFETCH(int, config);
    m_Host->m_ListsQueries = true;
    TestBrowser browser(static_cast<CNodeBrowser::eConfigType>(config));
    QCOMPARE(m_Host->TakeCalls(), QStringList() << "ScsTask 'NodeBrowser'"
                                                << "GetService 'RevisionControlPropertiesMgr'");

    QStringList tabs;
    for (int tab = 0; browser.m_TabBar && tab < browser.m_TabBar->count(); ++tab)
        tabs << browser.m_TabBar->tabText(tab);
    QTEST(tabs, "tabs");
    QTEST(int(browser.m_ConfigType), "filter");
    QTEST(browser.m_HeaderHeight, "headerHeight");
    QCOMPARE(int(browser.m_BrowserConfig), config);
    QCOMPARE(browser.m_SelectedIndex, 0xFFFFFFFFUL);
    QVERIFY(browser.m_ScStatesStale && !browser.m_ItemListDirty && !browser.m_VisibleListDirty);
    QVERIFY(!browser.m_ItemLibrary.IsValid() && !browser.m_ItemTOC.IsValid());
    QVERIFY(browser.m_ScrollBar->isHidden());
    QVERIFY(browser.m_ClearButton->text().isEmpty() && !browser.m_ClearButton->icon().isNull());
    QVERIFY(browser.objectName().isEmpty());
    // Without a library there is nothing to show, nor to break.
    QVERIFY(browser.GetRows().isEmpty());
}

void TestNodeBrowser::listsItsMethodsInOrder()
{
    char const* const expected[] = {
        "SelectionChanged()", "SliderValueChanged(int)", "SearchTextChange(QString)",
        "EnterPressed()",     "TabChanged(int)",         "OnNewSignature()",
        "OnNewCompound()",    "OnNewLoopCompound()",     "OnSaveGraphLibrary()",
        "ClearButton(bool)",  "OnRenameItem()",          "OnDeleteItem()",
        "OnCheckOutItem()",   "OnMakeItemWritable()",    "OnShowItemFiles()",
        "OnEditItemTags()",   "OnDatasourceChange()"};
    QMetaObject const& meta = CNodeBrowser::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 17);
    for (int index = 0; index < 17; ++index) {
        QMetaMethod const method = meta.method(meta.methodOffset() + index);
        QCOMPARE(QString(method.methodSignature()), QString(expected[index]));
        QCOMPARE(method.methodType(), index == 0 ? QMetaMethod::Signal : QMetaMethod::Slot);
        // Generations of the toolkit differ about what a signal is; slots are protected.
        if (index > 0)
            QCOMPARE(method.access(), QMetaMethod::Protected);
    }
}

void TestNodeBrowser::castsToTheInterfacesItTells()
{
    TestBrowser browser;
    CNodeBrowser* const base = &browser;
    QCOMPARE(base->qt_metacast("CNodeBrowser"), static_cast<void*>(base));
    QCOMPARE(base->qt_metacast("tarno::datamodel::IItemTOCNotification"),
             static_cast<void*>(static_cast<IItemTOCNotification*>(base)));
    QCOMPARE(base->qt_metacast("tarno::datamodel::IItemLibraryNotification"),
             static_cast<void*>(static_cast<IItemLibraryNotification*>(base)));
    QVERIFY(!base->qt_metacast("IRevisionControlPropertiesMgr_Slot"));
    QCOMPARE(base->qt_metacast("QWidget"), static_cast<void*>(static_cast<QWidget*>(base)));
}

#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)

namespace {

/// Place of a virtual function in the table of its class, as the pointer to it holds it.
template <class Function>
std::ptrdiff_t PlaceOf(Function function)
{
    std::ptrdiff_t words[sizeof(Function) / sizeof(std::ptrdiff_t)];
    std::memcpy(words, &function, sizeof(function));
    return (words[0] - 1) / std::ptrdiff_t(sizeof(void*));
}

} // namespace

void TestNodeBrowser::ordersItsVirtualFunctions()
{
    typedef CNodeBrowser B;
    std::ptrdiff_t const places[] = {
        PlaceOf(&B::OnRevisionControlPropertiesChange),
        PlaceOf(&B::ItemAdded),
        PlaceOf(&B::ItemRemoved),
        PlaceOf(&B::OnBeginChanges),
        PlaceOf(&B::OnEndChanges),
        PlaceOf(&B::LibraryInvalidated),
        PlaceOf(&B::ItemNameChanged),
        PlaceOf(&B::ItemTagsChanged),
        PlaceOf(&B::ItemAccessStateChanged),
        PlaceOf(&B::OnPreCommit),
        PlaceOf(&B::OnPostCommit),
        PlaceOf(&TestBrowser::OnRenameItem),
        PlaceOf(&TestBrowser::OnDeleteItem),
        PlaceOf(&TestBrowser::OnCheckOutItem),
        PlaceOf(&TestBrowser::OnMakeItemWritable),
        PlaceOf(&TestBrowser::OnShowItemFiles),
        PlaceOf(&TestBrowser::OnEditItemTags),
        PlaceOf(&TestBrowser::OnDatasourceChange),
        PlaceOf(&TestBrowser::PopContexMenu),
    };
    for (int index = 1; index < 19; ++index)
        QVERIFY2(places[index] == places[0] + index, qPrintable(QString::number(index)));
}

#else

void TestNodeBrowser::ordersItsVirtualFunctions()
{
    QSKIP("Only one calling convention tells the order.");
}

#endif

void TestNodeBrowser::registersOnceWhateverIsAttached()
{
    TestLibrary first("A");
    TestLibrary second("B");
    {
        TestBrowser browser;
        m_Host->TakeCalls();
        browser.SetItemLibrary(first.GetAccessor());
        QStringList const attach = {"Library.AddNotification A 40 own context",
                                    "TOC.AddNotification A 39 own context"};
        QStringList const detach = {"TOC.RemoveNotification A 39 own context",
                                    "Library.RemoveNotification A 40 own context"};
        QCOMPARE(m_Host->TakeCalls(), attach);

        browser.SetItemLibrary(first.GetAccessor());
        QCOMPARE(m_Host->TakeCalls(), detach + attach);
        QCOMPARE(first.m_LibraryListeners.size(), std::size_t(1));
        QCOMPARE(first.m_TocListeners.size(), std::size_t(1));

        browser.SetItemLibrary(second.GetAccessor());
        QCOMPARE(m_Host->TakeCalls().mid(0, 2), detach);
        QVERIFY(first.m_LibraryListeners.empty() && first.m_TocListeners.empty());
        QCOMPARE(second.m_LibraryListeners.size(), std::size_t(1));
    }
    QCOMPARE(m_Host->TakeCalls(), QStringList() << "TOC.RemoveNotification B 39 own context"
                                                << "Library.RemoveNotification B 40 own context"
                                                << "DeleteMe");
    QVERIFY(second.m_LibraryListeners.empty() && second.m_TocListeners.empty());
    QCOMPARE(m_Host->m_LiveTasks, 0);
}

void TestNodeBrowser::unregistersNothingWithoutLibrary()
{
    {
        TestBrowser browser;
        m_Host->TakeCalls();
    }
    QCOMPARE(m_Host->TakeCalls(), QStringList("DeleteMe"));
}

void TestNodeBrowser::listsAtOnceAndAsksForStatesWithTheNextPaint()
{
    m_Host->AddRevisionControl();
    TestLibrary library;
    TestItem const& compound = library.Add(TarnoType::gCompound, "compound");
    library.AddObject(compound, m_Host->m_Database.AddSource("project"));
    TestBrowser browser;
    browser.SetItemLibrary(library.GetAccessor());
    QCOMPARE(browser.GetNames(), QStringList("compound"));
    QVERIFY(browser.m_VisibleItems.empty() && browser.m_ScStatesStale);
    QVERIFY(m_Host->TakeCalls().filter("RequestObjectStates").isEmpty());

    browser.Paint();
    QString const request =
        QString("RequestObjectStates [%1]").arg(ItemIDUnlock::GetItemIDUID(compound.id));
    QCOMPARE(m_Host->TakeCalls(), QStringList(request));
    QVERIFY(!browser.m_ScStatesStale);

    m_Host->TakeCount("GetItems");
    browser.Paint();
    QCOMPARE(m_Host->TakeCount("GetItems"), 0);
    QVERIFY(m_Host->TakeCalls().isEmpty());

    // Another library's states are asked for again.
    browser.SetItemLibrary(library.GetAccessor());
    QVERIFY(browser.m_ScStatesStale);
}

/// A host that closes a library under the panel leaves it with accessors that answer nothing.
void TestNodeBrowser::survivesTheEndOfItsLibrary()
{
    std::unique_ptr<TestLibrary> library(new TestLibrary);
    library->Add(TarnoType::gSolver, "add", "Math");
    TestBrowser browser;
    browser.SetItemLibrary(library->GetAccessor());
    browser.Paint();
    library.reset();
    browser.Paint();
    browser.SearchTextChange("math");
    browser.Paint();
    QTest::mouseClick(&browser, Qt::LeftButton, Qt::NoModifier, browser.GetRowCenter(0));
    QVERIFY(browser.GetSelection().IsNull());
    QVERIFY(!browser.IsSelectionType());

    TestLibrary next("B");
    next.Add(TarnoType::gSolver, "math");
    browser.SetItemLibrary(next.GetAccessor());
    QCOMPARE(browser.GetRows(), QStringList("math"));
}

void TestNodeBrowser::followsRevisionControlProperties_data()
{
    QTest::addColumn<bool>("isAvailable");
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<bool>("isVersionControlActive");
    QTest::addColumn<bool>("isShown");

    QTest::newRow("all on") << true << true << true << true;
    QTest::newRow("no property") << false << true << true << false;
    QTest::newRow("property off") << true << false << true << false;
    QTest::newRow("no version control") << true << true << false << false;
}

void TestNodeBrowser::followsRevisionControlProperties()
{
    QFETCH(bool, isAvailable);
    QFETCH(bool, isEnabled);
    QFETCH(bool, isVersionControlActive);
    m_Host->SetService("RevisionControlPropertiesMgr", &m_Host->m_Properties);
    TestBrowser early;
    m_Host->m_Properties.m_IsAvailable = isAvailable;
    m_Host->m_Properties.m_IsEnabled = isEnabled;
    m_Host->m_IsFileVersionControlActive = isVersionControlActive;
    m_Host->TakeCount("GetRevisionControlEnabled");
    m_Host->TakeCount("IsFileVersionControlActive");

    TestBrowser late;
    QTEST(late.m_SourceControlEnabled, "isShown");
    QCOMPARE(m_Host->TakeCount("GetRevisionControlEnabled"), isAvailable ? 1 : 0);
    QCOMPARE(m_Host->TakeCount("IsFileVersionControlActive"), isAvailable && isEnabled ? 1 : 0);
    m_Host->m_Properties.Notify();
    QTEST(early.m_SourceControlEnabled, "isShown");

    late.OnRevisionControlPropertiesChange(nullptr);
    QVERIFY(!late.m_SourceControlEnabled);
}

void TestNodeBrowser::disconnectsFromProperties()
{
    std::unique_ptr<TestProperties> properties(new TestProperties);
    properties->m_IsEnabled = true;
    m_Host->m_IsFileVersionControlActive = true;
    m_Host->SetService("RevisionControlPropertiesMgr", properties.get());
    std::unique_ptr<TestBrowser> browser(new TestBrowser);
    TestBrowser longLived;
    QCOMPARE(properties->GetConnectionCount(), std::size_t(2));
    browser.reset();
    QCOMPARE(properties->GetConnectionCount(), std::size_t(1));

    QVERIFY(longLived.m_SourceControlEnabled);
    properties.reset();
    m_Host->SetService("RevisionControlPropertiesMgr", nullptr);
    QVERIFY(!longLived.m_SourceControlEnabled);
}

void TestNodeBrowser::switchesSourceControl()
{
    m_Host->AddRevisionControl();
    m_Host->m_IsFileVersionControlActive = true;
    TestLibrary library;
    TestItem const& compound = library.Add(TarnoType::gCompound, "compound");
    library.AddObject(compound, m_Host->m_Database.AddSource("project"));
    TestBrowser browser;
    browser.SetItemLibrary(library.GetAccessor());
    browser.Paint();
    m_Host->TakeCalls();

    browser.SetSourceControlEnabled(true);
    browser.SetSourceControlEnabled(true);
    QVERIFY(browser.m_ScStatesStale);
    browser.Paint();
    browser.SetSourceControlEnabled(true);
    browser.Paint();
    QCOMPARE(m_Host->TakeCalls().size(), 1);
    QCOMPARE(browser.m_Items.front().m_ScState, 0x400000);

    browser.SetSourceControlEnabled(false);
    QCOMPARE(browser.m_Items.front().m_ScState, 0);
    QVERIFY(!browser.m_ScStatesStale);
}

NODEBROWSER_TEST_MAIN(TestNodeBrowser)

#include "tst_browser.moc"
