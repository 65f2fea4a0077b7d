#include "palettetest.h"

#include <QAccessible>

/// The palette as a screen reader of the same process would see it.
class TestPaletteAccessible : public PaletteTest
{
    Q_OBJECT

private Q_SLOTS:
    void isAListOfItems();
    void actsAndDescribes();
};

void TestPaletteAccessible::isAListOfItems()
{
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Palette);
    QCOMPARE(list->role(), QAccessible::List);
    QVERIFY(!list->text(QAccessible::Name).isEmpty());
    m_Host->TakeCount("GetItemName");
    QVERIFY(list->childCount() > 32);
    QCOMPARE(m_Host->TakeCount("GetItemName"), 0);

    m_Palette->SelectRow(1);
    QAccessibleInterface* const beta = list->child(1);
    QCOMPARE(beta->role(), QAccessible::ListItem);
    QCOMPARE(beta->text(QAccessible::Name), QString("Beta"));
    QVERIFY(beta->text(QAccessible::Description).startsWith("2 of 32; Compound; tags: node"));
    QVERIFY(beta->state().selected && beta->state().focused && !beta->state().offscreen);
    QVERIFY(!list->child(2)->state().selected && list->child(31)->state().offscreen);
    QCOMPARE(list->indexOfChild(beta), 1);
    QCOMPARE(beta->parent(), list);
    QCOMPARE(list->childAt(beta->rect().center().x(), beta->rect().center().y()), beta);
    QVERIFY(!list->child(-1) && !list->child(list->childCount()));
    int named = 0;
    for (int child = 32; child < list->childCount(); ++child) {
        named += !list->child(child)->text(QAccessible::Name).isEmpty();
        QCOMPARE(list->indexOfChild(list->child(child)), child);
    }
    QVERIFY(named >= 4); // search, clear button, tabs, scroll bar
    // Rows that are gone are no longer valid, and nothing asks the list for them.
    QAccessibleInterface* const last = list->child(31);
    m_Palette->m_SearchEdit->setText("beta");
    QVERIFY(!last->isValid());
    QCOMPARE(last->text(QAccessible::Name), QString());
}

void TestPaletteAccessible::actsAndDescribes()
{
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Palette);
    QSignalSpy const activations(m_Palette, &CNodePalette::ItemActivated);
    Type("2");
    QCOMPARE(m_Palette->m_SearchEdit->accessibleDescription(), QString("12 items, Node 02"));

    QAccessibleActionInterface* const row = list->child(3)->actionInterface();
    row->doAction("Select");
    QCOMPARE(m_Palette->GetSelectedRow(), 3);
    QString const selected = m_Palette->GetSelected();
    row->doAction(QAccessibleActionInterface::showMenuAction());
    row->doAction(QAccessibleActionInterface::pressAction());
    QCoreApplication::processEvents();
    QCOMPARE(m_Palette->m_Menus, QStringList("3 at its row"));
    QCOMPARE(activations.count(), 1);
    QCOMPARE(m_Palette->GetSelected(), selected);
}

NODEBROWSER_TEST(TestPaletteAccessible)

#include "tst_paletteaccessible.moc"
