#include "browsertest.h"
#include "searchreference.h"
#include "stringutils.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>

#include <algorithm>

using namespace tarno::datamodel;

class TestFilter : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheKindsOfTheFilter_data();
    void showsTheKindsOfTheFilter();
    void ranksMatches();
    void ranksAsItemByItem();
    void leavesTheRestAloneWithoutTableOfContents();
    void refiltersWithTheNextPaintOnly();
    void clearsTheSearch();
    void confirmsWithEnter();
    void keepsTheSelectedPosition();
};

namespace {

/// One item of each kind, named after it.
void AddOneOfEach(TestLibrary& library)
{
    library.Add(TarnoType::gSolver, "solver");
    library.Add(TarnoType::gPolymorphicSolver, "polymorphic");
    library.Add(TarnoType::gCompound, "compound");
    library.Add(TarnoType::gCompound, "signature").isAbstract = true;
    library.Add(TarnoType::gGlobalConstant, "constant");
    library.Add(LibType::gType, "type");
}

} // namespace

void TestFilter::showsTheKindsOfTheFilter_data()
{
    QTest::addColumn<int>("filter");
    QTest::addColumn<QString>("rows");

    QTest::newRow("nodes") << 0 << "compound polymorphic solver";
    QTest::newRow("types") << 1 << "type";
    QTest::newRow("all") << 2 << "compound constant polymorphic signature solver type";
    QTest::newRow("signatures") << 3 << "signature";
    QTest::newRow("constants") << 4 << "constant";
    QTest::newRow("unknown") << 5 << "";
    QTest::newRow("far out") << 64 << "";
    QTest::newRow("negative") << -1 << "";
}

void TestFilter::showsTheKindsOfTheFilter()
{
    QFETCH(int, filter);
    AddOneOfEach(*m_Library);
    TestBrowser browser;
    browser.SetItemLibrary(m_Library->GetAccessor());
    browser.TabChanged(filter);
    QTEST(browser.GetRows().join(" "), "rows");
    for (TestItem const* item : m_Library->m_Listed) {
        ItemAccessor accessor = m_Library->GetAccessor(*item);
        unsigned long score = 7;
        bool const isShown = browser.CompareToFilter(accessor, &score);
        QCOMPARE(isShown, browser.GetRows().contains(QString::fromStdString(item->name)));
        QCOMPARE(score, isShown ? 0ul : 7ul);
    }
}

void TestFilter::ranksMatches()
{
    m_Library->Add(TarnoType::gSolver, "sum", "Math-Add");
    m_Library->Add(TarnoType::gSolver, "fastadd");
    m_Library->Add(TarnoType::gSolver, "zadd");
    m_Library->Add(TarnoType::gSolver, "Add");
    m_Library->Add(TarnoType::gSolver, "other", "Math");
    TestBrowser browser;
    browser.SetItemLibrary(m_Library->GetAccessor());
    QCOMPARE(browser.GetRows(), browser.GetNames());
    browser.SearchTextChange("aDd");
    QCOMPARE(browser.GetRows().join(" "), QString("Add fastadd zadd sum"));
    QCOMPARE(browser.m_ContentHeight, 4 * 24);
    // Every node carries the tag of its kind.
    browser.SearchTextChange("\tNODE ");
    QCOMPARE(browser.GetRows(), browser.GetNames());
    browser.SearchTextChange(" \t ");
    QCOMPARE(browser.GetRows(), browser.GetNames());
    browser.SearchTextChange("nothing like it");
    QCOMPARE(browser.GetRows(), QStringList());
}

/// Random libraries, searched and re-tagged, against the plain way of scoring.
void TestFilter::ranksAsItemByItem()
{
    char const* const kinds[] = {TarnoType::gSolver, TarnoType::gCompound, LibType::gType};
    char const* const kindTags[] = {"node", "node", "type"};
    RandomTexts random(2);
    std::vector<std::size_t> kindOf;
    for (std::size_t i = 0; i < 120; ++i) {
        kindOf.push_back(random.Number(3));
        m_Library->Add(kinds[kindOf[i]], random.Text(6), random.Tags());
    }
    TestBrowser browser;
    browser.SetItemLibrary(m_Library->GetAccessor());
    browser.TabChanged(CNodeBrowser::eConfigAll);
    browser.Paint();

    for (int search = 0; search < 60; ++search) {
        TestItem& changed = *m_Library->m_Listed[random.Number(120)];
        changed.tags["ApplicationTags"] = random.Tags();
        m_Library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
            listener.ItemTagsChanged(library, changed.id, "ApplicationTags");
        });
        std::string const text = random.SearchText() + (search % 9 == 0 ? "od" : "");
        browser.SearchTextChange(QString::fromLatin1(text.c_str()));
        browser.Paint();

        std::vector<std::pair<unsigned long, unsigned long>> expected;
        for (std::size_t position = 0; position < browser.m_Items.size(); ++position) {
            ItemAccessor accessor = browser.m_Items[position].m_Accessor;
            TestItem const& item = *m_Library->Find(accessor.GetItemID());
            std::set<std::string> tags;
            if (item.tags.count("ApplicationTags"))
                SplitString(item.tags.at("ApplicationTags"), ";", tags);
            std::size_t const kind = std::find(kinds, kinds + 3, item.kind) - kinds;
            tags.insert(kindTags[kind]);
            unsigned long const score = ReferenceScore(item.name, tags, text);
            unsigned long single = 10000;
            QCOMPARE(browser.CompareToFilter(accessor, &single), score != 10000);
            QCOMPARE(single, score);
            if (score != 10000)
                expected.push_back(std::make_pair(score, position));
        }
        std::sort(expected.begin(), expected.end());
        std::vector<unsigned long> positions;
        for (auto const& match : expected)
            positions.push_back(match.second);
        QVERIFY2(browser.m_VisibleItems == positions, text.c_str());
    }
}

