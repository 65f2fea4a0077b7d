#include "browsertest.h"
#include "testtable.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QTimer>

using namespace tarno::datamodel;

/// What the menus offer. What the entries do is tested with the commands.
class TestMenu : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void offersCommandsOfTheItem_data()
    {
        AddColumns<QString, bool, bool, bool, QString>("kind", "canModify", "isReadOnly",
                                                       "hasObject", "entries");
        AddRow("compound", "compound", true, false, true,
               "Show Files for x|Rename x|(Delete x)|Compound source|Edit Tags for x");
        AddRow("compound without object", "compound", true, false, false,
               "Rename x|(Delete x)|Edit Tags for x");
        AddRow("compound that cannot change", "compound", false, false, false,
               "(Rename x)|(Delete x)|(Edit Tags for x)");
        AddRow("compound said to be read-only", "compound", true, true, false,
               "Rename x|(Delete x)|Edit Tags for x");
        AddRow("solver", "solver", false, false, true, "Show Files for x|Edit Tags for x");
        AddRow("read-only solver", "solver", true, true, false, "(Edit Tags for x)");
        AddRow("constant", "constant", false, false, false, "Edit Tags for x");
        AddRow("read-only constant", "constant", true, true, false, "(Edit Tags for x)");
        AddRow("polymorphic solver", "polymorphicSolver", true, false, false, "");
        AddRow("type", "type", true, false, true, "Show Files for x");
    }

    void offersCommandsOfTheItem()
    {
        QFETCH(QString, kind);
        QFETCH(bool, canModify);
        QFETCH(bool, isReadOnly);
        QFETCH(bool, hasObject);
        TestItem& item = m_Library->Add(FindKind(kind), "x");
        item.canModify = canModify;
        item.isReadOnly = isReadOnly;
        MakeBrowser();
        if (hasObject) {
            // Without the service the object cannot be found.
            m_Library->AddObject(item, m_Host->m_Database.AddSource("project"));
            QVERIFY(!ReadMenu(0).contains("Show Files for x"));
            m_Host->AddRevisionControl();
        }
        QTEST(ReadMenu(0), "entries");
        QVERIFY(m_Browser->GetSelection() == item.id);
        // Past the rows nothing opens.
        QCOMPARE(ReadMenu(1), QString("no menu"));
        QCOMPARE(m_Browser->m_SelectedIndex, 1ul);
    }

    void listsDataSources()
    {
        m_Host->AddRevisionControl();
        TestDatabase& database = m_Host->m_Database;
        QString const uid = "C0000000-0000-4000-8000-000000000001";
        TestDataSource* const source = database.AddSource("file:///project");
        m_Library->AddObject(m_Library->Add(TarnoType::gCompound, "x", "", qPrintable(uid)),
                             source);
        MakeBrowser();
        database.AddResource("res-1", "other", database.AddSource("file:///other"));
        database.AddResource("res-2", "project", source);
        database.AddResource("res-3", "lost", nullptr);
        database.AddResource("res-4", "shared", database.AddSource("file:///shared", 1));
        database.AddObject("no resource", source);
        for (int const accessMode : {0, 1}) {
            source->m_AccessMode = accessMode;
            m_Host->TakeCalls();
            QString const tip = " Move compound to this data source file:///";
            QString const entries =
                (accessMode ? "(other) " : "other ") + uid + " to res-1" + tip + "other|"
                + (accessMode ? "(project[Current] [Read-Only]) " : "(project[Current]) ") + uid
                + " to res-2" + tip + "project|(shared [Read-Only]) " + uid + " to res-4" + tip
                + "shared";
            QCOMPARE(ReadMenu(0).section("Compound source|", 1).section("|Edit", 0, 0), entries);
            QCOMPARE(m_Host->TakeCalls().join('|'),
                     QString("RunQuery 'select object where IS_OF_TYPE_VERSION( {%1 } )'")
                         .arg(qorm::UID_Resource().GetStr()));
        }
    }

    void addsCommandsToMenusOfTheHost()
    {
        m_Browser.reset(new TestBrowser);
        QMenu menu;
        for (int command = -1; command < 5; ++command)
            m_Browser->CreateMenuCommand(static_cast<CNodeBrowser::eMenuCommand>(command), &menu);
        QCOMPARE(Read(menu).join('|'),
                 QString("Compound signature|Public compound|Public looping compound|"
                         "Save graph library"));
        for (QAction const* action : menu.actions())
            QVERIFY(action->shortcut().isEmpty());
    }

private:
    /// The entries of the menu of the row, and what else they hold; none if no menu opens.
    QString ReadMenu(unsigned long row)
    {
        QString entries = "no menu";
        QTimer::singleShot(0, m_Browser.get(), [&] {
            QMenu* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu)
                return;
            entries = Read(*menu).join('|');
            menu->close();
        });
        m_Browser->PopContexMenu(QPoint(50, 50), row);
        QApplication::processEvents();
        return entries;
    }

    /// Those that cannot be chosen stand in brackets.
    static QStringList Read(QMenu const& menu)
    {
        QStringList entries;
        for (QAction const* action : menu.actions()) {
            QString text = action->isEnabled() ? action->text() : "(" + action->text() + ")";
            if (!action->data().isNull())
                text += " " + action->data().toStringList().join(" to ") + " "
                        + action->toolTip().replace('\n', ' ');
            entries << text;
            if (action->menu() && action->menu()->toolTipsVisible())
                entries += Read(*action->menu());
        }
        return entries;
    }
};

NODEBROWSER_TEST(TestMenu)

#include "tst_menu.moc"
