#include "dialoguser.h"
#include "paneltest.h"
#include "testbrowser.h"

#include <QAction>
#include <QApplication>
#include <QRegularExpression>
#include <QTest>

using namespace tarno::datamodel;

class TestCommands : public PanelTest
{
    Q_OBJECT

private Q_SLOTS:
    void createsItems_data();
    void createsItems();
    void leavesRefusedItemsAlone();
    void createsNothingOnceCancelled();
    void savesTheLibrary();
    void renames_data();
    void renames();
    void editsTags_data();
    void editsTags();
    void usesRevisionControl_data();
    void usesRevisionControl();
    void needsASelectedRow();
    void leavesMissingObjectsToTheDatabase_data();
    void leavesMissingObjectsToTheDatabase();

protected:
    void SetUp() override;
    void TearDown() override;

    void Run(QString const& command)
    {
        QVERIFY(QMetaObject::invokeMethod(m_Browser.get(), qPrintable(command)));
    }

    void Select(char const* name)
    {
        int const row = m_Browser->GetRows().indexOf(name);
        QVERIFY(row >= 0);
        m_Browser->m_SelectedIndex = static_cast<unsigned long>(row);
    }

    std::unique_ptr<TestLibrary> m_Library;
    std::unique_ptr<TestBrowser> m_Browser;
};

namespace {

char const kCompoundUid[] = "C0000000-0000-4000-8000-000000000001";

} // namespace

void TestCommands::SetUp()
{
    PanelTest::SetUp();
    m_Library.reset(new TestLibrary);
    m_Library->Add(TarnoType::gCompound, "Blur", "b;a", kCompoundUid);
    m_Library->Add(TarnoType::gSolver, "Glow", " b; a ", "no database uid");
    m_Library->Add(TarnoType::gSolver, "Sharpen", "a;b");
    m_Library->Add(TarnoType::gCompound, "Unary", "", "uid-unary").isAbstract = true;
    m_Browser.reset(new TestBrowser);
    m_Browser->SetItemLibrary(m_Library->GetAccessor());
    m_Browser->SetCommandManager(&m_Host->m_CommandManager);
    m_Browser->Paint();
    m_Host->AddRevisionControl();
    m_Host->TakeCalls();
}

void TestCommands::TearDown()
{
    m_Browser.reset();
    m_Library.reset();
    PanelTest::TearDown();
}

void TestCommands::createsItems_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<QStringList>("calls");

    auto const add = [](char const* row, char const* command, char const* title,
                        QStringList const& entries, QString const& call, char const* created) {
        QString const target = QString("SetGlobalTarnoCompoundTarget %1 -").arg(created);
        QTest::newRow(row) << command << title << entries << QStringList{call, target};
    };
    // The third text is null for a signature, and empty for what implements none.
    add("signature", "OnNewSignature", "Create signature", {},
        "CreateAndSetFromNewCompound A 'signature' true null '' manager", "signature");
    add("compound", "OnNewCompound", "Create compound", {},
        "CreateAndSetFromNewCompound A 'compound' false '' '' manager", "compound");
    add("loop compound", "OnNewLoopCompound", "Create loop compound", {},
        "CreateAndSetFromNewLoopCompound A 'loopcompound' '' '' manager", "loopcompound");
    add("filled-in signature", "OnNewSignature", "Create signature", {"my node!", "Math"},
        "CreateAndSetFromNewCompound A 'my_node_' true null 'Math' manager", "my_node_");
    QString const category = QString("Caf") + QChar(0xE9);
    add("filled-in compound", "OnNewCompound", "Create compound", {"halo", category, "Unary"},
        "CreateAndSetFromNewCompound A 'halo' false 'uid-unary' '" + category + "' manager",
        "halo");
    add("filled-in loop compound", "OnNewLoopCompound", "Create loop compound",
        {"loop", "", "Unary"}, "CreateAndSetFromNewLoopCompound A 'loop' 'uid-unary' '' manager",
        "loop");
}

