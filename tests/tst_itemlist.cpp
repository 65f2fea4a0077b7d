#include "browsertest.h"

#include <random>

using namespace tarno::datamodel;

typedef CNodeBrowser::Item Item;

/// What the list holds and asks for, after any changes of the library and failures of the host.
class TestItemList : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void asksForItemsInOrder()
    {
        m_Library->Add(LibType::gType, "type");
        m_Library->Add(TarnoType::gSolver, "solver");
        m_Library->Add(TarnoType::gGlobalConstant, "nested").hasParent = true;
        m_Library->Add(TarnoType::gGlobalConstant, "special").hasSpecializes = true;
        m_Library->Add(TarnoType::gCompound, "hidden").isValidGraphItem = false;
        m_Library->Add(TarnoType::gPolymorphicSolver, "second");
        m_Library->Add(TarnoType::gPolymorphicSolver, "first");
        m_Browser.reset(new TestBrowser);
        m_Host->TakeCalls();
        m_Host->m_ListsQueries = true;
        m_Host->TakeCount("GetItemName");
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        // Of each question the first letters and its item; one about a name, however long sorting
        // takes.
        QStringList asked;
        for (QString const& call : m_Host->TakeCalls()) {
            if (call.startsWith("GetItems ") || call.startsWith("IsValidGraphItemType "))
                asked << call.section(' ', 1);
            else if (call.startsWith("GetValue "))
                asked << call.section(' ', 2).left(1);
            else if (call.startsWith("GetItemTags "))
                asked << "tags";
        }
        QCOMPARE(asked.join(' '),
                 QString("polymorphicSolver polymorphicSolver second P S tags "
                         "polymorphicSolver first P S tags compound compound hidden "
                         "constant constant nested P constant special P S "
                         "solver solver solver P S tags type type type P S tags"));
        QCOMPARE(m_Host->TakeCount("GetItemName"), 4);
        QCOMPARE(m_Browser->GetNames(), QString("first second solver type"));
    }

    void sortsByNameIgnoringCase()
    {
        for (char const* name :
             {"beta", "Alpha", "alpha2", "_x", "Zeta", "long names B", "LONG NAMES a", "zeta"})
            m_Library->Add(TarnoType::gSolver, name);
        m_Library->Add(LibType::gType, "apple");
        MakeBrowser();
        QCOMPARE(m_Browser->GetNames(),
                 QString("_x Alpha alpha2 apple beta LONG NAMES a long names B Zeta zeta"));
    }

    void showsAndTagsKinds()
    {
        // A kind, its picture and its tag; the tag stays when those of the user change.
        char const* const kinds[][3] = {{TarnoType::gPolymorphicSolver, "solver", "node"},
                                        {TarnoType::gSolver, "solver", "node"},
                                        {TarnoType::gCompound, "compound", "node"},
                                        {TarnoType::gCompound, "signature", "node"},
                                        {TarnoType::gGlobalConstant, "constant", "constant"},
                                        {LibType::gType, "type", "type"}};
        typedef std::set<std::string> Tags;
        for (auto const& [kind, icon, tag] : kinds) {
            TestItem& item = m_Library->Add(kind, icon, "A;B");
            item.isAbstract = item.name == "signature";
            MakeBrowser();
            Item const& listed = m_Browser->m_Items.at(0);
            QCOMPARE(listed.m_Icon.toImage(), QPixmap(QString(":%1.png").arg(icon)).toImage());
            QCOMPARE(listed.m_DisplayIcon.toImage(), listed.m_Icon.toImage());
            ItemTagsRegistry const& registry = m_Browser->m_TagsRegistry;
            QCOMPARE(registry.GetItemTags(item.id), (Tags{"A", "B", tag}));
            item.tags["ApplicationTags"] = "C";
            TellTags(item.id);
            QCOMPARE(registry.GetItemTags(item.id), (Tags{"C", tag}));
            item.tags.clear();
            TellTags(item.id);
            QCOMPARE(registry.GetItemTags(item.id), Tags{tag});
            m_Library->Remove(item);
        }
    }

    void raisesForObjectWithoutDataSource()
    {
        m_Host->AddRevisionControl();
        m_Library->Add(TarnoType::gCompound, "before");
        AddStored(TarnoType::gCompound, "broken", nullptr);
        m_Browser.reset(new TestBrowser);
        QVERIFY_EXCEPTION_THROWN(m_Browser->SetItemLibrary(m_Library->GetAccessor()),
                                 qorm::ExBase::NullPtr);
        QCOMPARE(m_Host->TakeCalls().last(), QString("PrintDebugString 'Null pointer in "
                                                     "GetPointeeNotNull (qormptr.h:102)'"));
        QCOMPARE(m_Browser->GetNames(), QString("before"));
    }

    void requestsStatesOfWritableCompounds()
    {
        m_Host->AddRevisionControl();
        TestDataSource* const project = m_Host->m_Database.AddSource("project");
        QString const second = AddStored(TarnoType::gCompound, "b", project);
        QString const first = AddStored(TarnoType::gCompound, "a", project);
        AddStored(TarnoType::gCompound, "c", m_Host->m_Database.AddSource("shared", 1));
        AddStored(TarnoType::gSolver, "d", project);
        m_Library->Add(TarnoType::gCompound, "no UID", "", "Compound:x");
        m_Browser.reset(new TestBrowser);
        // What the host tells before the first paint has the list made again.
        std::function<void()> const events[] = {[] {}, [&] { TellInvalidated(); },
                                                [&] {
                                                    m_Host->SetService("RevisionControlUIHelper",
                                                                       nullptr);
                                                }};
        for (auto const& event : events) {
            m_Browser->SetItemLibrary(m_Library->GetAccessor());
            QCOMPARE(GetStates(), QString("0 0 0 0 0"));
            event();
            m_Host->TakeCalls();
            m_Host->TakeCount("GetItems");
            m_Browser->Paint();
            m_Browser->Paint();
            QCOMPARE(m_Host->TakeCount("GetItems"), &event == events ? 0 : 5);
            // In the order of the table of contents.
            bool const hasService = &event != std::end(events) - 1;
            QString const requested = hasService ? second + ' ' + first : QString();
            QCOMPARE(m_Host->TakeCalls(), QStringList("RequestObjectStates [" + requested + "]"));
            QCOMPARE(GetStates(), QString(hasService ? "400000 400000 0 0 0" : "0 0 0 0 0"));
        }
    }

    void takesStateOfTheFirstItemWithTheIdentifier()
    {
        for (char const* name : {"first", "second", "0"})
            m_Library->Add(TarnoType::gSolver, name);
        m_Library->m_Listed.push_back(&(*m_Library)["first"]);
        MakeBrowser();
        // It is gone, which nobody has told.
        (*m_Library)["0"].id = ItemID();
        ItemID const unlisted = m_Library->Add(TarnoType::gSolver, "unlisted").id;
        TellState(ItemID(), 7);
        TellState((*m_Library)["first"].id, 5);
        TellState((*m_Library)["second"].id, 0x1000000FFL);
        TellState(unlisted, 9);
        QCOMPARE(GetStates(), QString("7 5 0 ff"));
    }

    /// A list that is brought up to changes is the one that is made from nothing, whether or not
    /// the host failed while it was made; a panel with half a list can be used.
    void keepsUpAsMadeAnew()
    {
        for (char const* operation :
             {"", "GetItems", "IsValidGraphItemType", "GetValue", "GetItemTags", "GetItemName",
              "IsAbstractFunction", "FindObject", "GetAccessMode", "getAssetStateIcon",
              "Revalidate"}) {
            SetUp();
            KeepUp(operation);
        }
    }

    /// The host should not notify while it is asked, but its notifications then count.
    void losesNothingToldMeanwhile()
    {
        TestItem& item = m_Library->Add(TarnoType::gCompound, "a");
        MakeBrowser();
        int state = 0;
        for (int call = 1; m_Host->HasRun(); ++call) {
            item.tags["ApplicationTags"] = "asked";
            m_Host->RunAt(call, [&] {
                item.tags["ApplicationTags"] = "told";
                TellTags(item.id);
                TellState(item.id, 5);
            });
            m_Browser->BuildAllItemList(nullptr);
            if (m_Host->HasRun())
                state = m_Browser->m_Items[0].m_ScState;
            m_Browser->Paint();
            QVERIFY(m_Browser->m_TagsRegistry.HasItemTag(item.id, "told") == m_Host->HasRun());
        }
        m_Host->RunAt(0, nullptr);
        // Told when the item was made already.
        QCOMPARE(state, 5);
    }

private:
    /// Changes and rebuilds, in which that operation of the host fails, if any.
    void KeepUp(QByteArray const& failing)
    {
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
                std::list<qorm::QormHandle<qorm::IDbObject>> requests;
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
        for (CNodeBrowser::Item const& item : browser.m_Items) {
            lines << (browser.m_TagsRegistry.HasItem(item.GetItemID()) ? "is" : "");
            for (std::string const& tag : browser.m_TagsRegistry.GetItemTags(item.GetItemID()))
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

    QString GetStates() const
    {
        QStringList states;
        for (Item const& item : m_Browser->m_Items)
            states << QString::number(item.m_ScState, 16);
        return states.join(' ');
    }

    std::mt19937 m_Engine;
    TestDataSource* m_Sources[2];
    std::unique_ptr<TestLibrary> m_Other;
};

NODEBROWSER_TEST(TestItemList)

#include "tst_itemlist.moc"
