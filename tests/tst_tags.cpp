#include "browsertest.h"
#include "itemtagsregistry.h"
#include "stringutils.h"

using namespace tarno::datamodel;

/// Texts that are split into words or tags, and the registry of tags and items.
class TestTags : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void splitsAtAnyDelimiter()
    {
        // What is in the set before stays there.
        std::set<std::string> words = {"+"};
        SplitString(" \vfoo \t bar;x\nfoo\r \f", words);
        SplitString("a,b;c d", ",;", words);
        SplitString(" e;f ", "", words);
        QCOMPARE(words, (std::set<std::string>{"+", "a", "b", "bar;x", "c d", "e;f", "foo"}));
        QCOMPARE(QStringToStdString("ab" + QString(QChar(0)) + "c"), std::string("ab"));
    }

    void keepsBothDirections()
    {
        char const* const category = "ApplicationTags";
        ItemTagsRegistry registry;
        registry.SetItemLibrary(m_Library->GetAccessor());
        TestItem& item = m_Library->Add(TarnoType::gSolver, "a", " my tag ;;X; ");
        ItemID const other = m_Library->Add(TarnoType::gSolver, "b", " ; ").id;
        registry.AddItem(item.id, category);
        registry.AddItem(other, category);
        QCOMPARE(registry.GetItemTags(item.id), (std::set<std::string>{"X", "my tag"}));
        QVERIFY(registry.HasItem(other) && registry.GetTagItems("x").empty());
        registry.AddItemTag(other, "X");
        registry.RemoveItemTag(item.id, "my tag");
        QCOMPARE(registry.GetTagItems("X"), (std::set<ItemID>{item.id, other}));
        QVERIFY(registry.GetTagItems("my tag").empty());
        // Without its last tag an item is not registered.
        registry.RemoveItemTag(other, "X");
        QVERIFY(!registry.HasItem(other));
        // Whoever reads an item again removes it first.
        item.tags[category] = "y";
        registry.AddItem(item.id, category);
        QCOMPARE(registry.GetItemTags(item.id), std::set<std::string>{"y"});
        QVERIFY(!registry.GetTagItems("X").empty() && !registry.GetTagItems("y").empty());
        // The identifier lives in the set that the removal empties.
        registry.RemoveItem(*registry.GetTagItems("y").begin());
        QVERIFY(!registry.HasItem(item.id) && registry.GetTagItems("y").empty());
        registry.Clear();
        QVERIFY(registry.GetTagItems("X").empty());
    }
};

NODEBROWSER_TEST(TestTags)

#include "tst_tags.moc"
