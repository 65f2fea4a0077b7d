#include "browsertest.h"

#include <QHelpEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

using namespace tarno::datamodel;

namespace {

/// Counts paints and notes context menus instead of opening them.
class WatchedBrowser : public TestBrowser
{
public:
    using TestBrowser::TestBrowser;

    int m_PaintCount = 0;
    QStringList m_Menus;

protected:
    void PopContexMenu(QPoint const& globalPos, unsigned long index) override
    {
        bool const isHere = mapFromGlobal(globalPos) == GetRowCenter(int(index));
        m_Menus << QString("%1 at %2").arg(index).arg(isHere ? "row" : "somewhere else");
    }

    void paintEvent(QPaintEvent* event) override
    {
        ++m_PaintCount;
        TestBrowser::paintEvent(event);
    }
};

} // namespace

class TestInput : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void selectsWithPresses_data();
    void selectsWithPresses();
    void repaintsAtOnceForSelectionOnly();
    void makesCompoundCurrentOnDoubleClick();
    void showsToolTipOfCompounds();
    void showsNoToolTipWithoutDatabaseObject();
    void survivesItsEndWithToolTip();
    void scrollsByThreeRows_data();
    void scrollsByThreeRows();
    void scrollsRowsThatAllFit();
    void tellsWhetherSelectionIsType();

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Library->Add(TarnoType::gCompound, "a compound");
        m_Library->Add(TarnoType::gCompound, "b signature").isAbstract = true;
        m_Library->Add(TarnoType::gSolver, "c solver");
        m_Library->Add(LibType::gType, "d type");
        MakeBrowser(CNodeBrowser::eConfigNodes);
    }

private:
    void MakeBrowser(CNodeBrowser::eConfigType config)
    {
        m_Watched = new WatchedBrowser(config);
        m_Browser.reset(m_Watched);
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->TabChanged(CNodeBrowser::eConfigAll);
        m_Browser->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_Browser.get()));
        m_Browser->Paint();
    }

    /// Whether the event counted as handled, and whether it was accepted.
    std::pair<bool, bool> Hover(QPoint const& point)
    {
        QHelpEvent event(QEvent::ToolTip, point, m_Browser->mapToGlobal(point));
        bool const isHandled = static_cast<QObject*>(m_Browser.get())->event(&event);
        return std::make_pair(isHandled, event.isAccepted());
    }

    bool Wheel(QPoint const& point, QPoint const& delta)
    {
        QWheelEvent event(point, m_Browser->mapToGlobal(point), QPoint(), delta, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_Browser.get(), &event);
        return event.isAccepted();
    }

    /// The panel, again.
    WatchedBrowser* m_Watched = nullptr;
};

void TestInput::selectsWithPresses_data()
{
    QTest::addColumn<int>("config");
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isSelected");
    QTest::addColumn<QString>("menus");

    auto const row = [](char const* name, int config, Qt::MouseButton button, int row,
                        bool isSelected, char const* menus) {
        QTest::newRow(name) << config << int(button) << row << isSelected << menus;
    };
    row("left", 0, Qt::LeftButton, 2, true, "");
    row("left below the rows", 0, Qt::LeftButton, 4, false, "");
    row("left in the header", 0, Qt::LeftButton, -1, false, "");
    row("right", 0, Qt::RightButton, 1, true, "1 at row");
    row("right below the rows", 0, Qt::RightButton, 4, false, "");
    row("right in the type chooser", 1, Qt::RightButton, 1, false, "");
    row("right in another configuration", 2, Qt::RightButton, 1, true, "1 at row");
    row("middle", 0, Qt::MiddleButton, 1, false, "");
}