void TestCommands::createsItems()
{
    QFETCH(QString, command);
    QFETCH(QStringList, entries);
    DialogUser user([&](QDialog& dialog) {
        QTEST(dialog.windowTitle(), "title");
        for (QString const& entry : entries) {
            TypeText(dialog, entry);
            PressKey(dialog, Qt::Key_Tab);
        }
        PressKey(dialog, Qt::Key_Return);
    });
    Run(command);
    QVERIFY(user.HasClosed());
    QTEST(m_Host->TakeCalls(), "calls");
}

void TestCommands::leavesRefusedItemsAlone()
{
    m_Host->m_RefusesChanges = true;
    m_Browser->SetCommandManager(nullptr);
    for (char const* command : {"OnNewSignature", "OnNewCompound", "OnNewLoopCompound"}) {
        DialogUser user([](QDialog& dialog) { PressKey(dialog, Qt::Key_Return); });
        Run(command);
        QVERIFY(user.HasClosed());
        QStringList const calls = m_Host->TakeCalls();
        QCOMPARE(calls.size(), 1);
        QVERIFY2(QRegularExpression("^CreateAndSetFromNew.* null$").match(calls[0]).hasMatch(),
                 qPrintable(calls[0]));
    }
}

void TestCommands::createsNothingOnceCancelled()
{
    for (char const* command : {"OnNewSignature", "OnNewCompound", "OnNewLoopCompound"}) {
        DialogUser user([](QDialog& dialog) {
            TypeText(dialog, "node");
            ClickButton(dialog, "Cancel");
        });
        Run(command);
        QVERIFY(user.HasClosed());
        QCOMPARE(m_Host->TakeCalls(), QStringList());
    }
}

void TestCommands::savesTheLibrary()
{
    QString const commit =
        QString("CommitToDisk A empty list false %1").arg(qorm::UID_Null().GetStr());
    for (bool isRefused : {false, true}) {
        m_Host->m_RefusesChanges = isRefused;
        Run("OnSaveGraphLibrary");
        QCOMPARE(m_Host->TakeCalls(), QStringList() << "PrepareForSave A" << commit);
        QVERIFY(!QApplication::activeModalWidget());
    }
}

void TestCommands::renames_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("key");
    QTest::addColumn<QStringList>("calls");

    int const enter = Qt::Key_Return;
    QStringList const none;
    QTest::newRow("other name") << "Halo 2" << enter
                                << QStringList{"Initialize Blur",
                                               "RenameCompound Blur 'Halo 2' manager"};
    QTest::newRow("own name in another case")
        << "blur" << enter << QStringList{"Initialize Blur", "RenameCompound Blur 'blur' manager"};
    QTest::newRow("same name") << "Blur" << enter << none;
    QTest::newRow("untouched") << "" << enter << none;
    QTest::newRow("cancelled") << "Halo" << int(Qt::Key_Escape) << none;
}

void TestCommands::renames()
{
    QFETCH(QString, typed);
    QFETCH(int, key);
    Select("Blur");
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, typed);
        PressKey(dialog, Qt::Key(key));
    });
    Run("OnRenameItem");
    QVERIFY(user.HasClosed());
    QTEST(m_Host->TakeCalls(), "calls");
}

void TestCommands::editsTags_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("key");
    QTest::addColumn<QStringList>("calls");

    int const enter = Qt::Key_Return;
    QString const call = "SetItemTags %1 'ApplicationTags' '%2' manager";
    QStringList const none;
    QTest::newRow("other tags") << "Blur"
                                << "c ;b" << enter << QStringList(call.arg("Blur", "b;c"));
    QTest::newRow("no tags") << "Blur"
                             << ";" << enter << QStringList(call.arg("Blur", ""));
    QTest::newRow("same tags") << "Sharpen"
                               << "b; a" << enter << none;
    QTest::newRow("untouched, not in normal form")
        << "Glow"
        << "" << enter << QStringList(call.arg("Glow", "a;b"));
    QTest::newRow("other order") << "Blur"
                                 << "b;a" << enter << QStringList(call.arg("Blur", "a;b"));
    QTest::newRow("cancelled") << "Glow"
                               << "c" << int(Qt::Key_Escape) << none;
}

