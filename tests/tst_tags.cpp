#include "browsertest.h"
#include "itemtagsregistry.h"
#include "stringutils.h"

#include <boost/algorithm/string/join.hpp>

using namespace tarno::datamodel;

namespace {

char const* const kCategory = "ApplicationTags";

} // namespace

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
        QCOMPARE(boost::algorithm::join(words, "|"), std::string("+|a|b|bar;x|c d|e;f|foo"));
        QCOMPARE(QStringToStdString("ab" + QString(QChar(0)) + "c"), std::string("ab"));
    }

    void keepsBothDirections()
    {
        std::pair<char const*, char const*> const rows[] = {
            {"A= x; my tag ;;X |A!", "A:X,my tag,x X=A my tag=A x=A"},
            {"A=\v\f\r x\t;\n y \f|A!", "A:x,y x=A y=A"},
            {"A= ; |A!", "A:"},
            {"B!|A+x|A!", "A:x x=A"},
            {"A+", ""},
            {"A+x|A+x|A-x", ""},
            {"A+x|A+y|A-x", "A:y y=A"},
            {"A+x|B+x|A-x", "B:x x=B"},
            {"A+x|A+y|B+x|A.", "B:x x=B"},
            {"A+x|A-y|B-x|B.", "A:x x=A"},
            // Whoever reads an item again removes it first.
            {"A=x|A!|A=y|A!", "A:y x=A y=A"}};
        for (auto const& [steps, state] : rows) {
            SetUp();
            Do(steps);
            m_Registry.AddItem((*m_Library)["C"].id, nullptr);
            QCOMPARE(steps + Describe(), QString(steps) + state);
            m_Registry.Clear();
            QCOMPARE(Describe(), QString());
        }
    }

    void removesAnItemThroughItsOwnIdentifier()
    {
        Do("A+X|A+x|A+y");
        // The identifier lives in the set that the removal empties.
        m_Registry.RemoveItem(*m_Registry.GetTagItems("X").begin());
        QCOMPARE(Describe(), QString());
    }

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        for (char const* name : {"A", "B", "C"})
            m_Library->Add(TarnoType::gSolver, name, *name == 'C' ? "x" : "");
        m_Registry.Clear();
        m_Registry.SetItemLibrary(m_Library->GetAccessor());
    }

private:
    /// Steps on items: "A=x;y" stores tags in the library, "A!" has the registry read them,
    /// "A+x" and "A-x" add and remove one, "A." removes the item.
    void Do(QString const& steps)
    {
        for (QString const& step : steps.split('|')) {
            TestItem& item = (*m_Library)[step.left(1).toStdString()];
            std::string const argument = step.mid(2).toStdString();
            if (step[1] == '=')
                item.tags[kCategory] = argument;
            else if (step[1] == '!')
                m_Registry.AddItem(item.id, kCategory);
            else if (step[1] == '+')
                m_Registry.AddItemTag(item.id, argument.c_str());
            else if (step[1] == '-')
                m_Registry.RemoveItemTag(item.id, argument.c_str());
            else
                m_Registry.RemoveItem(item.id);
        }
    }

    /// "A:x,y" for an item that is registered, then "x=AB" for a tag with items.
    QString Describe() const
    {
        QStringList facts;
        for (TestItem const* item : m_Library->m_Listed) {
            std::string const tags = boost::algorithm::join(m_Registry.GetItemTags(item->id), ",");
            if (m_Registry.HasItem(item->id) || !tags.empty())
                facts << QString::fromStdString(item->name + ":" + tags);
        }
        for (std::string const tag : {"", "X", "my tag", "x", "y", kCategory}) {
            std::string items;
            for (ItemID const& id : m_Registry.GetTagItems(tag.c_str()))
                items += m_Library->Find(id)->name;
            if (!items.empty())
                facts << QString::fromStdString(tag + "=" + items);
        }
        return facts.join(' ');
    }

    ItemTagsRegistry m_Registry;
};

NODEBROWSER_TEST(TestTags)

#include "tst_tags.moc"