void TestInput::selectsWithPresses()
{
    QFETCH(int, config);
    QFETCH(int, button);
    QFETCH(int, row);
    QFETCH(bool, isSelected);
    MakeBrowser(static_cast<CNodeBrowser::eConfigType>(config));
    QTest::mouseClick(m_Browser.get(), Qt::LeftButton, Qt::NoModifier, m_Browser->GetRowCenter(3));
    QVERIFY(m_Browser->GetSelection() == (*m_Library)["d type"].id);

    QSignalSpy selections(m_Browser.get(), SIGNAL(SelectionChanged()));
    QPoint const point =
        row < 0 ? QPoint(250, m_Browser->m_HeaderHeight) : m_Browser->GetRowCenter(row);
    QTest::mouseClick(m_Browser.get(), static_cast<Qt::MouseButton>(button), Qt::NoModifier, point);
    QCOMPARE(m_Browser->m_SelectedIndex,
             isSelected ? static_cast<unsigned long>(row) : 0xFFFFFFFFul);
    QCOMPARE(m_Browser->GetSelection().IsNull(), !isSelected);
    QCOMPARE(selections.count(), isSelected ? 1 : 0);
    QTEST(m_Watched->m_Menus.join(" "), "menus");
    if (isSelected && button == Qt::LeftButton)
        QCOMPARE(m_Browser->m_PressPos, point);
}

void TestInput::repaintsAtOnceForSelectionOnly()
{
    QTRY_VERIFY(m_Watched->m_PaintCount > 0);
    QApplication::processEvents();
    m_Watched->m_PaintCount = 0;
    Send(QEvent::MouseButtonPress, m_Browser->GetRowCenter(1), Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(m_Watched->m_PaintCount, 1);
    // The highlight stays until something else paints.
    Send(QEvent::MouseButtonPress, QPoint(250, 5 + m_Browser->m_HeaderHeight + 24 * 4),
         Qt::LeftButton, Qt::LeftButton);
    QApplication::processEvents();
    QCOMPARE(m_Watched->m_PaintCount, 1);
    QCOMPARE(m_Browser->m_SelectedIndex, 0xFFFFFFFFul);
}

void TestInput::makesCompoundCurrentOnDoubleClick()
{
    m_Host->TakeCalls();
    QSignalSpy selections(m_Browser.get(), SIGNAL(SelectionChanged()));
    m_Browser->m_SelectedIndex = 3;
    QStringList const expected[] = {{"SetGlobalTarnoCompoundTarget a compound -"},
                                    {"SetGlobalTarnoCompoundTarget b signature -"},
                                    {},
                                    {},
                                    {}};
    for (int row = 0; row < 5; ++row) {
        Send(QEvent::MouseButtonDblClick, m_Browser->GetRowCenter(row), Qt::LeftButton,
             Qt::LeftButton);
        QCOMPARE(m_Host->TakeCalls(), expected[row]);
    }
    Send(QEvent::MouseButtonDblClick, QPoint(250, m_Browser->m_HeaderHeight), Qt::LeftButton,
         Qt::LeftButton);
    QVERIFY(m_Host->TakeCalls().isEmpty());
    QCOMPARE(m_Browser->m_SelectedIndex, 3ul);
    QCOMPARE(selections.count(), 0);
}

void TestInput::showsToolTipOfCompounds()
{
    m_Host->AddRevisionControl();
    TestObject const& object =
        m_Library->AddObject((*m_Library)["a compound"], m_Host->m_Database.AddSource("project"));
    QString const uid = QString::fromStdString(object.m_Uid);
    m_Host->TakeCalls();
    QVERIFY(Hover(m_Browser->GetRowCenter(0)).first);
    QCOMPARE(m_Host->TakeCalls(), QStringList("GetToolTip " + uid + " ':compound.png'"));
    QCOMPARE(QToolTip::text(), "state of " + uid);

    // Any other item hides it.
    for (QPoint const& point : {m_Browser->GetRowCenter(2), m_Browser->GetRowCenter(9),
                                QPoint(5, m_Browser->m_HeaderHeight)}) {
        Hover(m_Browser->GetRowCenter(0));
        QVERIFY(QToolTip::isVisible());
        QCOMPARE(Hover(point), std::make_pair(true, false));
        QTRY_VERIFY(!QToolTip::isVisible());
    }
}

void TestInput::showsNoToolTipWithoutDatabaseObject()
{
    m_Library->Add(TarnoType::gCompound, "e", "", "Compound:e");
    m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary);
    m_Browser->Paint();
    m_Host->TakeCalls();
    QVERIFY(Hover(m_Browser->GetRowCenter(0)).first);
    m_Host->AddRevisionControl();
    QVERIFY(Hover(m_Browser->GetRowCenter(0)).first);
    QVERIFY(Hover(m_Browser->GetRowCenter(4)).first);
    QVERIFY(m_Host->TakeCalls().isEmpty());
    QVERIFY(!QToolTip::isVisible());
}

