#include "palettetest.h"

using namespace tarno::datamodel;

/// Keys of the palette, most of them with the focus in the search field.
class TestPaletteKeys : public PaletteTest
{
    Q_OBJECT

private Q_SLOTS:
    void movesTheSelection()
    {
        // 14 rows are in sight, of which a page keeps one.
        m_Palette->resize(300, m_Palette->m_HeaderHeight + 14 * 24);
        std::tuple<int, Qt::Key, int> const rows[] = {
            {-1, Qt::Key_Down, 0}, {0, Qt::Key_Down, 1},      {31, Qt::Key_Down, 31},
            {3, Qt::Key_Up, 2},    {0, Qt::Key_Up, 0},        {20, Qt::Key_Home, 0},
            {3, Qt::Key_End, 31},  {2, Qt::Key_PageDown, 15}, {20, Qt::Key_PageUp, 7}};
        for (auto const& [before, key, after] : rows) {
            m_Palette->SelectRow(before);
            QSignalSpy const changes(m_Palette, &CNodeBrowser::SelectionChanged);
            Press(key);
            QCOMPARE(m_Palette->GetSelectedRow(), after);
            QCOMPARE(changes.count(), before == after ? 0 : 1);
        }
        // With the focus in the rows, too, where letters go to the search.
        m_HostField->setFocus();
        QTest::keyClick(m_Palette, Qt::Key_Home);
        QCOMPARE(m_Palette->GetSelectedRow(), 0);
        QTest::keyClick(m_Palette, 'b');
        QVERIFY(m_Palette->m_SearchEdit->hasFocus());
        QCOMPARE(m_Palette->m_SearchEdit->text(), QString("b"));
    }

    void keepsTheSelectionInSight()
    {
        for (Qt::Key const key : {Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageUp, Qt::Key_Up,
                                  Qt::Key_Home, Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_Down}) {
            Press(key);
            QRect const row = m_Palette->GetRowRect(m_Palette->GetSelectedRow());
            QVERIFY(m_Palette->GetRowArea().contains(row.adjusted(0, 0, 0, -1)));
        }
        m_Palette->m_ScrollBar->setValue(0);
        QTest::mouseClick(m_Palette, Qt::LeftButton, {}, QPoint(5, m_Palette->m_HeaderHeight));
        m_Palette->m_ScrollBar->setValue(240);
        Press(Qt::Key_Down);
        QCOMPARE(m_Palette->GetSelectedRow(), 10); // the first in sight, since none was selected
        // Keys are about rows that no paint has shown yet.
        m_Palette->m_SearchEdit->setText("1");
        Press(Qt::Key_End);
        QCOMPARE(m_Palette->GetSelected(), QString("Node 21"));
    }

    void activatesOnEnterAndDoubleClick()
    {
        QSignalSpy const activations(m_Palette, &CNodePalette::ItemActivated);
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

        // A listener that searches for something else does not change what was meant.
        Type("beta");
        connect(m_Palette, &CNodeBrowser::SelectionChanged, [&] { Type("alpha"); });
        Press(Qt::Key_Enter);
        QVERIFY(activations.at(2).at(0).value<ItemID>() == (*m_Library)["Beta"].id);
    }

    void leavesInStepsOnEscape()
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
        m_Palette->setFocus();
        m_HostField->hide();
        Press(Qt::Key_Escape);
        QVERIFY(!QApplication::focusWidget());
    }

    void actsOnTheSelectedRow()
    {
        Type("alpha");
        Press(Qt::Key_F2);
        QCOMPARE(m_Palette->m_RenameCount, 1);
        QContextMenuEvent menuEvent(QContextMenuEvent::Keyboard, QPoint(), QPoint());
        QApplication::sendEvent(m_Palette->m_SearchEdit, &menuEvent);
        Press(Qt::Key_Menu);
        Press(Qt::Key_F10, Qt::ShiftModifier);
        QCOMPARE(m_Palette->m_Menus, QStringList({"0 at its row", "0 at its row"}));

        m_Palette->m_SearchEdit->deselect();
        QString text;
        // Who is told of it reads it at once.
        connect(QApplication::clipboard(), &QClipboard::dataChanged, m_Palette, [&text] {
            QDataStream stream(QApplication::clipboard()->mimeData()->data("tarno/toc.key"));
            stream >> text;
        });
        Press(Qt::Key_C, Qt::ControlModifier);
        QApplication::clipboard()->disconnect(m_Palette);
        QCOMPARE(text.toStdString(), (*m_Library)["Alpha Blur"].id.Serialize());
        (*m_Library)["Alpha Blur"].canModify = false;
        Press(Qt::Key_F2);
        QCOMPARE(m_Palette->m_RenameCount, 1);
    }

    void leavesOtherKeysToTheHost()
    {
        Press(Qt::Key_Down);
        for (Qt::Key const key : {Qt::Key_F2, Qt::Key_F5}) {
            QKeyEvent shortcut(QEvent::ShortcutOverride, key, Qt::NoModifier);
            shortcut.ignore();
            QApplication::sendEvent(m_Palette->m_SearchEdit, &shortcut);
            QCOMPARE(shortcut.isAccepted(), key == Qt::Key_F2);
        }
    }

    void leavesUndoToTheHostUntilTyped()
    {
        QAction undo(m_Window.get());
        undo.setShortcut(QKeySequence::Undo);
        m_Window->addAction(&undo);
        QSignalSpy const undone(&undo, &QAction::triggered);
        for (bool const isTyped : {true, false}) {
            QTest::keyClicks(m_Palette->m_SearchEdit, "be");
            if (!isTyped) {
                m_HostField->setFocus();
                m_Palette->setFocus();
            }
            Press(Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(undone.count(), isTyped ? 0 : 1);
            QCOMPARE(m_Palette->m_SearchEdit->text(), QString(isTyped ? "" : "be"));
        }
    }

    void leavesComposingToTheInputMethod()
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
        QCOMPARE(m_Palette->m_SearchEdit->text(), QString("beta"));
        Press(Qt::Key_Return);
        QCOMPARE(activations.count(), 1);
    }

    void survivesListenersThatDeleteIt()
    {
        auto const survive = [this](auto signal, std::function<void()> const& act) {
            MakePalette();
            QPointer<CNodePalette> const palette(m_Palette);
            connect(m_Palette, signal, this, [this] { delete m_Palette; });
            act();
            QVERIFY(!palette);
        };
        survive(&CNodePalette::ItemActivated, [this] { Press(Qt::Key_Return); });
        survive(&CNodeBrowser::SelectionChanged, [this] { Press(Qt::Key_Down); });
        survive(&CNodePalette::Dismissed, [this] { Press(Qt::Key_Escape); });
        survive(&CNodeBrowser::SelectionChanged, [this] { Type("beta"); });
        survive(&CNodePalette::RowCountChanged, [this] { Type("beta"); });
    }
};

NODEBROWSER_TEST(TestPaletteKeys)

#include "tst_palettekeys.moc"
