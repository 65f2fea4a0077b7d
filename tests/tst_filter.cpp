#include "browsertest.h"

using namespace tarno::datamodel;

class TestFilter : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheKindsOfTheFilter()
    {
        std::pair<int, char const*> const filters[] = {
            {0, "compound polymorphicSolver solver"},
            {1, "type"},
            {2, "compound constant polymorphicSolver signature solver type"},
            {3, "signature"},
            {4, "constant"},
            {5, ""},
            {-1, ""}};
        MakeBrowserWithAll();
        for (auto const& [filter, rows] : filters) {
            m_Browser->TabChanged(filter);
            QCOMPARE(m_Browser->GetRows(), QString(rows));
            m_Host->TakeCount("Revalidate");
            QVERIFY(!m_Browser->GetRanks().startsWith("rows are not"));
            QVERIFY(m_Host->TakeCount("Revalidate") >= 6);
        }
    }

    void ranksMatches()
    {
        std::pair<QString, QString> const rows[] = {
            // Start, inside, tag.
            {"aDd", "Add:0 add_mul:0 fastadd:1 multiply_add:1 xaddmul:1 sum:1000"},
            // Words count in their order: the last inside the name, unless one starts it.
            {"mul add", "Add:0 add_mul:0 multiply_add:1 fastadd:2 xaddmul:3 sum:1000"},
            {"add\tadd", "Add:0 add_mul:0 fastadd:1 multiply_add:1 xaddmul:1 sum:1000"},
            // A name overwrites a tag, a tag leaves the name alone, unless it comes after it.
            {"add um", "Add:0 add_mul:0 fastadd:2 multiply_add:2 xaddmul:2 sum:3"},
            {"fasta math", "fastadd:0 other:1000 sum:1000"},
            {"asta blur", "fastadd:2"},
            {"ATH", "other:1000 sum:1000"},
            // Of the kind.
            {"typ", "Moir\u00C9:1000"},
            {"\u00C9", "Moir\u00C9:1"},
            {QString(QChar(0x3A9)), "?:0"},
            {"nothing like it", ""}};
        for (char const* name : {"Add", "add_mul", "fastadd", "multiply_add", "xaddmul", "?"})
            m_Library->Add(TarnoType::gSolver, name, *name == 'f' ? "Blur" : "");
        m_Library->Add(TarnoType::gSolver, "sum", "Math-Add");
        m_Library->Add(TarnoType::gSolver, "other", "x;Math");
        m_Library->Add(LibType::gType, "Moir\xC9");
        // So many that each letter may look at the matches of those before only.
        for (int item = 0; item < 20; ++item)
            m_Library->Add(TarnoType::gGlobalConstant, "-");
        MakeBrowser();
        for (auto const& [text, ranks] : rows) {
            m_Host->TakeCount("GetItemName");
            for (int length = 1; length <= text.size(); ++length) {
                m_Browser->SearchTextChange(text.left(length));
                m_Browser->UpdateVisibleItems();
            }
            QCOMPARE(m_Host->TakeCount("GetItemName"), 0);
            QCOMPARE(text + m_Browser->GetRanks(), text + ranks);
            QCOMPARE(m_Browser->m_ContentHeight, 24 * int(m_Browser->m_VisibleItems.size()));
        }
    }

    /// Inside a name, one of so many words scores as much as no match, whatever the tags say.
    void takesAScoreOfNoMatchForNone()
    {
        m_Library->Add(TarnoType::gSolver, "x14999", "14999");
        m_Library->Add(TarnoType::gSolver, "x14998", "14999");
        MakeBrowser();
        QString text;
        for (int word = 10000; word <= 15000; ++word)
            text += QString::number(word) + ' ';
        m_Browser->SearchTextChange(text);
        m_Browser->UpdateVisibleItems();
        QCOMPARE(m_Browser->GetRanks(), QString("x14998:9999"));
    }

    void filtersAsIsTypedAndClicked()
    {
        MakeBrowserWithAll();
        QLineEdit* const field = m_Browser->findChild<QLineEdit*>();
        QTabBar* const tabs = m_Browser->findChild<QTabBar*>();
        m_Host->TakeCount("GetItems");
        for (int const tab : {1, 0}) {
            QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab).center());
            QCOMPARE(m_Browser->GetRows(),
                     QString(tab == 1 ? "type" : "compound polymorphicSolver solver"));
        }
        QTest::keyClicks(field, "COm");
        QCOMPARE(m_Browser->GetStaleRows(), QString("compound polymorphicSolver solver"));
        QCOMPARE(m_Browser->GetRows(), QString("compound"));
        QTest::mouseClick(m_Browser->findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(field->text(), QString());
        QTest::keyClicks(field, "  ");
        QCOMPARE(m_Browser->GetRows(), QString("compound polymorphicSolver solver"));
        // Nothing of this asks the host for its items.
        QCOMPARE(m_Host->TakeCount("GetItems"), 0);
    }

    void confirmsWithEnter()
    {
        MakeBrowserWithAll();
        QSignalSpy confirmed(m_Browser.get(), SIGNAL(SelectionChanged()));
        QLineEdit* const field = m_Browser->findChild<QLineEdit*>();
        auto const confirm = [&](char const* typed) {
            QTest::keyClicks(field, typed);
            QTest::keyClick(field, Qt::Key_Return);
            return TextOf(m_Library->Find(m_Browser->GetSelection()));
        };
        QCOMPARE(confirm(""), QString("compound"));
        // The selection is a row, whatever item stands there; no paint has come since the text.
        Click(1);
        QCOMPARE(confirm("so"), QString("polymorphicSolver"));
        // A rebuild of the items waits for the paint, and the rows wait with it.
        TellInvalidated();
        QCOMPARE(confirm("x"), QString("polymorphicSolver"));
        m_Browser->Paint();
        QCOMPARE(confirm(""), QString("-"));
        QCOMPARE(confirmed.count(), 5);
        // Without rows the first one is selected all the same.
        field->clear();
        m_Browser->Paint();
        QVERIFY(m_Browser->GetSelection() == (*m_Library)["compound"].id);
    }

    /// Not even the scroll range follows.
    void showsNoRowsWithoutTableOfContents()
    {
        MakeBrowserWithAll();
        TestLibrary empty("B");
        empty.m_HasTOC = false;
        m_Browser->SetItemLibrary(empty.GetAccessor());
        QCOMPARE(m_Browser->GetRows(), QString());
        QCOMPARE(m_Browser->m_ContentHeight, 6 * 24);
    }

private:
    /// A panel over one item of each kind, named after it.
    void MakeBrowserWithAll()
    {
        for (char const* kind : {TarnoType::gSolver, TarnoType::gPolymorphicSolver,
                                 TarnoType::gCompound, TarnoType::gGlobalConstant, LibType::gType})
            m_Library->Add(kind, kind);
        m_Library->Add(TarnoType::gCompound, "signature").isAbstract = true;
        MakeBrowser();
    }
};

NODEBROWSER_TEST(TestFilter)

#include "tst_filter.moc"
