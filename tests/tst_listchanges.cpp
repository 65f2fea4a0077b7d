#include "browsertest.h"
#include "testtable.h"

#include <random>

using namespace tarno::datamodel;

typedef CNodeBrowser::Item Item;
typedef std::list<qorm::QormHandle<qorm::IDbObject>> StateRequests;

namespace {

/// Changes two libraries at random, as their host's users do.
class RandomChanges
{
public:
    explicit RandomChanges(unsigned int seed)
        : m_Engine(seed)
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

    std::size_t Number(std::size_t below)
    {
        return m_Engine() % below;
    }

    /// A few letters, so that texts match each other often: with a blank, a letter outside ASCII
    /// in both cases, and what is special elsewhere.
    std::string Text(std::size_t maximum)
    {
        std::string const letters = "aabbcABC_* ;\xE4\xC4";
        std::string text(Number(maximum + 1), ' ');
        for (char& letter : text)
            letter = letters[Number(letters.size())];
        return text;
    }

    void ChangeOne(TestBrowser& browser);

    /// Of all items that ever were.
    std::set<ItemID> m_IDs;

private:
    void Add()
    {
        char const* const kinds[] = {TarnoType::gSolver, TarnoType::gCompound, LibType::gType};
        TestItem& item = GetLibrary().Add(kinds[Number(3)], Text(3), Text(8));
        GetLibrary().AddObject(item, m_Sources[Number(2)]);
        m_IDs.insert(item.id);
    }

    std::mt19937 m_Engine;
    TestDataSource* m_Sources[2];
    std::unique_ptr<TestLibrary> m_Libraries[2];
    std::size_t m_Shown = 0;
};

void RandomChanges::ChangeOne(TestBrowser& browser)
{
    std::vector<TestItem*>& listed = GetLibrary().m_Listed;
    if (listed.empty())
        return Add();
    TestItem*& item = listed[Number(listed.size())];
    ItemLibraryAccessor library = GetLibrary().GetAccessor();
    std::string& tags = item->tags["ApplicationTags"];
    std::function<void()> const changes[] = {
        [&] { Add(); },
        [&] { GetLibrary().Remove(*item); },
        [&] { item->name = Text(3); },
        [&] { tags = Text(8); },
        [&] { item->hasParent = !item->hasParent; },
        [&] { item->isAbstract = !item->isAbstract; },
        [&] { m_Sources[0]->m_AccessMode ^= 1; },
        [&] { std::swap(item, listed[Number(listed.size())]); },
        // It stands in the table of contents twice then.
        [&] { listed.push_back(item); },
        [&] { listed.erase(std::find(listed.begin(), listed.end(), item)); },
        // As a subclass may do.
        [&] { browser.m_TagsRegistry.AddItemTag(item->id, "own"); },
        [&] { browser.SetSourceControlEnabled(!browser.m_SourceControlEnabled); },
        [&] { browser.ItemAccessStateChanged(library, item->id, long(Number(3))); },
        [&] {
            tags = Text(8);
            browser.ItemTagsChanged(library, item->id, "ApplicationTags");
        },
        // Rarely: it takes a while until there is something to compare again.
        [&] {
            if (Number(10) > 0)
                return;
            m_Shown = 1 - m_Shown;
            browser.SetItemLibrary(GetLibrary().GetAccessor());
        },
    };
    changes[Number(std::size(changes))]();
}

QString Describe(Item const& item, TestBrowser const& browser)
{
    QImage const icon = item.m_DisplayIcon.toImage();
    QStringList facts{browser.GetName(item), QString::fromStdString(item.GetItemID().Serialize())};
    for (int const fact : {item.m_ScState, int(item.m_HasScState), int(item.m_IsFactory),
                           int(item.m_IsReadOnlySource), icon.width(),
                           icon.isNull() ? 0 : int(icon.pixel(icon.width() - 1, 0))})
        facts << QString::number(fact, 16);
    return facts.join(',');
}

/// The rows, each with what the single question about its item says, which must put it there.
QString DescribeSearch(TestBrowser& browser)
{
    std::vector<std::pair<unsigned long, unsigned long>> expected;
    for (unsigned long position = 0; position < browser.m_Items.size(); ++position) {
        unsigned long score = 0;
        if (browser.CompareToFilter(browser.m_Items[position].m_Accessor, &score))
            expected.emplace_back(score, position);
    }
    std::sort(expected.begin(), expected.end());
    QString text;
    for (auto const& match : expected)
        text += QString(" %1").arg(match.second);
    QString rows;
    for (unsigned long const position : browser.m_VisibleItems)
        rows += QString(" %1").arg(position);
    return rows == text ? rows : rows + " instead of " + text;
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
        lines << QString::fromLatin1(tag.c_str()) + ":";
        for (ItemID const& id : registry.GetTagItems(tag.c_str()))
            lines.last() += " " + QString::fromStdString(id.Serialize());
    }
    for (QString const& search : searches) {
        browser.SearchTextChange(search);
        browser.UpdateVisibleItems();
        lines << "'" + search + "'" + DescribeSearch(browser);
    }
    return lines.join('\n');
}

} // namespace

