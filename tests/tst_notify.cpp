#include "browsertest.h"

#include <QTest>

using namespace tarno::datamodel;

class TestNotify : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void rebuildsWithTheNextPaint_data();
    void rebuildsWithTheNextPaint();
    void ignoresTransactions();
    void indexesChangedTags_data();
    void indexesChangedTags();
    void ignoresTagsOfOthers();
    void findsNewTagsWithTheNextFiltering();
    void takesStateOfTheFirstItem();
    void redrawsForAnotherState();

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Library->Add(TarnoType::gSolver, "first", "Old");
        m_Library->Add(TarnoType::gSolver, "second");
        m_Browser.reset(new TestBrowser);
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_Browser.get()));
        m_Browser->Paint();
    }

private:
    void TellTagsChanged(TestItem const& item, char const* category)
    {
        m_Library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
            listener.ItemTagsChanged(library, item.id, category);
        });
    }

    void TellState(ItemID const& id, long state)
    {
        m_Library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
            listener.ItemAccessStateChanged(library, id, state);
        });
    }

    std::set<std::string> TagsOf(char const* name)
    {
        return m_Browser->m_TagsRegistry.GetItemTags((*m_Library)[name].id);
    }
};

void TestNotify::rebuildsWithTheNextPaint_data()
{
    QTest::addColumn<int>("notification");
    QTest::newRow("added") << 0;
    QTest::newRow("removed") << 1;
    QTest::newRow("renamed") << 2;
    QTest::newRow("invalidated") << 3;
}

void TestNotify::rebuildsWithTheNextPaint()
{
    QFETCH(int, notification);
    TestItem& item = (*m_Library)["first"];
    ItemAccessor accessor = m_Library->GetAccessor(item);
    item.name = "zero";
    m_Library->TellToc([&](IItemTOCNotification& listener) {
        if (notification == 0)
            listener.ItemAdded(accessor);
        if (notification == 1)
            listener.ItemRemoved(accessor);
    });
    m_Library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        if (notification == 2)
            listener.ItemNameChanged(library, item.id);
        if (notification == 3)
            listener.LibraryInvalidated(library);
    });
    QVERIFY(m_Browser->m_ItemListDirty && !m_Browser->m_ScStatesStale);
    QCOMPARE(m_Browser->GetNames().join(" "), QString("zero second"));
    // The paint comes by itself.
    QTRY_VERIFY(!m_Browser->m_ItemListDirty);
    QCOMPARE(m_Browser->GetNames().join(" "), QString("second zero"));
}

void TestNotify::ignoresTransactions()
{
    bool cancel = true;
    m_Host->TakeCalls();
    m_Library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.OnBeginChanges(library);
        listener.OnEndChanges(library);
        listener.OnPreCommit(library, &cancel);
        listener.OnPreCommit(library, nullptr);
        listener.OnPostCommit(library);
    });
    QVERIFY(cancel);
    QVERIFY(!m_Browser->m_ItemListDirty && !m_Browser->m_VisibleListDirty);
    QVERIFY(m_Host->TakeCalls().isEmpty());
}

void TestNotify::indexesChangedTags_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("tag");
    QTest::newRow("polymorphic solver") << 0 << "node";
    QTest::newRow("solver") << 1 << "node";
    QTest::newRow("compound") << 2 << "node";
    QTest::newRow("constant") << 3 << "constant";
    QTest::newRow("type") << 4 << "type";
}

void TestNotify::indexesChangedTags()
{
    QFETCH(int, kind);
    QFETCH(QString, tag);
    char const* const kinds[] = {TarnoType::gPolymorphicSolver, TarnoType::gSolver,
                                 TarnoType::gCompound, TarnoType::gGlobalConstant, LibType::gType};
    TestItem& item = m_Library->Add(kinds[kind], "item", "Old;Kept");
    m_Browser->BuildAllItemList(nullptr);

    item.tags["ApplicationTags"] = "New;Kept";
    TellTagsChanged(item, "ApplicationTags");
    QCOMPARE(TagsOf("item"), (std::set<std::string>{"New", "Kept", tag.toStdString()}));
    QVERIFY(!m_Browser->m_TagsRegistry.HasItemTag(item.id, "Old"));
    item.tags.clear();
    TellTagsChanged(item, "ApplicationTags");
    QCOMPARE(TagsOf("item"), std::set<std::string>{tag.toStdString()});
}

void TestNotify::ignoresTagsOfOthers()
{
    TestItem& item = (*m_Library)["first"];
    item.tags["ApplicationTags"] = "New";
    for (char const* category : {"applicationtags", "ApplicationTagsX", ""})
        TellTagsChanged(item, category);
    QCOMPARE(TagsOf("first"), (std::set<std::string>{"Old", "node"}));

    TestItem const& unlisted = m_Library->Add(TarnoType::gSolver, "unlisted", "New");
    TellTagsChanged(unlisted, "ApplicationTags");
    QVERIFY(!m_Browser->m_TagsRegistry.HasItem(unlisted.id));
}

void TestNotify::findsNewTagsWithTheNextFiltering()
{
    m_Browser->SearchTextChange("old");
    QCOMPARE(m_Browser->GetRows(), QStringList("first"));
    (*m_Library)["first"].tags.clear();
    (*m_Library)["second"].tags["ApplicationTags"] = "very old";
    TellTagsChanged((*m_Library)["first"], "ApplicationTags");
    TellTagsChanged((*m_Library)["second"], "ApplicationTags");
    QVERIFY(!m_Browser->m_ItemListDirty && !m_Browser->m_VisibleListDirty);
    QCOMPARE(m_Browser->GetRows(), QStringList("first"));
    m_Browser->SearchTextChange("old");
    QCOMPARE(m_Browser->GetRows(), QStringList("second"));
}

void TestNotify::takesStateOfTheFirstItem()
{
    m_Library->Add(TarnoType::gSolver, "").id = ItemID();
    m_Library->m_Listed.push_back(&(*m_Library)["first"]);
    m_Browser->BuildAllItemList(nullptr);
    auto const states = [this] {
        QList<int> numbers;
        for (CNodeBrowser::Item const& item : m_Browser->m_Items)
            numbers << item.m_ScState;
        return numbers;
    };
    TellState(ItemID(), 7);
    QCOMPARE(states(), (QList<int>{7, 0, 0, 0}));
    TellState((*m_Library)["first"].id, 5);
    TellState((*m_Library)["second"].id, 0x1000000FFL);
    TellState(m_Library->Add(TarnoType::gSolver, "unlisted").id, 9);
    QCOMPARE(states(), (QList<int>{7, 5, 0, 0xFF}));

    // The positions follow the next list.
    (*m_Library)["second"].name = "a";
    m_Browser->BuildAllItemList(nullptr);
    TellState((*m_Library)["a"].id, 3);
    QCOMPARE(states(), (QList<int>{0, 3, 0, 0, 0}));
}

void TestNotify::redrawsForAnotherState()
{
    m_Host->m_IsFileVersionControlActive = true;
    m_Browser->m_SourceControlEnabled = true;
    m_Browser->BuildAllItemList(nullptr);
    TellState((*m_Library)["first"].id, 0x00FF00);
    QImage const image = m_Browser->Paint();
    QCOMPARE(QColor(image.pixel(12, m_Browser->GetRowCenter(0).y())), QColor(Qt::green));
    QVERIFY(QColor(image.pixel(12, m_Browser->GetRowCenter(1).y())) != QColor(Qt::green));
}

NODEBROWSER_TEST_MAIN(TestNotify)

#include "tst_notify.moc"
