#include "palettetest.h"

#include <QScrollBar>
#include <QTabBar>
#include <QToolButton>

using namespace tarno::datamodel;

/// What the palette shows, and what stays while the library and the search change.
class TestPaletteRows : public PaletteTest
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatIsSelected()
    {
        QTest::mouseClick(m_Palette, Qt::RightButton, {}, m_Palette->GetRowRect(4).center());
        QCOMPARE(m_Palette->m_Menus, QStringList("4 at its row"));
        QSignalSpy const changes(m_Palette, &CNodeBrowser::SelectionChanged);
        QTest::mouseClick(m_Palette, Qt::LeftButton, {}, QPoint(5, m_Palette->m_HeaderHeight));
        QCoreApplication::processEvents();
        QVERIFY(m_Palette->m_PaintedSelection > 100);
        QCOMPARE(changes.count(), 1);

        // A press selects what it hit, though a rebuild is due.
        m_Palette->SelectRow(2);
        m_Library->Tell(
            [](auto& listener, auto& library) { listener.LibraryInvalidated(library); });
        QTest::mouseClick(m_Palette, Qt::LeftButton, {},
                          QPoint(50, m_Palette->m_HeaderHeight + 5 * 24 + 12));
        QCOMPARE(m_Palette->GetSelectedRow(), 5);
    }

    void keepsItsPlaceWhenTheLibraryChanges()
    {
        m_Palette->SelectRow(20);
        m_Palette->m_ScrollBar->setValue(15 * 24 + 7);
        QCoreApplication::processEvents();
        QString const selected = m_Palette->GetSelected();
        QString const first = m_Palette->GetRowName(15);
        m_Library->Add(TarnoType::gCompound, "Aaa");
        m_Library->Remove((*m_Library)["Beta"]);
        m_Library->Add(TarnoType::gSolver, "Node 001");
        m_Library->Add(TarnoType::gSolver, "Node 002");
        TellOfChanges();
        QCOMPARE(m_Palette->GetSelected(), selected);
        QCOMPARE(m_Palette->m_ScrollOffset, 17 * 24 + 7);
        QCOMPARE(m_Palette->GetRowName(17), first);

        QSignalSpy const changes(m_Palette, &CNodeBrowser::SelectionChanged);
        m_Library->Remove((*m_Library)[selected.toStdString()]);
        TellOfChanges();
        QCOMPARE(m_Palette->GetSelectedRow(), -1);
        QCOMPARE(changes.count(), 1);

        // What a failing rebuild leaves behind is no longer than what can be shown.
        m_Host->ThrowAt("GetItemName", 3);
        m_Library->Tell(
            [](auto& listener, auto& library) { listener.LibraryInvalidated(library); });
        QVERIFY_EXCEPTION_THROWN(m_Palette->GetRowCount(), HostError);
        m_Palette->SelectRow(31);
        QCoreApplication::processEvents();
        TellOfChanges();
        QCOMPARE(m_Palette->GetRowCount(), 33);
    }

    void showsTheBestMatchOfANewText()
    {
        Press(Qt::Key_End);
        QVERIFY(m_Palette->m_ScrollOffset > 0);
        Type("node 1");
        QCOMPARE(m_Palette->m_ScrollOffset, 0);
        QCOMPARE(m_Palette->GetSelectedRow(), 0);
        QString const best = m_Palette->GetSelected();
        Type("");
        QCOMPARE(m_Palette->GetSelected(), best);
        QVERIFY(m_Palette->GetRowArea().contains(
            m_Palette->GetRowRect(m_Palette->GetSelectedRow()).center()));
    }

    void ordersRowsAsChosen()
    {
        for (char const* const name : {"Add RGB Noise", "Noise", "RGB"})
            m_Library->Add(TarnoType::gSolver, name);
        TellOfChanges();
        Type("rgb noise");
        QStringList const panel = {"Noise", "RGB", "Add RGB Noise"};
        QStringList const ranked = {"Add RGB Noise", "RGB", "Noise"};
        QCOMPARE(m_Palette->GetRows(), panel);
        m_Palette->SetRanking(CNodePalette::eNameRanking);
        QCOMPARE(m_Palette->GetRows(), ranked);
        // A host that fails while rows are arranged is asked again.
        TellOfChanges();
        m_Library->Tell([](auto& listener, auto& library) {
            listener.ItemTagsChanged(library, ItemID(), "ApplicationTags");
        });
        m_Palette->m_SearchEdit->setText("noise rgb");
        m_Host->ThrowAt("GetItemTags", 1);
        QVERIFY_EXCEPTION_THROWN(m_Palette->GetRowCount(), HostError);
        QCOMPARE(m_Palette->GetRows().mid(0, 1), QStringList("Add RGB Noise"));
        Type("rgb noise");
        m_Palette->SetRanking(CNodePalette::ePanelRanking);
        QCOMPARE(m_Palette->GetRows(), panel);

        m_Palette->SetRecentItems({(*m_Library)["RGB"].id, ItemID(), (*m_Library)["Beta"].id,
                                   (*m_Library)["Float"].id, (*m_Library)["Beta"].id});
        QCOMPARE(m_Palette->GetRows(), panel);
        m_Palette->StartSearch();
        QCOMPARE(m_Palette->GetRows().mid(0, 3), QStringList({"RGB", "Beta", "Add RGB Noise"}));
        QCOMPARE(m_Palette->GetRows().size(), 35);
        QCOMPARE(m_Palette->GetSelected(), QString("RGB"));
    }

    void saysWhyThereAreNoRows()
    {
        Type("float");
        QToolButton* lookUnderAll = nullptr;
        for (QToolButton* const button : m_Palette->findChildren<QToolButton*>()) {
            if (button->isVisible() && button->text().contains("(1)"))
                lookUnderAll = button;
        }
        QVERIFY(lookUnderAll);
        lookUnderAll->click();
        Settle();
        QCOMPARE(m_Palette->GetRows(), QStringList("Float"));
        QVERIFY(!lookUnderAll->isVisible());
        QSignalSpy const counts(m_Palette, &CNodePalette::RowCountChanged);
        Type("q & q");
        QVERIFY(!lookUnderAll->isVisible());
        QVERIFY(m_Palette->m_SearchEdit->accessibleDescription().contains("q & q"));
        QCOMPARE(counts.count(), 1);
    }

    void explainsRows()
    {
        m_Palette->m_TabBar->setCurrentIndex(2);
        m_Palette->SetDetailsSource([](ItemID const&) {
            return CNodePalette::SItemDetails{"Shapes <2>", {"radius"}, {"area"}, "checked out"};
        });
        (*m_Library)["Float"].isModified = true;
        Type("blur");
        QCOMPARE(m_Palette->GetRows(), QStringList({"Alpha Blur", "Float*"}));
        for (char const* const part : {"Type", "Shapes &lt;2&gt;", "radius", "Changed",
                                       "checked out", "Listed for its tag “blur”"})
            QVERIFY2(m_Palette->GetRowToolTip(1).contains(part), part);
    }

private:
    void TellOfChanges()
    {
        m_Library->Tell(
            [](auto& listener, auto& library) { listener.LibraryInvalidated(library); });
        Settle();
    }
};

NODEBROWSER_TEST(TestPaletteRows)

#include "tst_paletterows.moc"