void TestCommands::editsTags()
{
    QFETCH(QString, item);
    QFETCH(QString, typed);
    QFETCH(int, key);
    Select(qPrintable(item));
    DialogUser user([&](QDialog& dialog) {
        TypeText(dialog, typed);
        PressKey(dialog, Qt::Key(key));
    });
    Run("OnEditItemTags");
    QVERIFY(user.HasClosed());
    QTEST(m_Host->TakeCalls(), "calls");
}

void TestCommands::usesRevisionControl_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("call");

    QTest::newRow("check out") << "OnCheckOutItem"
                               << "CheckOut %1 true";
    QTest::newRow("make writable") << "OnMakeItemWritable"
                                   << "MakeWritable %1 true";
    QTest::newRow("show files") << "OnShowItemFiles"
                                << "ShowFiles %1 false";
}

void TestCommands::usesRevisionControl()
{
    QFETCH(QString, command);
    QFETCH(QString, call);
    Select("Blur");
    Run(command);
    QVERIFY2(m_Host->TakeCalls().isEmpty(), "no database object");

    m_Host->m_Database.AddObject(kCompoundUid, nullptr);
    Run(command);
    QCOMPARE(m_Host->TakeCalls(), QStringList(call.arg(kCompoundUid)));

    Select("Glow");
    m_Host->TakeCount("FindObject");
    Run(command);
    QVERIFY2(m_Host->TakeCalls().isEmpty(), "no database UID");
    QCOMPARE(m_Host->TakeCount("FindObject"), 0);
}

void TestCommands::needsASelectedRow()
{
    unsigned long const rows = static_cast<unsigned long>(m_Browser->m_VisibleItems.size());
    m_Host->m_ListsQueries = true;
    DialogUser user([](QDialog&) { QFAIL("a dialog"); });
    for (unsigned long index : {0xFFFFFFFFUL, rows}) {
        m_Browser->m_SelectedIndex = index;
        for (char const* command : {"OnRenameItem", "OnCheckOutItem", "OnMakeItemWritable",
                                    "OnShowItemFiles", "OnEditItemTags"})
            Run(command);
    }
    QCOMPARE(m_Host->TakeCalls(), QStringList());
    // Deleting does nothing on purpose: the menu shows the entry and never lets it be chosen.
    Select("Blur");
    m_Host->TakeCalls();
    Run("OnDeleteItem");
    QCOMPARE(m_Host->TakeCalls(), QStringList());
}

void TestCommands::leavesMissingObjectsToTheDatabase_data()
{
    QTest::addColumn<QString>("missing");

    for (char const* missing : {"target", "compound", "manager", "resource"})
        QTest::newRow(missing) << missing;
}

void TestCommands::leavesMissingObjectsToTheDatabase()
{
    QFETCH(QString, missing);
    char const resourceUid[] = "E0000000-0000-4000-8000-000000000001";
    TestDatabase& database = m_Host->m_Database;
    TestDataSource* const source = database.AddSource("project");
    if (missing != "compound")
        database.AddObject(kCompoundUid, source).m_HasManager = missing != "manager";
    if (missing != "resource")
        database.AddResource(resourceUid, "Project", missing == "target" ? nullptr : source);
    QAction action(nullptr);
    action.setData(QStringList{kCompoundUid, resourceUid});
    connect(&action, SIGNAL(triggered()), m_Browser.get(), SLOT(OnDatasourceChange()));
    if (missing == "target") {
        // Refusing it is the host's business.
        action.trigger();
        QCOMPARE(m_Host->TakeCalls(),
                 QStringList(QString("MoveToDataSource %1 null true").arg(kCompoundUid)));
        return;
    }
    QVERIFY_EXCEPTION_THROWN(action.trigger(), qorm::ExBase::NullPtr);
    QCOMPARE(m_Host->TakeCalls().filter("PrintDebugString").size(), 1);
}

NODEBROWSER_TEST_MAIN(TestCommands)

#include "tst_commands.moc"
