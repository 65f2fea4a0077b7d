#include "palettetest.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDataStream>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTabBar>
#include <QToolTip>

using namespace tarno::datamodel;

/// Keys of the palette, most of them with the focus in the search field.
class TestPaletteKeys : public PaletteTest
{
    Q_OBJECT

private Q_SLOTS:
    void movesTheSelection_data();
    void movesTheSelection();
    void keepsTheSelectionInSight();
    void activatesOnEnterAndDoubleClick();
    void typesIntoTheSearchFromAnywhere();
    void leavesInStepsOnEscape();
    void actsOnTheSelectedRow();
    void leavesOtherKeysToTheHost();
    void leavesUndoToTheHostUntilTyped();
    void leavesComposingToTheInputMethod();
    void survivesListenersThatDeleteIt();
};

void TestPaletteKeys::movesTheSelection_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("after");
    QTest::newRow("down to the first") << -1 << int(Qt::Key_Down) << 0;
    QTest::newRow("down") << 3 << int(Qt::Key_Down) << 4;
    QTest::newRow("down at the end") << 31 << int(Qt::Key_Down) << 31;
    QTest::newRow("up") << 3 << int(Qt::Key_Up) << 2;
    QTest::newRow("up at the start") << 0 << int(Qt::Key_Up) << 0;
    QTest::newRow("home") << 20 << int(Qt::Key_Home) << 0;
    QTest::newRow("end") << 3 << int(Qt::Key_End) << 31;
    QTest::newRow("page down") << 2 << int(Qt::Key_PageDown) << 15;
    QTest::newRow("page up") << 20 << int(Qt::Key_PageUp) << 7;
}

void TestPaletteKeys::movesTheSelection()
{
    QFETCH(int, before);
    QFETCH(int, key);
    QFETCH(int, after);
    // 14 rows are in sight, of which a page keeps one.
    m_Palette->resize(300, m_Palette->m_HeaderHeight + 14 * 24);
    m_Palette->SelectRow(before);
    QSignalSpy const changes(m_Palette, &CNodeBrowser::SelectionChanged);
    Press(Qt::Key(key));
    QCOMPARE(m_Palette->GetSelectedRow(), after);
    QCOMPARE(changes.count(), before == after ? 0 : 1);
    QTest::keyClick(m_Palette, Qt::Key_Home);
    QCOMPARE(m_Palette->GetSelectedRow(), 0);
}

void TestPaletteKeys::keepsTheSelectionInSight()
{
    for (Qt::Key const key : {Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageUp, Qt::Key_Up, Qt::Key_Home,
                              Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_Down}) {
        Press(key);
        QRect const row = m_Palette->GetRowRect(m_Palette->GetSelectedRow());
        QVERIFY(m_Palette->GetRowArea().contains(row.adjusted(0, 0, 0, -1)));
    }
    m_Palette->m_ScrollBar->setValue(0);
    QTest::mouseClick(m_Palette, Qt::LeftButton, {}, QPoint(5, m_Palette->m_HeaderHeight));
    m_Palette->m_ScrollBar->setValue(240);
    Press(Qt::Key_Down);
    QCOMPARE(m_Palette->GetSelectedRow(), 10); // the first in sight, since none was selected
}