void TestInput::survivesItsEndWithToolTip()
{
    m_Host->AddRevisionControl();
    m_Library->AddObject((*m_Library)["a compound"], m_Host->m_Database.AddSource("project"));
    Hover(m_Browser->GetRowCenter(0));
    QVERIFY(QToolTip::isVisible());
    m_Library.reset();
    m_Browser->Paint();
    Hover(m_Browser->GetRowCenter(0));
    m_Browser.reset();
    QApplication::processEvents();
    QToolTip::hideText();
    QTRY_VERIFY(!QToolTip::isVisible());
}

void TestInput::scrollsByThreeRows_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<QPoint>("delta");
    QTest::addColumn<int>("offset");

    QTest::newRow("up") << 100 << QPoint(0, 120) << 100 - 72;
    QTest::newRow("down") << 100 << QPoint(0, -120) << 100 + 72;
    QTest::newRow("as far, however fast") << 100 << QPoint(0, -1200) << 100 + 72;
    QTest::newRow("no way counts as down") << 100 << QPoint(0, 0) << 100 + 72;
    QTest::newRow("sideways") << 100 << QPoint(120, 0) << 100 - 72;
    QTest::newRow("first line of the rows") << 43 << QPoint(0, 120) << 100 - 72;
    QTest::newRow("header") << 42 << QPoint(0, 120) << 100;
}

void TestInput::scrollsByThreeRows()
{
    QFETCH(int, y);
    QFETCH(QPoint, delta);
    QFETCH(int, offset);
    for (int i = 0; i < 40; ++i)
        m_Library->Add(TarnoType::gSolver, "more");
    m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary);
    m_Browser->Paint();
    m_Browser->m_ScrollBar->setValue(100);
    bool const isAccepted = Wheel(QPoint(250, y), delta);
    QCOMPARE(m_Browser->m_ScrollOffset, offset);
    QCOMPARE(isAccepted, offset != 100);

    for (int i = 0; i < 40; ++i)
        Wheel(QPoint(100, 100), QPoint(0, -120));
    QCOMPARE(m_Browser->m_ScrollOffset, 44 * 24 - (400 - 43));
}

/// A scroll bar that never had a range keeps the toolkit's own, hidden or not.
void TestInput::scrollsRowsThatAllFit()
{
    QVERIFY(m_Browser->m_ScrollBar->isHidden());
    QVERIFY(Wheel(QPoint(100, 100), QPoint(0, -120)));
    QCOMPARE(m_Browser->m_ScrollOffset, 72);
    QCOMPARE(m_Browser->GetItemIndexAt(QPoint(100, 44)), 3ul);
}

void TestInput::tellsWhetherSelectionIsType()
{
    QVERIFY(!m_Browser->IsSelectionType());
    for (int row = 0; row < 6; ++row) {
        QTest::mouseClick(m_Browser.get(), Qt::LeftButton, Qt::NoModifier,
                          m_Browser->GetRowCenter(row));
        QCOMPARE(m_Browser->IsSelectionType(), row == 3);
    }
    QVERIFY(!TestBrowser().IsSelectionType());
}

NODEBROWSER_TEST_MAIN(TestInput)

#include "tst_input.moc"
