#include "browsertest.h"

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace tarno::datamodel;

class TestMenu : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void offersCommandsOfTheItem_data();
    void offersCommandsOfTheItem();
    void opensNothingPastTheRows();
    void listsDataSources();
    void disablesSourcesOfReadOnlyCompound();
    void raisesForObjectWithoutManager();
    void runsTheChosenCommandAndSignalsThen();
    void addsCommandsToMenusOfTheHost_data();
    void addsCommandsToMenusOfTheHost();

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Browser.reset(new TestBrowser);
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->TabChanged(CNodeBrowser::eConfigAll);
        m_Source = m_Host->m_Database.AddSource("file:///project");
        m_OpenCount = 0;
    }

private:
    TestItem& Add(char const* kind, char const* name)
    {
        TestItem& item = m_Library->Add(kind, name);
        m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary);
        m_Browser->Paint();
        return item;
    }

    /// Does this with the next menu that opens, and closes it.
    void WhenOpen(std::function<void(QMenu&)> look)
    {
        QTimer::singleShot(0, this, [this, look] {
            QPointer<QMenu> const menu(qobject_cast<QMenu*>(QApplication::activePopupWidget()));
            if (!menu)
                return;
            ++m_OpenCount;
            look(*menu);
            if (menu)
                menu->close();
        });
    }

    /// The entries of the menu of the row; those that cannot be chosen stand in brackets.
    QStringList ReadMenu(unsigned long row)
    {
        QStringList entries;
        WhenOpen([&](QMenu& menu) { entries = Read(menu); });
        m_Browser->PopContexMenu(QPoint(50, 50), row);
        return entries;
    }

    static QStringList Read(QMenu const& menu)
    {
        QStringList entries;
        for (QAction const* action : menu.actions())
            entries << (action->isEnabled() ? action->text() : "(" + action->text() + ")");
        return entries;
    }

    TestDataSource* m_Source = nullptr;
    int m_OpenCount = 0;
};

void TestMenu::offersCommandsOfTheItem_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("canModify");
    QTest::addColumn<bool>("isReadOnly");
    QTest::addColumn<bool>("hasObject");
    QTest::addColumn<QString>("entries");

    auto const row = [](char const* name, int kind, bool canModify, bool isReadOnly, bool hasObject,
                        char const* entries) {
        QTest::newRow(name) << kind << canModify << isReadOnly << hasObject << entries;
    };
    row("compound", 0, true, false, true,
        "Show Files for x|Rename x|(Delete x)|Compound source|Edit Tags for x");
    row("compound without object", 0, true, false, false, "Rename x|(Delete x)|Edit Tags for x");
    row("compound that cannot change", 0, false, false, false,
        "(Rename x)|(Delete x)|(Edit Tags for x)");
    row("compound said to be read-only", 0, true, true, false,
        "Rename x|(Delete x)|Edit Tags for x");
    row("solver", 1, false, false, true, "Show Files for x|Edit Tags for x");
    row("read-only solver", 1, true, true, false, "(Edit Tags for x)");
    row("constant", 2, false, false, false, "Edit Tags for x");
    row("read-only constant", 2, true, true, false, "(Edit Tags for x)");
    row("polymorphic solver", 3, true, false, false, "");
    row("type", 4, true, false, true, "Show Files for x");
}

void TestMenu::offersCommandsOfTheItem()
{
    QFETCH(int, kind);
    QFETCH(bool, canModify);
    QFETCH(bool, isReadOnly);
    QFETCH(bool, hasObject);
    char const* const kinds[] = {TarnoType::gCompound, TarnoType::gSolver,
                                 TarnoType::gGlobalConstant, TarnoType::gPolymorphicSolver,
                                 LibType::gType};
    TestItem& item = Add(kinds[kind], "x");
    item.canModify = canModify;
    item.isReadOnly = isReadOnly;
    if (hasObject) {
        // Without the service the object cannot be found.
        m_Library->AddObject(item, m_Source);
        QVERIFY(!ReadMenu(0).contains("Show Files for x"));
        m_Host->AddRevisionControl();
    }
    int const openCount = m_OpenCount;
    QTEST(ReadMenu(0).join("|"), "entries");
    // It opens even without entries.
    QCOMPARE(m_OpenCount, openCount + 1);
    QCOMPARE(m_Browser->m_SelectedIndex, 0ul);
}

void TestMenu::opensNothingPastTheRows()
{
    Add(TarnoType::gSolver, "x");
    QVERIFY(ReadMenu(1).isEmpty());
    QCOMPARE(m_Browser->m_SelectedIndex, 1ul);
    QApplication::processEvents();
    QCOMPARE(m_OpenCount, 0);
}

