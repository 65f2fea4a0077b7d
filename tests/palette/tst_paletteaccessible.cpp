#include "palettetest.h"

using namespace tarno::datamodel;

/// The palette as a screen reader of the same process would see it.
class TestPaletteAccessible : public PaletteTest
{
    Q_OBJECT

private Q_SLOTS:
    void isAListOfItems()
    {
        TestDatabase& database = m_Host->m_Database;
        m_Host->AddRevisionControl();
        database.AddResource("res-1", "elsewhere", database.AddSource("elsewhere"));
        TestDataSource* const source = database.AddSource("project");
        database.AddResource("res-2", "project", source);
        TestItem& item = (*m_Library)["Beta"];
        m_Library->AddObject(item, source);
        item.isModified = item.isReadOnly = true;
        item.tags["ApplicationTags"] = "x<y";
        m_Palette->SetDetailsSource([](ItemID const&) {
            return CNodePalette::SItemDetails{"Filters", {"a", "b"}, {"c"}, "checked out"};
        });
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Palette);
        m_Host->TakeCount("GetItemName");
        QStringList names;
        for (int child = 32; child < list->childCount(); ++child) {
            names << list->child(child)->text(QAccessible::Name);
            QCOMPARE(list->indexOfChild(list->child(child)), child);
        }
        QCOMPARE(m_Host->TakeCount("GetItemName"), 0);
        QTabBar const& tabs = *m_Palette->findChild<QTabBar*>();
        QCOMPARE(names.join('|') + tabs.accessibleName(),
                 QString("Scroll the list|Search|Clear the search|Nodes|Kinds of items"));

        m_Palette->SelectRow(1);
        QAccessibleInterface* const beta = list->child(1);
        QCOMPARE(beta->text(QAccessible::Name), QString("Beta*"));
        QString const state = QString("state of %1").arg(ItemIDUnlock::GetItemIDUID(item.id));
        QCOMPARE(beta->text(QAccessible::Description),
                 "2 of 32; Compound; category: Filters; tags: node, x<y; data source: project; "
                 "state: checked out; changed since it was saved; read-only; "
                     + state);
        QCOMPARE(beta->text(QAccessible::Help),
                 state
                     + "\nCompound\nCategory: Filters\nData source: project\nTags: node, x<y\n"
                       "Inputs: a, b\nOutputs: c\nState: checked out\n"
                       "Changed since it was saved\nRead-only");
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
        QLabel const& count = *m_Palette->m_SearchEdit->findChild<QLabel*>();
        QCOMPARE(count.text() + count.accessibleName() + count.toolTip(),
                 QString("1212 items12 of 33 items"));

        QAccessibleActionInterface* const row = list->child(3)->actionInterface();
        QCOMPARE(row->localizedActionDescription("Select") + row->keyBindingsForAction("Press")[0],
                 QString("Selects the rowReturn"));
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
        TellInvalidated();
        QCoreApplication::processEvents();
        QCOMPARE(activations.count(), 2);
        QVERIFY(activations.at(1).at(0).value<ItemID>() == (*m_Library)[selected.toStdString()].id);

        // A long text is quoted in whole letters.
        QString const face = QString::fromUtf8("\U0001F600");
        for (QString const first : {"", "x"}) {
            m_Palette->m_SearchEdit->setText(first + face.repeated(40));
            QCOMPARE(m_Palette->GetRowCount(), 0);
            QCoreApplication::processEvents();
            QCOMPARE(m_Palette->m_SearchEdit->accessibleDescription(),
                     QString("Nothing here matches “%1…”.").arg(first + face.repeated(29)));
        }
    }

    void survivesAFailingHost()
    {
        // Neither the bus nor the event loop lets what the host raises pass.
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(m_Palette);
        QAccessibleInterface* const row = list->child(1);
        m_Host->ThrowAt("GetItemName", 1);
        QCOMPARE(row->text(QAccessible::Name), QString());
        QCOMPARE(row->text(QAccessible::Name), QString("Beta"));
        TellInvalidated();
        m_Host->ThrowAt("GetItemName", 3);
        QVERIFY(list->childCount() >= 0);
        TellInvalidated();
        QVERIFY(list->childCount() > 32);

        m_Window->hide();
        m_Palette->m_SearchEdit->setText("beta");
        QCOMPARE(m_Palette->GetRowCount(), 1);
        m_Host->ThrowAt("GetItemName", 1);
        QCoreApplication::processEvents();
        QCOMPARE(m_Palette->m_SearchEdit->accessibleDescription(), QString("1 item"));
    }
};

NODEBROWSER_TEST(TestPaletteAccessible)

#include "tst_paletteaccessible.moc"
