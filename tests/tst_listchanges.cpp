#include "browsertest.h"
#include "testtable.h"

#include <random>

using namespace tarno::datamodel;

typedef std::list<qorm::QormHandle<qorm::IDbObject>> StateRequests;

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
        m_IDs.clear();
        m_Other.reset(new TestLibrary("B"));
        m_Engine.seed(unsigned(failing.size()));
        m_Host->AddRevisionControl();
        m_Host->m_IsFileVersionControlActive = true;
        for (std::size_t i = 0; i < 2; ++i)
            m_Sources[i] = m_Host->m_Database.AddSource("", int(i));
        for (int item = 0; item < 30; ++item)
            AddItem();
        MakeBrowser();
        m_Browser->TabChanged(CNodeBrowser::eConfigNodes);
        for (int round = 0; round < (failing.isEmpty() ? 600 : 100); ++round) {
            for (std::size_t count = Number(3) + 1; count > 0; --count)
                ChangeOne();
            bool const asksForStates = Number(2) == 0;
            int const call = failing.isEmpty() ? 1000000 : int(Number(40)) + 1;
            auto const build = [&](TestBrowser& browser) {
                StateRequests requests;
                m_Host->ThrowAt(failing, call);
                try {
                    browser.BuildAllItemList(asksForStates ? &requests : nullptr);
                } catch (HostError const&) {
                }
                m_Host->ThrowAt(failing, 1000000);
                QString text;
                for (auto const& request : requests)
                    text += TextOf(request) + ' ';
                return text;
            };
            QString const requests = build(*m_Browser);
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
            anew.m_ItemLibrary = m_Library->GetAccessor();
            anew.m_ItemTOC = GetTOC(anew.m_ItemLibrary);
            anew.m_TagsRegistry.SetItemLibrary(anew.m_ItemLibrary);
            QCOMPARE(requests, build(anew));
            // As it is typed, so that each search may build on the one before.
            QString const text = QString::fromLatin1((Text(4) + " " + Text(6)).c_str());
            QStringList const searches{"", text.left(1), text.left(2), text};
            QCOMPARE(Describe(*m_Browser, searches), Describe(anew, searches));
            // Unregisters what was never registered otherwise.
            anew.m_ItemLibrary = ItemLibraryAccessor();
            anew.m_ItemTOC = ItemTOCAccessor();
        }
    }

    /// The host should not notify while it is asked, but its notifications then count.
    void losesNothingToldMeanwhile()
    {
        TestItem& item = m_Library->Add(TarnoType::gCompound, "a");
        MakeBrowser();
        int state = 0;
        int call = 0;
        do {
            item.tags["ApplicationTags"] = "asked";
            m_Host->RunAt(++call, [&] {
                item.tags["ApplicationTags"] = "told";
                TellTags(item.id);
                TellState(item.id, 5);
            });
            m_Browser->BuildAllItemList(nullptr);
            if (m_Host->HasRun())
                state = m_Browser->m_Items[0].m_ScState;
            m_Browser->Paint();
            QVERIFY(m_Browser->m_TagsRegistry.HasItemTag(item.id, "told") == m_Host->HasRun());
        } while (m_Host->HasRun());
        m_Host->RunAt(0, nullptr);
        // Told when the item was made already.
        QCOMPARE(state, 5);
    }

    /// An item that the table of contents lists twice has the tags of the second time.
    void keepsTheLastAnswerOfTwo()
    {
        TestItem& item = m_Library->Add(TarnoType::gSolver, "a", "first");
        m_Library->m_Listed.push_back(&item);
        MakeBrowser();
        for (int call = 1; m_Host->HasRun(); ++call) {
            item.tags["ApplicationTags"] = "first";
            m_Host->RunAt(call, [&] { item.tags["ApplicationTags"] = "second"; });
            m_Browser->BuildAllItemList(nullptr);
            QCOMPARE(m_Browser->m_TagsRegistry.GetItemTags(item.id).size(), std::size_t(2));
        }
        m_Host->RunAt(0, nullptr);
    }

private:
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

    void AddItem()
    {
        char const* const kinds[] = {TarnoType::gSolver, TarnoType::gCompound, LibType::gType};
        TestItem& item = m_Library->Add(kinds[Number(3)], Text(3), Text(8));
        m_Library->AddObject(item, m_Sources[Number(2)]);
        m_IDs.insert(item.id);
    }

    /// Changes the library as its users do, or the panel.
    void ChangeOne()
    {
        std::vector<TestItem*>& listed = m_Library->m_Listed;
        if (listed.empty())
            return AddItem();
        TestItem*& item = listed[Number(listed.size())];
        std::string& tags = item->tags["ApplicationTags"];
        std::function<void()> const changes[] = {
            [&] { AddItem(); },
            [&] { m_Library->Remove(*item); },
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
            [&] { m_Browser->m_TagsRegistry.AddItemTag(item->id, "own"); },
            [&] { m_Browser->SetSourceControlEnabled(!m_Browser->m_SourceControlEnabled); },
            [&] { TellState(item->id, long(Number(3))); },
            [&] { tags = Text(8), TellTags(item->id); },
            // Rarely: it takes a while until there is something to compare again.
            [&] {
                if (Number(10) > 0)
                    return;
                m_Library.swap(m_Other);
                m_Browser->SetItemLibrary(m_Library->GetAccessor());
            },
        };
        changes[Number(std::size(changes))]();
    }

    /// All that can be seen of the item list: items, tags in both directions, and searches.
    QString Describe(TestBrowser& browser, QStringList const& searches) const
    {
        QStringList lines;
        for (CNodeBrowser::Item const& item : browser.m_Items) {
            QImage const icon = item.m_DisplayIcon.toImage();
            lines << browser.GetName(item) + item.GetItemID().Serialize().c_str();
            for (int const fact : {item.m_ScState, int(item.m_HasScState), int(item.m_IsFactory),
                                   int(item.m_IsReadOnlySource), icon.width(),
                                   icon.isNull() ? 0 : int(icon.pixel(icon.width() - 1, 0))})
                lines.last() += QString(" %1").arg(fact);
        }
        std::set<std::string> tags{"node", "own", "a", "b", "c"};
        for (ItemID const& id : m_IDs) {
            lines << id.Serialize().c_str();
            lines.last() += browser.m_TagsRegistry.HasItem(id) ? " is" : "";
            for (std::string const& tag : browser.m_TagsRegistry.GetItemTags(id))
                lines.last() += '\'' + QString::fromLatin1(tags.insert(tag).first->c_str());
        }
        for (std::string const& tag : tags) {
            lines << QString::fromLatin1(tag.c_str()) + ":";
            for (ItemID const& id : browser.m_TagsRegistry.GetTagItems(tag.c_str()))
                lines.last() += id.Serialize().c_str();
        }
        for (QString const& search : searches) {
            browser.SearchTextChange(search);
            browser.UpdateVisibleItems();
            lines << search + browser.GetRanks();
        }
        return lines.join('\n');
    }

    std::mt19937 m_Engine;
    TestDataSource* m_Sources[2];
    std::unique_ptr<TestLibrary> m_Other;
    /// Of all items that ever were.
    std::set<ItemID> m_IDs;
};

NODEBROWSER_TEST(TestListChanges)

#include "tst_listchanges.moc"