/// The item list after any changes of the library, and after failures of the host.
class TestListChanges : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void keepsUpAsMadeAnew_data()
    {
        AddColumns<QByteArray>("failing");
        AddRow("whole", QByteArray());
        for (char const* operation : {"GetItems", "IsValidGraphItemType", "GetValue", "GetItemTags",
                                      "GetItemName", "IsAbstractFunction", "FindObject",
                                      "GetAccessMode", "getAssetStateIcon", "Revalidate"})
            AddRow(operation, QByteArray(operation));
    }

    /// A list that is brought up to changes is the one that is made from nothing, whether or not
    /// the host failed while it was made; a panel with half a list can be used.
    void keepsUpAsMadeAnew()
    {
        QFETCH(QByteArray, failing);
        m_Host->AddRevisionControl();
        m_Host->m_IsFileVersionControlActive = true;
        RandomChanges changes(unsigned(failing.size()));
        m_Browser.reset(new TestBrowser);
        m_Browser->SetItemLibrary(changes.GetLibrary().GetAccessor());
        for (int round = 0; round < (failing.isEmpty() ? 600 : 100); ++round) {
            for (std::size_t count = changes.Number(3) + 1; count > 0; --count)
                changes.ChangeOne(*m_Browser);
            StateRequests requests;
            StateRequests expected;
            bool const asksForStates = changes.Number(2) == 0;
            int const call = failing.isEmpty() ? 1000000 : int(changes.Number(40)) + 1;
            auto const build = [&](TestBrowser& browser, StateRequests& into) {
                m_Host->ThrowAt(failing, call);
                try {
                    browser.BuildAllItemList(asksForStates ? &into : nullptr);
                } catch (HostError const&) {
                }
                m_Host->ThrowAt(failing, 1000000);
            };
            build(*m_Browser, requests);
            if (!failing.isEmpty() && round % 2 == 0) {
                m_Browser->Paint();
                for (std::size_t row = 0; row < m_Browser->m_VisibleItems.size(); ++row) {
                    m_Browser->m_SelectedIndex = row;
                    bool const isThere = m_Browser->m_VisibleItems[row] < m_Browser->m_Items.size();
                    QCOMPARE(m_Browser->GetSelection().IsNull(), !isThere);
                }
                continue;
            }

            TestBrowser anew;
            anew.SetSourceControlEnabled(m_Browser->m_SourceControlEnabled);
            anew.m_ItemLibrary = changes.GetLibrary().GetAccessor();
            anew.m_ItemTOC = GetTOC(anew.m_ItemLibrary);
            anew.m_TagsRegistry.SetItemLibrary(anew.m_ItemLibrary);
            build(anew, expected);
            QString const text =
                QString::fromLatin1((changes.Text(4) + " " + changes.Text(6)).c_str());
            // As it is typed, so that each search may build on the one before.
            QStringList const searches{"", text.left(1), text.left(2), text};
            QCOMPARE(Describe(*m_Browser, changes.m_IDs, searches),
                     Describe(anew, changes.m_IDs, searches));
            QVERIFY(std::equal(requests.begin(), requests.end(), expected.begin(), expected.end(),
                               [](auto const& left, auto const& right) {
                                   return left.GetCacheIndex() == right.GetCacheIndex();
                               }));
            // Unregisters what was never registered otherwise.
            anew.m_ItemLibrary = ItemLibraryAccessor();
            anew.m_ItemTOC = ItemTOCAccessor();
        }
        m_Browser.reset();
    }
};

NODEBROWSER_TEST(TestListChanges)

#include "tst_listchanges.moc"
