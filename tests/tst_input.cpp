#include "browsertest.h"

using namespace tarno::datamodel;

namespace {

/// Notes context menus instead of opening them.
class MenuNotingBrowser : public TestBrowser
{
public:
    using TestBrowser::TestBrowser;

    QString m_Menus;

protected:
    void PopContexMenu(QPoint const& globalPos, unsigned long index) override
    {
        bool const isHere = mapFromGlobal(globalPos) == GetRowCenter(int(index));
        m_Menus += QString("%1 at %2").arg(index).arg(isHere ? "row" : "somewhere else");
    }
};

} // namespace

class TestInput : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void selectsWithPresses()
    {
        // A configuration, a button and a row: -1 is the header, 4 is below the rows. Whether the
        // row is selected, and the menu that opens.
        std::tuple<int, Qt::MouseButton, int, bool, char const*> const rows[] = {
            {0, Qt::LeftButton, 2, true, ""},          {0, Qt::LeftButton, 4, false, ""},
            {0, Qt::LeftButton, -1, false, ""},        {0, Qt::RightButton, 1, true, "1 at row"},
            {0, Qt::RightButton, 4, false, ""},        {1, Qt::RightButton, 1, false, ""},
            {2, Qt::RightButton, 1, true, "1 at row"}, {0, Qt::MiddleButton, 1, false, ""}};
        for (auto const& [config, button, row, isSelected, menus] : rows) {
            MenuNotingBrowser browser(static_cast<CNodeBrowser::eConfigType>(config));
            QVERIFY(!browser.IsSelectionType());
            browser.SetItemLibrary(m_Library->GetAccessor());
            browser.TabChanged(CNodeBrowser::eConfigAll);
            browser.Paint();
            QTest::mouseClick(&browser, Qt::LeftButton, {}, browser.GetRowCenter(3));
            QVERIFY(browser.IsSelectionType());

            QSignalSpy selections(&browser, SIGNAL(SelectionChanged()));
            QTest::mousePress(&browser, button, {},
                              row < 0 ? QPoint(250, browser.m_HeaderHeight)
                                      : browser.GetRowCenter(row));
            QVERIFY(browser.GetSelection()
                    == (isSelected ? m_Library->m_Listed[std::size_t(row)]->id : ItemID()));
            QVERIFY(!browser.IsSelectionType());
            QCOMPARE(selections.count(), isSelected ? 1 : 0);
            QCOMPARE(browser.m_Menus, QString(menus));
        }
    }

    void makesCompoundCurrentOnDoubleClick()
    {
        MakeBrowser();
        Click(3);
        m_Host->TakeCalls();
        QSignalSpy selections(m_Browser.get(), SIGNAL(SelectionChanged()));
        for (int row = -1; row < 5; ++row)
            Send(QEvent::MouseButtonDblClick, At(row), Qt::LeftButton, Qt::LeftButton);
        QCOMPARE(m_Host->TakeCalls(), (QStringList{"SetGlobalTarnoCompoundTarget a compound -",
                                                   "SetGlobalTarnoCompoundTarget b signature -"}));
        QVERIFY(m_Browser->GetSelection() == (*m_Library)["d type"].id);
        QCOMPARE(selections.count(), 0);
    }

    void showsToolTipOfCompounds()
    {
        TestObject const& object = m_Library->AddObject((*m_Library)["a compound"],
                                                        m_Host->m_Database.AddSource("project"));
        QString const uid = QString::fromStdString(object.m_Uid);
        m_Library->AddObject(m_Library->Add(TarnoType::gCompound, "e", "", "Compound:e"), nullptr);
        MakeBrowser();
        m_Browser->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_Browser.get()));
        m_Host->TakeCalls();
        // Without the service, a database UID or an object there is none.
        QVERIFY(Hover(0));
        m_Host->AddRevisionControl();
        QVERIFY(Hover(1) && Hover(4));
        QVERIFY(m_Host->TakeCalls().isEmpty() && !QToolTip::isVisible());

        // Any other item hides it.
        for (int const row : {2, 9, -1}) {
            QVERIFY(Hover(0));
            QCOMPARE(m_Host->TakeCalls(), QStringList("GetToolTip " + uid + " ':compound.png'"));
            QCOMPARE(QToolTip::text(), "state of " + uid);
            QVERIFY(!Hover(row));
            QTRY_VERIFY(!QToolTip::isVisible());
        }
        // It may outlast the library and the panel.
        QVERIFY(Hover(0));
        m_Library.reset();
        QVERIFY(!Hover(0));
        // So may all that is done with the panel.
        m_Browser->SearchTextChange("a");
        m_Browser->Paint();
        Click(0);
        QVERIFY(m_Browser->GetSelection().IsNull() && !m_Browser->IsSelectionType());
        m_Browser.reset();
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    void scrollsByThreeRows()
    {
        for (int i = 0; i < 40; ++i)
            m_Library->Add(TarnoType::gSolver, "more");
        MakeBrowser();
        // Where the wheel turns, how, and how far that scrolls: always as far, and none as down.
        std::tuple<int, QPoint, int> const turns[] = {{100, {0, 120}, -72}, {100, {0, -1200}, 72},
                                                      {100, {0, 0}, 72},    {100, {120, 0}, -72},
                                                      {43, {0, 120}, -72},  {42, {0, 120}, 0}};
        QScrollBar& bar = *m_Browser->findChild<QScrollBar*>();
        for (auto const& [y, delta, way] : turns) {
            bar.setValue(100);
            QCOMPARE(Wheel(QPoint(250, y), delta), way != 0);
            QCOMPARE(bar.value(), 100 + way);
        }
        for (int i = 0; i < 40; ++i)
            Wheel(QPoint(100, 399), QPoint(0, -120));
        QCOMPARE(bar.value(), 44 * 24 - (400 - 43));
    }

    /// A scroll bar that never had a range keeps the toolkit's own, hidden or not.
    void scrollsRowsThatAllFit()
    {
        MakeBrowser();
        QVERIFY(Wheel(QPoint(100, 100), QPoint(0, -120)));
        QCOMPARE(m_Browser->GetItemIndexAt(QPoint(100, 44)), 3ul);
    }

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Library->Add(TarnoType::gCompound, "a compound");
        m_Library->Add(TarnoType::gCompound, "b signature").isAbstract = true;
        m_Library->Add(TarnoType::gSolver, "c solver");
        m_Library->Add(LibType::gType, "d type");
    }

private:
    /// The middle of a row, or the last line of the header for -1.
    QPoint At(int row) const
    {
        return row < 0 ? QPoint(250, m_Browser->m_HeaderHeight) : m_Browser->GetRowCenter(row);
    }

    /// Whether the event was accepted; it counts as handled in either case.
    bool Hover(int row)
    {
        QPoint const point = At(row);
        QHelpEvent event(QEvent::ToolTip, point, m_Browser->mapToGlobal(point));
        bool const isHandled = static_cast<QObject*>(m_Browser.get())->event(&event);
        return isHandled && event.isAccepted();
    }

    bool Wheel(QPoint const& point, QPoint const& delta)
    {
        QWheelEvent event(point, m_Browser->mapToGlobal(point), QPoint(), delta, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_Browser.get(), &event);
        return event.isAccepted();
    }
};

NODEBROWSER_TEST(TestInput)

#include "tst_input.moc"
