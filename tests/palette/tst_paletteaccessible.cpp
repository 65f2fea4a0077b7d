#include "palettetest.h"

using namespace tarno::datamodel;

/// The palette as a screen reader of the same process would see it.
class TestPaletteAccessible : public PaletteTest
{
    Q_OBJECT

private Q_SLOTS:
    void isAListOfItems()
    {
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Palette);
        m_Host->TakeCount("GetItemName");
        QVERIFY(list->childCount() > 32);
        QCOMPARE(m_Host->TakeCount("GetItemName"), 0);

        m_Palette->SelectRow(1);
        QAccessibleInterface* const beta = list->child(1);
        QCOMPARE(beta->text(QAccessible::Name), QString("Beta"));
        QVERIFY(beta->text(QAccessible::Description).startsWith("2 of 32; Compound; tags: node"));
        QVERIFY(beta->state().selected && beta->state().focused && !beta->state().offscreen);
        QVERIFY(!list->child(2)->state().selected && list->child(31)->state().offscreen);
        QCOMPARE(list->indexOfChild(beta), 1);
        QCOMPARE(beta->parent(), list);
        QCOMPARE(list->childAt(beta->rect().center().x(), beta->rect().center().y()), beta);
        QVERIFY(!list->child(-1) && !list->child(list->childCount()));
        // Rows that are gone are no longer valid, and nothing asks the list for them.
        QAccessibleInterface* const last = list->child(31);
        m_Palette->m_SearchEdit->setText("beta");
        QVERIFY(!last->isValid());
        QCOMPARE(last->text(QAccessible::Name), QString());
    }

    void actsAndDescribes()
    {
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Palette);
        QSignalSpy const activations(m_Palette, &CNodePalette::ItemActivated);
        Type("2");
        QCOMPARE(m_Palette->m_SearchEdit->accessibleDescription(), QString("12 items, Node 02"));

        QAccessibleActionInterface* const row = list->child(3)->actionInterface();
        row->doAction("Select");
        QCoreApplication::processEvents();
        QCOMPARE(m_Palette->GetSelectedRow(), 3);
        QString const selected = m_Palette->GetSelected();
        row->doAction(QAccessibleActionInterface::showMenuAction());
        row->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
        QCOMPARE(m_Palette->m_Menus, QStringList("3 at its row"));
        QCOMPARE(activations.count(), 1);
        QCOMPARE(m_Palette->GetSelected(), selected);

        // An action is about the item, wherever it stands when the action runs.
        row->doAction(QAccessibleActionInterface::pressAction());
        m_Library->Add(TarnoType::gSolver, "2");
        m_Library->Tell(
            [](auto& listener, auto& library) { listener.LibraryInvalidated(library); });
        QCoreApplication::processEvents();
        QCOMPARE(activations.count(), 2);
        QVERIFY(activations.at(1).at(0).value<ItemID>() == (*m_Library)[selected.toStdString()].id);

        // A long text is quoted in whole letters.
        QString const face = QString::fromUtf8("\U0001F600");
        m_Palette->m_SearchEdit->setText(face.repeated(40));
        QCOMPARE(m_Palette->GetRowCount(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(m_Palette->m_SearchEdit->accessibleDescription(),
                 QString::fromUtf8("Nothing here matches “%1…”.").arg(face.repeated(29)));
    }

    void survivesAFailingHost()
    {
        // Neither the bus nor the event loop lets what the host raises pass.
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Palette);
        QAccessibleInterface* const row = list->child(1);
        m_Host->ThrowAt("GetItemName", 1);
        QCOMPARE(row->text(QAccessible::Name), QString());
        QCOMPARE(row->text(QAccessible::Name), QString("Beta"));
        m_Library->Tell(
            [](auto& listener, auto& library) { listener.LibraryInvalidated(library); });
        m_Host->ThrowAt("GetItemName", 3);
        QVERIFY(list->childCount() >= 0);
        m_Library->Tell(
            [](auto& listener, auto& library) { listener.LibraryInvalidated(library); });
        QVERIFY(list->childCount() > 32);

        m_Window->hide();
        m_Palette->m_SearchEdit->setText("beta");
        QCOMPARE(m_Palette->GetRowCount(), 1);
        m_Host->ThrowAt("GetItemName", 1);
        QCoreApplication::processEvents();
        QVERIFY(m_Palette->m_SearchEdit->accessibleDescription().startsWith("1 item"));
    }
};

NODEBROWSER_TEST(TestPaletteAccessible)

#include "tst_paletteaccessible.moc"
