#include "paneltest.h"
#include "testbrowser.h"

#include <QDrag>
#include <QHelpEvent>
#include <QMimeData>
#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

#include <functional>

using namespace tarno::datamodel;

namespace {

/// The drags that were run: what the last one carried, and what happens meanwhile.
struct SDrags
{
    int count = 0;
    int cancelCount = 0;
    QStringList formats;
    QByteArray payload;
    Qt::DropActions actions;
    QObject* source = nullptr;
    std::function<void()> meanwhile;
} drags;

} // namespace

// These take the place of the toolkit's own, which need a person with a mouse.
Qt::DropAction QDrag::exec(Qt::DropActions supportedActions)
{
    ++drags.count;
    drags.formats = mimeData()->formats();
    drags.payload = mimeData()->data("tarno/toc.key");
    drags.actions = supportedActions;
    drags.source = source();
    QPointer<QDrag> const self(this);
    if (drags.meanwhile)
        drags.meanwhile();
    delete self.data();
    return Qt::IgnoreAction;
}

void QDrag::cancel()
{
    ++drags.cancelCount;
}

class TestInput : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void selectsWithPresses_data();
    void selectsWithPresses();
    void repaintsAtOnceForSelectionOnly();
    void startsDragAtDistance();
    void dragsTheIdentifier();
    void survivesWhatHappensDuringDrag_data();
    void survivesWhatHappensDuringDrag();
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
        PanelTest::SetUp();
        drags = SDrags();
        m_Library.reset(new TestLibrary);
        m_Library->Add(TarnoType::gCompound, "a compound");
        m_Library->Add(TarnoType::gCompound, "b signature").isAbstract = true;
        m_Library->Add(TarnoType::gSolver, "c solver");
        m_Library->Add(LibType::gType, "d type");
        MakeBrowser(CNodeBrowser::eConfigNodes);
    }

    void TearDown() override
    {
        m_Browser.reset();
        m_Library.reset();
        PanelTest::TearDown();
    }

private:
    /// Counts paints and notes context menus instead of opening them.
    class Browser : public TestBrowser
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

    void MakeBrowser(CNodeBrowser::eConfigType config)
    {
        m_Browser.reset(new Browser(config));
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->TabChanged(CNodeBrowser::eConfigAll);
        m_Browser->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_Browser.get()));
        m_Browser->Paint();
    }

    void Send(QEvent::Type type, QPoint const& point, Qt::MouseButton button,
              Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, point, m_Browser->mapToGlobal(point), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(m_Browser.get(), &event);
    }

    /// Presses a row and moves with the button down as far as it takes.
    void Drag(int row)
    {
        QPoint const start = m_Browser->GetRowCenter(row);
        Send(QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
        Send(QEvent::MouseMove, start + QPoint(QApplication::startDragDistance(), 0), Qt::NoButton,
             Qt::LeftButton);
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

    std::unique_ptr<TestLibrary> m_Library;
    std::unique_ptr<Browser> m_Browser;
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
    QTEST(m_Browser->m_Menus.join(" "), "menus");
    if (isSelected && button == Qt::LeftButton)
        QCOMPARE(m_Browser->m_PressPos, point);
}

void TestInput::repaintsAtOnceForSelectionOnly()
{
    QTRY_VERIFY(m_Browser->m_PaintCount > 0);
    QApplication::processEvents();
    m_Browser->m_PaintCount = 0;
    Send(QEvent::MouseButtonPress, m_Browser->GetRowCenter(1), Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(m_Browser->m_PaintCount, 1);
    // The highlight stays until something else paints.
    Send(QEvent::MouseButtonPress, QPoint(250, 5 + m_Browser->m_HeaderHeight + 24 * 4),
         Qt::LeftButton, Qt::LeftButton);
    QApplication::processEvents();
    QCOMPARE(m_Browser->m_PaintCount, 1);
    QCOMPARE(m_Browser->m_SelectedIndex, 0xFFFFFFFFul);
}

void TestInput::startsDragAtDistance()
{
    int const distance = QApplication::startDragDistance();
    QPoint const start = m_Browser->GetRowCenter(3);
    Send(QEvent::MouseMove, start + QPoint(500, 0), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(drags.count, 0);

    Send(QEvent::MouseButtonPress, start, Qt::LeftButton, Qt::LeftButton);
    Send(QEvent::MouseMove, start + QPoint(distance - 1, 0), Qt::NoButton, Qt::LeftButton);
    Send(QEvent::MouseMove, start + QPoint(distance, 0), Qt::NoButton, Qt::NoButton);
    Send(QEvent::MouseMove, start + QPoint(distance, 0), Qt::NoButton, Qt::RightButton);
    QCOMPARE(drags.count, 0);
    Send(QEvent::MouseMove, start + QPoint(1, 1 - distance), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(drags.count, 1);
    QCOMPARE(m_Browser->m_SelectedIndex, 3ul);
}

void TestInput::dragsTheIdentifier()
{
    m_Library->Add(LibType::gType, "e", "", "A\xE4");
    m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary);
    m_Browser->Paint();
    Drag(4);
    QCOMPARE(drags.formats, QStringList("tarno/toc.key"));
    QCOMPARE(drags.actions, Qt::DropActions(Qt::CopyAction));
    QCOMPARE(drags.source, static_cast<QObject*>(m_Browser.get()));
    // "item:A" and a letter outside ASCII: the number of bytes, then UTF-16, big end first.
    QCOMPARE(drags.payload.toHex(), QByteArray("0000000e"
                                               "006900740065006d003a004100e4"));
}

void TestInput::survivesWhatHappensDuringDrag_data()
{
    QTest::addColumn<int>("event");
    QTest::newRow("panel deleted") << 0;
    QTest::newRow("library closed") << 1;
    QTest::newRow("library replaced") << 2;
    QTest::newRow("list rebuilt") << 3;
}

void TestInput::survivesWhatHappensDuringDrag()
{
    QFETCH(int, event);
    TestLibrary other("B");
    drags.meanwhile = [&] {
        if (event == 0) {
            m_Browser.reset();
            return;
        }
        if (event == 1)
            m_Library.reset();
        if (event == 2)
            m_Browser->SetItemLibrary(other.GetAccessor());
        if (event == 3)
            m_Library->Remove((*m_Library)["c solver"]);
        m_Browser->m_ItemListDirty = true;
        m_Browser->Paint();
    };
    // The panel is gone when the event returns to the toolkit.
    Drag(2);
    QCOMPARE(drags.count, 1);
    // Without the panel there is nothing left to drag.
    QCOMPARE(drags.cancelCount, event == 0 ? 1 : 0);
    if (m_Browser)
        m_Browser->Paint();
    if (!m_Library)
        return;
    drags.meanwhile = nullptr;
    MakeBrowser(CNodeBrowser::eConfigNodes);
    Drag(0);
    QCOMPARE(drags.count, 2);
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

    // What is not a compound hides it.
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
