#include "itemtagsregistry.h"
#include "paneltest.h"

#include <QTest>

#include <random>

using namespace tarno::datamodel;

namespace {

char const* const kCategory = "ApplicationTags";

} // namespace

class TestItemTagsRegistry : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void readsStoredTags();
    void ignoresWhatIsNotThere();
    void forgetsTagWithItsLastItem();
    void keepsOldTagsOfItemAddedTwice();
    void staysUntouchedWhenTheLibraryThrows();
    void removesAnItemThroughItsOwnIdentifier();
    void staysSymmetric();

protected:
    void SetUp() override
    {
        PanelTest::SetUp();
        m_Library.reset(new TestLibrary);
        m_Registry.reset(new ItemTagsRegistry);
        m_Registry->SetItemLibrary(m_Library->GetAccessor());
    }

private:
    ItemID Add(std::string const& tags)
    {
        return m_Library->Add(TarnoType::gSolver, "item", tags).id;
    }

    std::unique_ptr<TestLibrary> m_Library;
    std::unique_ptr<ItemTagsRegistry> m_Registry;
};

void TestItemTagsRegistry::readsStoredTags()
{
    ItemID const id = Add(" Fast; fast ;;blur ");
    m_Registry->AddItem(id, kCategory);
    QCOMPARE(m_Registry->GetItemTags(id), (std::set<std::string>{"Fast", "blur", "fast"}));
    QVERIFY(m_Registry->HasItemTag(id, "fast"));
    QVERIFY(!m_Registry->HasItemTag(id, kCategory));

    ItemID const blank = Add(" ; ");
    m_Registry->AddItem(blank, kCategory);
    QVERIFY(m_Registry->HasItem(blank));
    QVERIFY(m_Registry->GetItemTags(blank).empty());
}

void TestItemTagsRegistry::ignoresWhatIsNotThere()
{
    ItemID const untagged = Add("");
    m_Registry->AddItem(untagged, kCategory);
    m_Registry->AddItem(Add("other"), nullptr);
    m_Registry->AddItemTag(untagged, "");
    m_Registry->RemoveItem(untagged);
    m_Registry->RemoveItemTag(untagged, "none");
    QVERIFY(!m_Registry->HasItem(untagged));
    QVERIFY(m_Registry->GetTagItems("other").empty());
    QVERIFY(m_Registry->GetTagItems("none").empty());
    QVERIFY(m_Registry->GetItemTags(ItemID()).empty());
    QVERIFY(!m_Registry->HasItemTag(untagged, "none"));

    m_Registry->AddItemTag(untagged, "kept");
    m_Registry->AddItem(untagged, kCategory);
    m_Registry->RemoveItemTag(untagged, "none");
    QCOMPARE(m_Registry->GetItemTags(untagged), std::set<std::string>{"kept"});
}

void TestItemTagsRegistry::forgetsTagWithItsLastItem()
{
    ItemID const first = Add("x");
    ItemID const second = Add("x;y");
    m_Registry->AddItem(first, kCategory);
    m_Registry->AddItem(second, kCategory);
    m_Registry->AddItemTag(first, "x");
    m_Registry->RemoveItem(first);
    QVERIFY(!m_Registry->HasItem(first));
    QCOMPARE(m_Registry->GetTagItems("x"), std::set<ItemID>{second});

    m_Registry->RemoveItemTag(second, "x");
    QVERIFY(m_Registry->HasItem(second));
    QVERIFY(m_Registry->GetTagItems("x").empty());
    m_Registry->RemoveItemTag(second, "y");
    QVERIFY(!m_Registry->HasItem(second));
}

void TestItemTagsRegistry::keepsOldTagsOfItemAddedTwice()
{
    TestItem& item = m_Library->Add(TarnoType::gSolver, "item", "a");
    m_Registry->AddItem(item.id, kCategory);
    item.tags[kCategory] = "b";
    m_Registry->AddItem(item.id, kCategory);
    QCOMPARE(m_Registry->GetItemTags(item.id), std::set<std::string>{"b"});
    QVERIFY(m_Registry->HasItemTag(item.id, "a"));
}

void TestItemTagsRegistry::staysUntouchedWhenTheLibraryThrows()
{
    TestItem& item = m_Library->Add(TarnoType::gSolver, "item", "a");
    m_Registry->AddItem(item.id, kCategory);
    item.tags[kCategory] = "b";
    m_Host->ThrowAt("GetItemTags", 1);
    QVERIFY_EXCEPTION_THROWN(m_Registry->AddItem(item.id, kCategory), HostError);
    QCOMPARE(m_Registry->GetItemTags(item.id), std::set<std::string>{"a"});
    QVERIFY(!m_Registry->HasItemTag(item.id, "b"));
}

void TestItemTagsRegistry::removesAnItemThroughItsOwnIdentifier()
{
    ItemID const id = Add("a;b;c");
    m_Registry->AddItem(id, kCategory);
    // The identifier lives in the set that the removal empties.
    m_Registry->RemoveItem(*m_Registry->GetTagItems("a").begin());
    QVERIFY(!m_Registry->HasItem(id));
    for (char const* tag : {"a", "b", "c"})
        QVERIFY2(m_Registry->GetTagItems(tag).empty(), tag);
}

/// Random changes; afterwards both directions must tell the same.
void TestItemTagsRegistry::staysSymmetric()
{
    char const* const tags[] = {"a", "b", "B", "c", "d"};
    std::mt19937 random(7);
    std::vector<TestItem*> items;
    for (int i = 0; i < 6; ++i)
        items.push_back(&m_Library->Add(TarnoType::gSolver, "item"));

    for (int step = 0; step < 500; ++step) {
        TestItem& item = *items[random() % items.size()];
        char const* const tag = tags[random() % 5];
        switch (random() % 4) {
        case 0:
            m_Registry->AddItemTag(item.id, tag);
            break;
        case 1:
            m_Registry->RemoveItemTag(item.id, tag);
            break;
        case 2:
            m_Registry->RemoveItem(item.id);
            break;
        default:
            item.tags[kCategory] = std::string(tag) + ";" + tags[random() % 5];
            m_Registry->RemoveItem(item.id);
            m_Registry->AddItem(item.id, kCategory);
        }
        for (TestItem const* other : items) {
            for (char const* each : tags)
                QCOMPARE(m_Registry->GetTagItems(each).count(other->id),
                         m_Registry->GetItemTags(other->id).count(each));
            QCOMPARE(m_Registry->HasItem(other->id), !m_Registry->GetItemTags(other->id).empty());
        }
    }
    m_Registry->Clear();
    for (char const* tag : tags)
        QVERIFY2(m_Registry->GetTagItems(tag).empty(), tag);
}

NODEBROWSER_TEST_MAIN(TestItemTagsRegistry)

#include "tst_itemtagsregistry.moc"
