#include "itemfacts.h"
#include "palettetest.h"

using namespace nodepalette;
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
        TellInvalidated();
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
        TellInvalidated();
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
        // What is out of sight at the top comes to the middle.
        std::pair<char const*, int> const offsets[] = {{"11", 0}, {"12", 8 * 24}};
        for (auto const& [text, offset] : offsets) {
            Type(text);
            QString const best = m_Palette->GetSelected();
            Type("");
            QCOMPARE(m_Palette->GetSelected(), best);
            QCOMPARE(m_Palette->m_ScrollOffset, offset);
        }
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
             {TarnoType::gSolver, TarnoType::gSolver, TarnoType::gCompound})
            m_Library->Add(kind, "Twin");
        m_Library->Add(TarnoType::gSolver, std::string(99, 'W'));
        m_Library->Add(TarnoType::gSolver, std::string(99, 'W'));
        TellOfChanges();
        Type("WWW");
        QCOMPARE(m_Palette->GetRowCount(), 2);
        // The selected one and the other; the panel's text would reach to the edge.
        QVERIFY(GetInk(0).right() < 297 && GetInk(1).right() < 297);

        // Short ones of one name are told apart behind it.
        Type("twin");
        QCOMPARE(m_Palette->GetRowCount(), 3);
        auto const getNote = [this](int row) {
            return m_Palette->grab(m_Palette->GetRowRect(row).adjusted(60, 2, 0, -2)).toImage();
        };
        QVERIFY(getNote(1) != getNote(2));
        QImage const note = getNote(1);
        m_Palette->SetDetailsSource([](ItemID const& id) {
            return CNodePalette::SItemDetails{id.Serialize().c_str(), {}, {}, ""};
        });
        QVERIFY(getNote(1) != note);
        QCOMPARE(
            PickDifferences({{"a", "x", ""}, {"a", "y", "u"}, {"b", "y", "v"}, {"a", "y", "u"}}, 1),
            QString("a · y"));

        // The selected row is painted where it stands otherwise; a tag has a note, too.
        m_Palette->findChild<QTabBar*>()->setCurrentIndex(CNodeBrowser::eConfigAll);
        Type("blur");
        QRect const places[] = {GetInk(0), GetInk(1)};
        QVERIFY(places[0].right() < 150 && places[1].right() > places[0].right() + 20);
        m_Palette->SelectRow(1);
        QCOMPARE(GetInk(0), places[0]);
        QCOMPARE(GetInk(1), places[1]);
        QVERIFY(m_Palette->GetRowToolTip(1).contains("<b>Float</b>"));
        QVERIFY(m_Palette->GetRowToolTip(1).endsWith("<i>Listed for its tag “blur”</i></div>"));
    }

    void showsTheWayOutOfAnEmptyList()
    {
        auto const pressLast = [this] {
            QStringList offered;
            QToolButton* last = nullptr;
            m_HostField->setFocus();
            for (QToolButton* const button : m_Palette->findChildren<QToolButton*>())
                if (button->parent() != m_Palette->findChild<QTabBar*>() && button->isVisible()) {
                    offered << button->text();
                    last = button;
                }
            last->click();
            return offered.join('|') + (m_Palette->m_SearchEdit->hasFocus() ? "" : " no focus");
        };
        Type("float");
        QCOMPARE(m_Palette->GetRowCount(), 0);
        QCOMPARE(pressLast(), QString("&Clear the search|&Look under “All” (1)"));
        QCOMPARE(m_Palette->GetRows(), QStringList("Float"));
        Type("floats");
        QSignalSpy const activations(m_Palette, &CNodePalette::ItemActivated);
        Press(Qt::Key_Return);
        QVERIFY(activations.isEmpty() && m_Palette->GetSelectedRow() == -1);
        QCOMPARE(pressLast(), QString("&Clear the search"));
        QCOMPARE(m_Palette->GetRowCount(), 33);
    }

    void keepsToItsPlaces()
    {
        QVERIFY(m_Palette->SelectItem((*m_Library)["Node 20"].id));
        QCOMPARE(m_Palette->GetSelected(), QString("Node 20"));
        QVERIFY(!m_Palette->SelectItem((*m_Library)["Float"].id));
        QFont font;
        font.setPixelSize(40);
        m_Palette->findChild<QTabBar*>()->setFont(font);
        m_Palette->setFont(font);
        int const header = m_Palette->m_HeaderHeight;
        QVERIFY(header > 43);
        QCOMPARE(m_Palette->m_ScrollBar->maximum(), 32 * 24 - (400 - header));
        m_Palette->resize(200, 300);
        QCOMPARE(m_Palette->m_ScrollBar->geometry(), QRect(180, header, 20, 300 - header));
        QPoint const point(5, header + 5);
        QHelpEvent help(QEvent::ToolTip, point, m_Palette->mapToGlobal(point));
        QVERIFY(QApplication::sendEvent(m_Palette, &help));
        QCOMPARE(QToolTip::text(), m_Palette->GetRowToolTip(m_Palette->GetRowAt(point)));
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
        // Tags that change count with the next search.
        TestItem& noise = (*m_Library)["Noise"];
        noise.tags["ApplicationTags"] = "RGB";
        TellTags(noise.id);
        Type("noise rgb");
        QCOMPARE(m_Palette->GetRows(), QStringList({"Add RGB Noise", "Noise", "RGB"}));
        Type("");
        // Names are read ahead of a search.
        TellOfChanges();
        QCoreApplication::processEvents();
        m_Host->TakeCount("GetItemName");
        m_Palette->m_SearchEdit->setText("g");
        m_Palette->GetRowCount();
        QCOMPARE(m_Host->TakeCount("GetItemName"), 0);
        Type("rgb noise");
        m_Palette->SetRanking(CNodePalette::ePanelRanking);
        QCOMPARE(m_Palette->GetRows(), panel);

        auto const getLine = [this](int row) {
            return m_Palette->grab(QRect(m_Palette->GetRowRect(row).topLeft(), QSize(280, 1)))
                .toImage();
        };
        m_Palette->SetRecentItems({(*m_Library)["RGB"].id, ItemID(), (*m_Library)["Beta"].id,
                                   (*m_Library)["Float"].id, (*m_Library)["Beta"].id});
        QCOMPARE(m_Palette->GetRows(), panel);
        m_Palette->StartSearch();
        QCOMPARE(m_Palette->GetRows().mid(0, 3), QStringList({"RGB", "Beta", "Add RGB Noise"}));
        QCOMPARE(m_Palette->GetRows().size(), 35);
        QCOMPARE(m_Palette->GetSelected(), QString("RGB"));
        QVERIFY(m_Palette->GetRowDescription(1).startsWith("recent, Compound; "));
        QCOMPARE(m_Palette->GetRowDescription(2), QString("Solver; tags: node"));
        // A line is drawn below them.
        QVERIFY(getLine(2) != getLine(3));
        int const right = GetInk(1).right();
        m_Palette->SetRecentItems({});
        QCOMPARE(m_Palette->m_ScrollOffset, 0);
        QVERIFY(GetInk(m_Palette->FindRowOf((*m_Library)["Beta"].id)).right() < right);
    }

private:
    /// What is painted of a row, but for its background and the scroll bar.
    QRect GetInk(int row)
    {
        int const barWidth = m_Palette->m_ScrollBar->isVisible() ? 20 : 0;
        QRect const place = m_Palette->GetRowRect(row).adjusted(0, 2, -barWidth, -2);
        return QRegion(m_Palette->grab(place).createHeuristicMask()).boundingRect();
    }

    void TellOfChanges()
    {
        TellInvalidated();
        Settle();
    }
};

NODEBROWSER_TEST(TestPaletteRows)

#include "tst_paletterows.moc"
