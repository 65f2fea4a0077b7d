#include "browsertest.h"
#include "dialoguser.h"
#include "testtable.h"

#include <QAction>

using namespace tarno::datamodel;

namespace {

char const kBlurUid[] = "C0000000-0000-4000-8000-000000000001";

} // namespace

/// What commands ask the host for, given what was entered into their dialogs.
class TestCommands : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void passesOnWhatWasEntered_data()
    {
        AddColumns<QString, int, QString, QStringList>("command", "row", "entered", "calls");
        auto const create = [](QString const& text, char const* kind, QString const& call) {
            QString const made = call.section('\'', 1, 1);
            AddRow(qPrintable(kind + text), QString("OnNew") + kind, 0, text,
                   QStringList{"CreateAndSetFromNew"
                                   + QString(kind).replace("Signature", "Compound") + " A " + call
                                   + " manager",
                               "SetGlobalTarnoCompoundTarget " + made + " -"});
        };
        // The third text is null for a signature, and empty for what implements none.
        create("<Return>", "Signature", "'signature' true null ''");
        create("<Return>", "Compound", "'compound' false '' ''");
        create("<Return>", "LoopCompound", "'loopcompound' '' ''");
        create("my node!<Tab>Math<Ok>", "Signature", "'my_node_' true null 'Math'");
        create("?x 2<Tab>Caf\u00E9<Tab>U<Return>", "Compound",
               "'_x_2' false 'uid-Unary' 'Caf\u00E9'");
        create("\u03A9<Tab> a / b <Tab><Down><Down><Ok>", "Compound",
               "'?' false 'uid-Zeta-2' ' a / b '");
        create("loop<Tab><Tab><Down><Down><Down><Return>", "LoopCompound", "'loop' 'uid-alpha' ''");
        create("loop<Tab><Tab><Down><Up><Return>", "LoopCompound", "'loop' '' ''");
        for (char const* command : {"OnNewSignature", "OnNewCompound", "OnNewLoopCompound",
                                    "OnRenameItem", "OnEditItemTags"}) {
            for (QString const close : {"<Cancel>", "<Escape>", "<close>"})
                AddRow(qPrintable(command + close), command, 0, "node" + close, QStringList());
        }

        auto const rename = [](QString const& text, bool isRenamed) {
            QString const name = text.section('<', 0, 0);
            QStringList const calls{"Initialize Blur",
                                    "RenameCompound Blur '" + name + "' manager"};
            AddRow(qPrintable("rename " + text), "OnRenameItem", 0, text,
                   isRenamed ? calls : QStringList());
        };
        rename("Halo 2<Return>", true);
        rename("Halo<OK>", true);
        rename("blur<Enter>", true);
        rename("Blur<Return>", false);
        rename("<Return>", false);

        auto const tag = [](int row, QString const& text, QString const& call) {
            AddRow(qPrintable(QString("tag %1 %2").arg(row).arg(text)), "OnEditItemTags", row, text,
                   call.isEmpty() ? QStringList()
                                  : QStringList("SetItemTags " + call.section(' ', 0, 0)
                                                + " 'ApplicationTags' '" + call.section(' ', 1)
                                                + "' manager"));
        };
        tag(0, " c; my tag ;;c; B <Return>", "Blur B;c;my tag");
        tag(0, "\u00E9;\u03A9<Ok>", "Blur ?;\u00E9");
        tag(0, "; ;<Return>", "Blur ");
        tag(0, "<Delete><Return>", "Blur ");
        tag(0, "b;a<Return>", "Blur a;b");
        tag(1, "<Return>", "Glow a;b");
        tag(2, "b; a<Return>", "");
        tag(2, "<Ok>", "");
    }

    void passesOnWhatWasEntered()
    {
        QFETCH(QString, command);
        QFETCH(int, row);
        QFETCH(QString, entered);
        Click(row);
        DialogUser user(entered);
        Run(command);
        QVERIFY(user.HasClosed());
        QTEST(m_Host->TakeCalls(), "calls");
    }

    void leavesRefusedItemsAlone()
    {
        m_Host->m_RefusesChanges = true;
        m_Browser->SetCommandManager(nullptr);
        for (char const* command : {"OnNewSignature", "OnNewCompound", "OnNewLoopCompound"}) {
            DialogUser user("<Return>");
            Run(command);
            QStringList const calls = m_Host->TakeCalls();
            QVERIFY2(calls.size() == 1 && calls[0].endsWith(" null"), command);
        }
    }

    void savesTheLibrary()
    {
        Run("OnSaveGraphLibrary");
        QCOMPARE(m_Host->TakeCalls(),
                 (QStringList{"PrepareForSave A", QString("CommitToDisk A empty list false %1")
                                                      .arg(qorm::UID_Null().GetStr())}));
    }

    void usesRevisionControl()
    {
        QString const uid = kBlurUid;
        std::pair<char const*, QString> const commands[] = {
            {"OnCheckOutItem", "CheckOut " + uid + " true"},
            {"OnMakeItemWritable", "MakeWritable " + uid + " true"},
            {"OnShowItemFiles", "ShowFiles " + uid + " false"}};
        for (auto const& command : commands) {
            auto const getCalls = [&](int row) {
                Click(row);
                Run(command.first);
                return m_Host->TakeCalls().join('|');
            };
            QCOMPARE(getCalls(0), QString());
            TestObject& object = m_Host->m_Database.AddObject(uid.toStdString(), nullptr);
            QCOMPARE(getCalls(0), command.second);
            m_Host->SetService("RevisionControlUIHelper", nullptr);
            QCOMPARE(getCalls(0), QString());
            m_Host->AddRevisionControl();
            // Not the UID of a database object, although there is one.
            m_Host->m_Database.AddObject("no database uid", nullptr);
            QCOMPARE(getCalls(1), QString());
            m_Host->m_Database.Remove(object);
        }
    }

    void needsASelectedRow()
    {
        DialogUser user([](QDialog&) { QFAIL("a dialog"); });
        m_Host->m_ListsQueries = true;
        for (unsigned long index : {0xFFFFFFFFUL, 3UL}) {
            m_Browser->m_SelectedIndex = index;
            for (char const* command : {"OnRenameItem", "OnCheckOutItem", "OnMakeItemWritable",
                                        "OnShowItemFiles", "OnEditItemTags"})
                Run(command);
        }
        // Deleting does nothing on purpose: the menu shows the entry and never lets it be chosen.
        m_Browser->m_SelectedIndex = 0;
        Run("OnDeleteItem");
        QCOMPARE(m_Host->TakeCalls(), QStringList());
    }

    void leavesMissingObjectsToTheDatabase_data()
    {
        AddColumns<QString>("missing");
        for (char const* missing : {"service", "target", "compound", "manager", "resource"})
            AddRow(missing, missing);
    }

    void leavesMissingObjectsToTheDatabase()
    {
        QFETCH(QString, missing);
        char const resourceUid[] = "E0000000-0000-4000-8000-000000000001";
        TestDatabase& database = m_Host->m_Database;
        TestDataSource* const source = database.AddSource("project");
        if (missing != "compound")
            database.AddObject(kBlurUid, source).m_HasManager = missing != "manager";
        if (missing != "resource")
            database.AddResource(resourceUid, "Project", missing == "target" ? nullptr : source);
        if (missing == "service")
            m_Host->SetService("RevisionControlUIHelper", nullptr);
        QAction action(nullptr);
        action.setData(QStringList{kBlurUid, resourceUid});
        connect(&action, SIGNAL(triggered()), m_Browser.get(), SLOT(OnDatasourceChange()));
        QStringList calls;
        if (missing == "target") // refusing it is the host's business
            calls << QString("MoveToDataSource %1 null true").arg(kBlurUid);
        if (missing == "target" || missing == "service") {
            action.trigger();
            QCOMPARE(m_Host->TakeCalls(), calls);
            return;
        }
        QVERIFY_EXCEPTION_THROWN(action.trigger(), qorm::ExBase::NullPtr);
        QCOMPARE(m_Host->TakeCalls().filter("PrintDebugString").size(), 1);
    }

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Library->Add(TarnoType::gCompound, "Blur", "b;a", kBlurUid);
        m_Library->Add(TarnoType::gSolver, "Glow", " b; a ", "no database uid");
        m_Library->Add(TarnoType::gSolver, "Sharpen", "a;b");
        for (char const* uid : {"uid-alpha", "uid-Zeta-1", "uid-Unary", "uid-Zeta-2"})
            m_Library
                ->Add(TarnoType::gCompound, QString(uid).section('-', 1, 1).toStdString(), "", uid)
                .isAbstract = true;
        MakeBrowser();
        m_Browser->TabChanged(CNodeBrowser::eConfigNodes);
        m_Browser->SetCommandManager(&m_Host->m_CommandManager);
        QCOMPARE(m_Browser->GetRows(), QString("Blur Glow Sharpen"));
        m_Host->AddRevisionControl();
        m_Host->TakeCalls();
    }

private:
    void Run(QString const& command)
    {
        QVERIFY(QMetaObject::invokeMethod(m_Browser.get(), qPrintable(command)));
    }
};

NODEBROWSER_TEST(TestCommands)

#include "tst_commands.moc"