void TestPaletteKeys::activatesOnEnterAndDoubleClick()
{
    QSignalSpy const activations(m_Palette, &CNodePalette::ItemActivated);
    QSignalSpy const changes(m_Palette, &CNodeBrowser::SelectionChanged);
    QStringList order;
    connect(m_Palette, &CNodeBrowser::SelectionChanged, [&] { order << "selected"; });
    connect(m_Palette, &CNodePalette::ItemActivated, [&] { order << "activated"; });
    // No paint, and no event loop, between typing and Enter.
    QTest::keyClicks(m_Palette->m_SearchEdit, "beta");
    Press(Qt::Key_Return);
    QCOMPARE(order, QStringList({"selected", "activated"}));
    QVERIFY(activations.at(0).at(0).value<ItemID>() == (*m_Library)["Beta"].id);
    QCOMPARE(activations.at(0).at(1).toInt(), int(CNodePalette::eByKey));

    QPoint const row = m_Palette->GetRowRect(0).center();
    m_Host->TakeCalls();
    QTest::mouseDClick(m_Palette, Qt::LeftButton, {}, row);
    QCOMPARE(activations.count(), 2);
    QCOMPARE(activations.at(1).at(1).toInt(), int(CNodePalette::eByDoubleClick));
    QCOMPARE(m_Host->TakeCalls().filter("SetGlobalTarnoCompoundTarget").size(), 1);

    Type("nothing is called so");
    Press(Qt::Key_Enter);
    QCOMPARE(activations.count(), 2);

    // A listener that searches for something else does not change what was meant.
    Type("beta");
    connect(m_Palette, &CNodeBrowser::SelectionChanged, [&] { Type("alpha"); });
    Press(Qt::Key_Enter);
    QVERIFY(activations.at(2).at(0).value<ItemID>() == (*m_Library)["Beta"].id);
}

void TestPaletteKeys::typesIntoTheSearchFromAnywhere()
{
    m_Palette->m_TabBar->setFocus();
    QTest::keyClicks(m_Palette->m_TabBar, "be");
    QCOMPARE(m_Palette->m_SearchEdit->text(), QString("be"));
    QVERIFY(m_Palette->m_SearchEdit->hasFocus());
    m_HostField->setFocus();
    QTest::mouseClick(m_Palette, Qt::LeftButton, {}, m_Palette->GetRowRect(0).center());
    QTest::keyClicks(m_Window->focusWidget(), "t");
    QTest::keyClick(m_Palette, Qt::Key_Backspace);
    QTest::keyClicks(m_Palette, "ta");
    QCOMPARE(m_Palette->m_SearchEdit->text(), QString("beta"));
    QCOMPARE(m_Palette->GetRows().first(), QString("Beta"));
}

void TestPaletteKeys::leavesInStepsOnEscape()
{
    QSignalSpy const dismissals(m_Palette, &CNodePalette::Dismissed);
    Type("blur");
    Press(Qt::Key_Escape);
    QCOMPARE(m_Palette->m_SearchEdit->text(), QString());
    QVERIFY(m_Palette->m_SearchEdit->hasFocus());
    QCOMPARE(m_Palette->GetSelected(), QString("Alpha Blur")); // still what the search found
    QCOMPARE(dismissals.count(), 0);
    Press(Qt::Key_Escape);
    QCOMPARE(dismissals.count(), 1);
    QVERIFY(m_HostField->hasFocus());
}

void TestPaletteKeys::actsOnTheSelectedRow()
{
    Type("alpha");
    Press(Qt::Key_F2);
    QCOMPARE(m_Palette->m_RenameCount, 1);
    QContextMenuEvent menuEvent(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(m_Palette->m_SearchEdit, &menuEvent);
    Press(Qt::Key_Menu);
    QCOMPARE(m_Palette->m_Menus, QStringList("0 at its row"));

    m_Palette->m_SearchEdit->deselect();
    Press(Qt::Key_C, Qt::ControlModifier);
    QMimeData const* const copied = QApplication::clipboard()->mimeData();
    QDataStream stream(copied->data("tarno/toc.key"));
    QString text;
    stream >> text;
    QCOMPARE(text.toStdString(), (*m_Library)["Alpha Blur"].id.Serialize());
    m_Palette->m_SearchEdit->selectAll();
    Press(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QString("alpha"));

    Press(Qt::Key_Return, Qt::AltModifier);
    QVERIFY(QToolTip::text().contains("Compound"));
    (*m_Library)["Alpha Blur"].canModify = false;
    Press(Qt::Key_F2);
    QCOMPARE(m_Palette->m_RenameCount, 1);
}

void TestPaletteKeys::leavesOtherKeysToTheHost()
{
    struct Watch : QObject
    {
        QList<int> keys;
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::KeyPress)
                keys << static_cast<QKeyEvent*>(event)->key();
            return false;
        }
    } watch;
    m_Window->installEventFilter(&watch);
    for (Qt::Key const key : {Qt::Key_Down, Qt::Key_F2, Qt::Key_Return, Qt::Key_Escape, Qt::Key_F5})
        Press(key);
    Press(Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(watch.keys, QList<int>({Qt::Key_F5, Qt::Key_Control, Qt::Key_S}));

    QKeyEvent taken(QEvent::ShortcutOverride, Qt::Key_F2, Qt::NoModifier);
    taken.ignore();
    QApplication::sendEvent(m_Palette->m_SearchEdit, &taken);
    QVERIFY(taken.isAccepted());
    QKeyEvent left(QEvent::ShortcutOverride, Qt::Key_F5, Qt::NoModifier);
    left.ignore();
    QApplication::sendEvent(m_Palette->m_SearchEdit, &left);
    QVERIFY(!left.isAccepted());
}