void TestMenu::listsDataSources()
{
    m_Host->AddRevisionControl();
    TestDatabase& database = m_Host->m_Database;
    TestObject const& compound = m_Library->AddObject(Add(TarnoType::gCompound, "x"), m_Source);
    database.AddResource("res-1", "other", database.AddSource("file:///other"));
    database.AddResource("res-2", "project", m_Source);
    database.AddResource("res-3", "lost", nullptr);
    database.AddResource("res-4", "shared", database.AddSource("file:///shared", 1));
    database.AddObject("no resource", m_Source);

    QList<QStringList> data;
    QStringList entries;
    QStringList toolTips;
    bool showsToolTips = false;
    WhenOpen([&](QMenu& menu) {
        QMenu* const sources = menu.actions().at(3)->menu();
        entries = Read(*sources);
        showsToolTips = sources->toolTipsVisible();
        for (QAction const* action : sources->actions()) {
            data << action->data().toStringList();
            toolTips << action->toolTip();
        }
    });
    m_Host->TakeCalls();
    m_Browser->PopContexMenu(QPoint(50, 50), 0);

    QCOMPARE(entries.join("|"), QString("other|(project[Current])|(shared [Read-Only])"));
    QString const uid = QString::fromStdString(compound.m_Uid);
    QCOMPARE(data, (QList<QStringList>{{uid, "res-1"}, {uid, "res-2"}, {uid, "res-4"}}));
    QCOMPARE(toolTips.first(), QString("Move compound to this data source\nfile:///other"));
    QVERIFY(showsToolTips);
    QCOMPARE(m_Host->TakeCalls(),
             QStringList(QString("RunQuery 'select object where IS_OF_TYPE_VERSION( {%1 } )'")
                             .arg(qorm::UID_Resource().GetStr())));
}

void TestMenu::disablesSourcesOfReadOnlyCompound()
{
    m_Host->AddRevisionControl();
    m_Source->m_AccessMode = 1;
    m_Library->AddObject(Add(TarnoType::gCompound, "x"), m_Source);
    m_Host->m_Database.AddResource("res-1", "other", m_Host->m_Database.AddSource("other"));
    m_Host->m_Database.AddResource("res-2", "own", m_Source);
    QStringList entries;
    WhenOpen([&](QMenu& menu) { entries = Read(*menu.actions().at(3)->menu()); });
    m_Browser->PopContexMenu(QPoint(50, 50), 0);
    QCOMPARE(entries.join("|"), QString("(other)|(own[Current] [Read-Only])"));
}

void TestMenu::raisesForObjectWithoutManager()
{
    m_Host->AddRevisionControl();
    TestObject& object = m_Library->AddObject(Add(TarnoType::gCompound, "x"), m_Source);
    object.m_HasManager = false;
    QVERIFY_EXCEPTION_THROWN(m_Browser->PopContexMenu(QPoint(50, 50), 0), qorm::ExBase::NullPtr);
}

void TestMenu::runsTheChosenCommandAndSignalsThen()
{
    m_Host->AddRevisionControl();
    TestObject const& object = m_Library->AddObject(Add(TarnoType::gSolver, "x"), m_Source);
    QSignalSpy selections(m_Browser.get(), SIGNAL(SelectionChanged()));
    int signalsWhileOpen = -1;
    WhenOpen([&](QMenu& menu) {
        QTest::mouseClick(&menu, Qt::LeftButton, Qt::NoModifier,
                          menu.actionGeometry(menu.actions().at(0)).center());
        signalsWhileOpen = selections.count();
    });
    m_Host->TakeCalls();
    QTest::mousePress(m_Browser.get(), Qt::RightButton, Qt::NoModifier, m_Browser->GetRowCenter(0));
    QCOMPARE(m_Host->TakeCalls(),
             QStringList("ShowFiles " + QString::fromStdString(object.m_Uid) + " false"));
    QCOMPARE(signalsWhileOpen, 0);
    QCOMPARE(selections.count(), 1);
}

void TestMenu::addsCommandsToMenusOfTheHost_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("entries");
    QTest::newRow("signature") << 0 << "Compound signature";
    QTest::newRow("compound") << 1 << "Public compound";
    QTest::newRow("loop compound") << 2 << "Public looping compound";
    QTest::newRow("save") << 3 << "Save graph library";
    QTest::newRow("unknown") << 4 << "";
    QTest::newRow("negative") << -1 << "";
}

void TestMenu::addsCommandsToMenusOfTheHost()
{
    QFETCH(int, command);
    QMenu menu;
    m_Browser->CreateMenuCommand(static_cast<CNodeBrowser::eMenuCommand>(command), &menu);
    QTEST(Read(menu).join("|"), "entries");
    if (menu.actions().isEmpty())
        return;
    QAction* const action = menu.actions().at(0);
    QVERIFY(action->shortcut().isEmpty());
    m_Host->TakeCalls();
    if (command == CNodeBrowser::eMenuSaveGraphLibrary) {
        action->trigger();
        QCOMPARE(m_Host->TakeCalls().first(), QString("PrepareForSave A"));
        return;
    }
    // The others begin with their dialog.
    QString title;
    QTimer::singleShot(0, this, [&] {
        QWidget* const dialog = QApplication::activeModalWidget();
        QVERIFY(dialog);
        title = dialog->windowTitle();
        dialog->close();
    });
    action->trigger();
    QString const titles[] = {"Create signature", "Create compound", "Create loop compound"};
    QCOMPARE(title, titles[command]);
}

NODEBROWSER_TEST_MAIN(TestMenu)

#include "tst_menu.moc"