void TestFilter::leavesTheRestAloneWithoutTableOfContents()
{
    AddOneOfEach(*m_Library);
    TestBrowser browser;
    browser.SetItemLibrary(m_Library->GetAccessor());
    browser.Paint();
    int const height = browser.m_ContentHeight;
    QCOMPARE(height, 3 * 24);

    TestLibrary empty("B");
    empty.m_HasTOC = false;
    browser.SetItemLibrary(empty.GetAccessor());
    QVERIFY(browser.m_VisibleListDirty && browser.m_Items.empty());
    QVERIFY(browser.GetRows().isEmpty() && !browser.m_VisibleListDirty);
    QCOMPARE(browser.m_ContentHeight, height);
}

void TestFilter::refiltersWithTheNextPaintOnly()
{
    AddOneOfEach(*m_Library);
    TestBrowser browser;
    browser.SetItemLibrary(m_Library->GetAccessor());
    browser.Paint();
    m_Host->TakeCount("GetItems");

    QTest::keyClicks(browser.m_SearchEdit, "COm");
    QCOMPARE(browser.m_SearchText, QString("COm"));
    QCOMPARE(browser.m_SearchTextLower, QString("com"));
    QVERIFY(browser.m_VisibleListDirty);
    QCOMPARE(browser.m_VisibleItems.size(), std::size_t(3));
    QCOMPARE(browser.GetRows(), QStringList("compound"));

    browser.m_SearchEdit->clear();
    QTest::mouseClick(browser.m_TabBar, Qt::LeftButton, Qt::NoModifier,
                      browser.m_TabBar->tabRect(1).center());
    QCOMPARE(int(browser.m_ConfigType), 1);
    QCOMPARE(browser.GetRows(), QStringList("type"));
    QTest::mouseClick(browser.m_TabBar, Qt::LeftButton, Qt::NoModifier,
                      browser.m_TabBar->tabRect(2).center());
    QCOMPARE(browser.GetRows().size(), 6);
    // Nothing of this asks the host for its items.
    QCOMPARE(m_Host->TakeCount("GetItems"), 0);
}

void TestFilter::clearsTheSearch()
{
    AddOneOfEach(*m_Library);
    TestBrowser browser;
    browser.SetItemLibrary(m_Library->GetAccessor());
    QTest::keyClicks(browser.m_SearchEdit, "solver");
    QCOMPARE(browser.GetRows(), QStringList("solver"));
    QTest::mouseClick(browser.m_ClearButton, Qt::LeftButton);
    QCOMPARE(browser.m_SearchText, QString());
    QCOMPARE(browser.GetRows().size(), 3);
}

void TestFilter::confirmsWithEnter()
{
    AddOneOfEach(*m_Library);
    TestBrowser browser;
    QSignalSpy confirmed(&browser, SIGNAL(SelectionChanged()));
    QTest::keyClick(browser.m_SearchEdit, Qt::Key_Return);
    QCOMPARE(confirmed.count(), 1);
    QCOMPARE(browser.m_SelectedIndex, 0ul);
    QVERIFY(browser.GetSelection().IsNull());

    browser.SetItemLibrary(m_Library->GetAccessor());
    browser.Paint();
    browser.m_SelectedIndex = 2;
    QTest::keyClick(browser.m_SearchEdit, Qt::Key_Return);
    QCOMPARE(browser.m_SelectedIndex, 2ul);
    browser.m_SelectedIndex = 3;
    QTest::keyClick(browser.m_SearchEdit, Qt::Key_Return);
    QCOMPARE(browser.m_SelectedIndex, 0ul);
    QCOMPARE(confirmed.count(), 3);
    QVERIFY(browser.GetSelection() == (*m_Library)["compound"].id);

    // No paint has come between the text and Enter.
    QTest::keyClicks(browser.m_SearchEdit, "sol");
    QTest::keyClick(browser.m_SearchEdit, Qt::Key_Return);
    QVERIFY(browser.GetSelection() == (*m_Library)["solver"].id);
    QVERIFY(!browser.m_VisibleListDirty);
    // A rebuild of the items waits for the paint, and the rows wait with it.
    browser.LibraryInvalidated(browser.m_ItemLibrary);
    QTest::keyClicks(browser.m_SearchEdit, "nothing");
    QTest::keyClick(browser.m_SearchEdit, Qt::Key_Return);
    QVERIFY(browser.m_VisibleListDirty);
    QVERIFY(browser.GetSelection() == (*m_Library)["solver"].id);
}

void TestFilter::keepsTheSelectedPosition()
{
    AddOneOfEach(*m_Library);
    TestBrowser browser;
    browser.SetItemLibrary(m_Library->GetAccessor());
    browser.Paint();
    browser.m_SelectedIndex = 1;
    browser.SearchTextChange("so");
    browser.Paint();
    QCOMPARE(browser.m_SelectedIndex, 1ul);
    QVERIFY(browser.GetSelection().IsNull());
    browser.SearchTextChange("");
    browser.Paint();
    QVERIFY(browser.GetSelection() == (*m_Library)["polymorphic"].id);
}

NODEBROWSER_TEST_MAIN(TestFilter)

#include "tst_filter.moc"