void TestPaletteKeys::leavesUndoToTheHostUntilTyped()
{
    QAction undo(m_Window.get());
    undo.setShortcut(QKeySequence::Undo);
    m_Window->addAction(&undo);
    QSignalSpy const undone(&undo, &QAction::triggered);
    QTest::keyClicks(m_Palette->m_SearchEdit, "be");
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(undone.count(), 0);
    QCOMPARE(m_Palette->m_SearchEdit->text(), QString());
    QTest::keyClicks(m_Palette->m_SearchEdit, "be");
    m_HostField->setFocus();
    m_Palette->setFocus();
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(undone.count(), 1);
    QCOMPARE(m_Palette->m_SearchEdit->text(), QString("be"));
    undo.setShortcut(QKeySequence());
    Press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_Palette->m_SearchEdit->text(), QString("be"));
}

void TestPaletteKeys::leavesComposingToTheInputMethod()
{
    QSignalSpy const activations(m_Palette, &CNodePalette::ItemActivated);
    QInputMethodEvent composing("be", {});
    QSignalSpy const dismissals(m_Palette, &CNodePalette::Dismissed);
    m_Palette->setWindowFlags(Qt::Popup); // closes on any Escape that reaches it
    m_Palette->show();
    m_Palette->setFocus();
    QApplication::sendEvent(m_Palette->m_SearchEdit, &composing);
    for (Qt::Key const key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Escape})
        QTest::keyClick(m_Palette->windowHandle(), key);
    QVERIFY(m_Palette->isVisible());
    QCOMPARE(activations.count() + dismissals.count(), 0);
    QCOMPARE(m_Palette->GetSelectedRow(), -1);
    QInputMethodEvent committed("", {});
    committed.setCommitString("beta");
    QApplication::sendEvent(m_Palette->m_SearchEdit, &committed);
    Press(Qt::Key_Return);
    QCOMPARE(activations.count(), 1);
}

void TestPaletteKeys::survivesListenersThatDeleteIt()
{
    auto const deleteIt = [this] {
        delete m_Palette;
    };
    connect(m_Palette, &CNodePalette::ItemActivated, this, deleteIt);
    Press(Qt::Key_Return);
    MakePalette(CNodeBrowser::eConfigNodes);
    connect(m_Palette, &CNodeBrowser::SelectionChanged, this, deleteIt);
    Press(Qt::Key_Down);
    MakePalette(CNodeBrowser::eConfigNodes);
    connect(m_Palette, &CNodePalette::Dismissed, this, deleteIt);
    Press(Qt::Key_Escape);
    MakePalette(CNodeBrowser::eConfigNodes);
    connect(m_Palette, &CNodeBrowser::SelectionChanged, this, deleteIt);
    Type("beta");
    MakePalette(CNodeBrowser::eConfigNodes);
    connect(m_Palette, &CNodePalette::RowCountChanged, this, deleteIt);
    Type("beta");
}

NODEBROWSER_TEST(TestPaletteKeys)

#include "tst_palettekeys.moc"
