#include "browsertest.h"
#include "testtable.h"

using namespace tarno::datamodel;

typedef CNodeBrowser::Item Item;

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

    void showsAndTagsItsKind_data()
    {
        AddColumns<QString, bool, QString, QString>("kind", "isAbstract", "icon", "tag");
        AddRow("polymorphic solver", "polymorphicSolver", false, ":solver.png", "node");
        AddRow("solver", "solver", false, ":solver.png", "node");
        AddRow("compound", "compound", false, ":compound.png", "node");
        AddRow("signature", "compound", true, ":signature.png", "node");
        AddRow("constant", "constant", false, ":constant.png", "constant");
        AddRow("type", "type", false, ":type.png", "type");
    }

    void showsAndTagsItsKind()
    {
        QFETCH(QString, kind);
        QFETCH(bool, isAbstract);
        QFETCH(QString, icon);
        QFETCH(QString, tag);
        TestItem& item = m_Library->Add(FindKind(kind), "item", "Own;Kept");
        item.isAbstract = isAbstract;
        MakeBrowser();
        Item const& listed = m_Browser->m_Items.at(0);
        QVERIFY(!listed.m_Icon.isNull());
        QCOMPARE(listed.m_Icon.toImage(), QPixmap(icon).toImage());
        QCOMPARE(listed.m_DisplayIcon.toImage(), listed.m_Icon.toImage());

        // The tag of the kind stays when those of the user change.
        typedef std::set<std::string> Tags;
        ItemTagsRegistry const& registry = m_Browser->m_TagsRegistry;
        QCOMPARE(registry.GetItemTags(item.id), (Tags{"Own", "Kept", tag.toStdString()}));
        item.tags["ApplicationTags"] = "New;Kept";
        TellTags(item.id);
        QCOMPARE(registry.GetItemTags(item.id), (Tags{"New", "Kept", tag.toStdString()}));
        item.tags.clear();
        TellTags(item.id);
        QCOMPARE(registry.GetItemTags(item.id), Tags{tag.toStdString()});
    }

    void raisesForObjectWithoutDataSource()
    {
        m_Host->AddRevisionControl();
        m_Library->Add(TarnoType::gCompound, "before");
        AddStored(TarnoType::gCompound, "broken", nullptr);
        m_Library->Add(TarnoType::gSolver, "after");
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
        // In the order of the table of contents.
        QString request = "RequestObjectStates [" + second + " " + first + "]";
        QString states = "400000 400000 0 0 0";
        auto const check = [&](std::function<void()> const& tell, int questions) {
            m_Browser->SetItemLibrary(m_Library->GetAccessor());
            QCOMPARE(GetStates(), QString("0 0 0 0 0"));
            m_Host->TakeCalls();
            tell();
            m_Host->TakeCount("GetItems");
            m_Browser->Paint();
            QCOMPARE(m_Host->TakeCalls(), QStringList(request));
            m_Browser->Paint();
            QVERIFY(m_Host->TakeCalls().isEmpty());
            QCOMPARE(m_Host->TakeCount("GetItems"), questions);
            QCOMPARE(GetStates(), states);
        };
        // What the host tells before the first paint has the list made again: five questions.
        check([] {}, 0);
        check([&] { TellInvalidated(); }, 5);
        check([&] { TellTags((*m_Library)["a"].id); }, 5);
        check([&] { TellState((*m_Library)["a"].id, 3); }, 5);
        check([&] { m_Browser->SetSourceControlEnabled(true); }, 5);
        request = "RequestObjectStates []";
        states = "0 0 0 0 0";
        check([&] { m_Host->SetService("RevisionControlUIHelper", nullptr); }, 5);
    }

    void takesStateOfTheFirstItemWithTheIdentifier()
    {
        m_Library->Add(TarnoType::gSolver, "first");
        m_Library->Add(TarnoType::gSolver, "second");
        m_Library->Add(TarnoType::gSolver, "0").id = ItemID();
        m_Library->m_Listed.push_back(&(*m_Library)["first"]);
        MakeBrowser();
        TellState(ItemID(), 7);
        QCOMPARE(GetStates(), QString("7 0 0 0"));
        TellState((*m_Library)["first"].id, 5);
        TellState((*m_Library)["second"].id, 0x1000000FFL);
        ItemID const unlisted = m_Library->Add(TarnoType::gSolver, "unlisted").id;
        TellState(unlisted, 9);
        QCOMPARE(GetStates(), QString("7 5 0 ff"));

        // The positions follow the next list.
        (*m_Library)["second"].name = "1";
        TellInvalidated();
        m_Browser->Paint();
        TellState((*m_Library)["1"].id, 3);
        QCOMPARE(GetStates(), QString("0 3 0 0 0"));

        // One that is gone answers the null identifier.
        m_Library->Remove((*m_Library)["0"]);
        m_Library->Remove((*m_Library)["unlisted"]);
        TellState(unlisted, 9);
        QCOMPARE(GetStates(), QString("0 3 0 0 0"));
        TellState(ItemID(), 2);
        QCOMPARE(GetStates(), QString("2 3 0 0 0"));
    }

private:
    QString GetStates() const
    {
        QStringList states;
        for (Item const& item : m_Browser->m_Items)
            states << QString::number(item.m_ScState, 16);
        return states.join(' ');
    }
};

NODEBROWSER_TEST(TestItemList)

#include "tst_itemlist.moc"
