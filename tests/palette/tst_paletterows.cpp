#include "palettetest.h"

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
        Press(Qt::Key_Return, Qt::AltModifier);
        QVERIFY(QToolTip::isVisible());
        Type("blur");
        QTRY_VERIFY(!QToolTip::isVisible());
        m_Palette->findChild<QTabBar*>()->setCurrentIndex(CNodeBrowser::eConfigTypes);
        Settle();
        QCOMPARE(m_Palette->GetSelected(), QString("Float"));
    }

    void fitsNamesAndNotes()
    {
        for (char const* const kind :
             {TarnoType::gSolver, TarnoType::gPolymorphicSolver, TarnoType::gCompound})
            m_Library->Add(kind, "Twin");
        m_Library->Add(TarnoType::gSolver, std::string(99, 'W'));
        m_Library->Add(TarnoType::gSolver, std::string(99, 'W'));
        TellOfChanges();
        Type("WWW");
        QCOMPARE(m_Palette->GetRowCount(), 2);
        // The selected one and the other; the panel's text would reach to the edge.
        for (int number = 0; number < 2; ++number) {
            QRect const row = m_Palette->GetRowRect(number);
            QImage const picture = m_Palette->grab(row).toImage();
            for (int y = 2; y < row.height(); ++y)
                for (int x = 1; x < 4; ++x)
                    QCOMPARE(picture.pixel(row.width() - x, y), picture.pixel(row.width() - 1, 1));
        }

        // Short ones of one name are told apart behind it.
        Type("twin");
        QCOMPARE(m_Palette->GetRowCount(), 3);
        auto const getNote = [this](int row) {
            return m_Palette->grab(m_Palette->GetRowRect(row).adjusted(60, 2, 0, -2)).toImage();
        };
        QVERIFY(getNote(1) != getNote(2));
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
