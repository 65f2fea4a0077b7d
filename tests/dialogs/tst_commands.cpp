#include "browsertest.h"
#include "dialoguser.h"

using namespace tarno::datamodel;

namespace {

char const kClipUid[] = "AAAAAAAA-0000-4000-8000-000000000000";
char const kGlowUid[] = "AAAAAAAA-0000-4000-8000-000000000001";
char const kResourceUid[] = "EEEEEEEE-0000-4000-8000-000000000001";

char const* const kEvents[] = {"item added before", "item removed",   "item renamed",
                               "library replaced",  "library closed", "panel deleted",
                               "service withdrawn"};

} // namespace

/// What the menus offer, what commands ask the host for, and about which item, whatever happens
/// between the choice and the end of the command.
class TestCommands : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void offersCommandsOfTheItem()
    {
        // A compound is asked whether it can change, others whether they are read-only.
        std::tuple<char const*, QString, QString> const rows[] = {
            {TarnoType::gCompound, "object",
             "Show Files for x|Rename x|(Delete x)|Compound source|Edit Tags for x"},
            {TarnoType::gCompound, "locked", "(Rename x)|(Delete x)|(Edit Tags for x)"},
            {TarnoType::gCompound, "read-only", "Rename x|(Delete x)|Edit Tags for x"},
            {TarnoType::gSolver, "locked object", "Show Files for x|Edit Tags for x"},
            {TarnoType::gSolver, "read-only", "(Edit Tags for x)"},
            {TarnoType::gGlobalConstant, "", "Edit Tags for x"},
            {TarnoType::gPolymorphicSolver, "", ""},
            {LibType::gType, "object", "Show Files for x"}};
        for (auto const& [kind, facts, entries] : rows) {
            MakePanel();
            TestItem& item = m_Library->Add(kind, "x");
            item.canModify = !facts.contains("locked");
            item.isReadOnly = facts.contains("read-only");
            if (facts.contains("object"))
                m_Library->AddObject(item, m_Host->m_Database.AddSource("other"));
            m_Browser->TabChanged(CNodeBrowser::eConfigAll);
            TellInvalidated();
            m_Browser->Paint();
            QString offered;
            UseContextMenu(3, [&](QMenu& menu) { offered = TakeEntries(menu); });
            QCOMPARE(kind + offered, kind + entries);
            QVERIFY(m_Browser->GetSelection() == item.id);
        }
        // Past the rows nothing opens.
        m_Browser->PopContexMenu(QPoint(), 4);
        QVERIFY(m_Browser->GetSelection().IsNull());
    }

    void listsDataSources()
    {
        TestDatabase& database = m_Host->m_Database;
        database.AddResource("res-2", "project", m_Source);
        database.AddResource("res-3", "lost", nullptr);
        database.AddResource("res-4", "shared", database.AddSource("shared", 1));
        for (int const accessMode : {0, 1}) {
            m_Source->m_AccessMode = accessMode;
            QString entries;
            UseContextMenu(1, [&](QMenu& menu) {
                QMenu& sources = *menu.findChild<QMenu*>();
                entries = sources.toolTipsVisible() ? TakeEntries(sources) : "no tool tips";
                menu.close();
            });
            QString const tip = " Move compound to this data source ";
            QCOMPARE(entries, QString(accessMode ? "(elsewhere) " : "elsewhere ") + kGlowUid
                                  + " to " + kResourceUid + tip + "elsewhere|(project[Current]"
                                  + (accessMode ? " [Read-Only]) " : ") ") + kGlowUid + " to res-2"
                                  + tip + "project|(shared [Read-Only]) " + kGlowUid + " to res-4"
                                  + tip + "shared");
            QCOMPARE(m_Host->TakeCalls().join('|'),
                     QString("RunQuery 'select object where IS_OF_TYPE_VERSION( {%1 } )'")
                         .arg(qorm::UID_Resource().GetStr()));
        }
    }

    void passesOnWhatWasEntered()
    {
        auto const create = [&](QString const& kind, char const* text, QString const& call) {
            QString const calls = "CreateAndSetFromNew%1 A %2 manager|"
                                  "SetGlobalTarnoCompoundTarget %3 -";
            QString const made = call.section('\'', 1, 1);
            Check("OnNew" + kind, 0, text,
                  calls.arg(QString(kind).replace("Signature", "Compound"), call, made));
        };
        // The third text is null for a signature, and empty for what implements none.
        create("Signature", "<Return>", "'signature' true null ''");
        create("Compound", "<Return>", "'compound' false '' ''");
        create("LoopCompound", "<Return>", "'loopcompound' '' ''");
        create("Signature", "my node!<Tab>Math<Ok>", "'my_node_' true null 'Math'");
        create("Compound", "?x 2<Tab>\u00E9<Tab>U<Return>", "'_x_2' false 'uid-Unary' '\u00E9'");
        create("Compound", "\u03A9<Tab> a / b <Tab><Down><Down><Ok>",
               "'?' false 'uid-Zeta-2' ' a / b '");
        create("LoopCompound", "loop<Tab><Tab><Down><Down><Down><Return>", "'loop' 'uid-alpha' ''");

        QString const rename = "Initialize Soft Clip|RenameCompound Soft Clip '%1' manager";
        for (char const* name : {"Halo 2<Return>", "soft clip<OK>"})
            Check("OnRenameItem", 0, name, rename.arg(QString(name).section('<', 0, 0)));
        Check("OnRenameItem", 0, "<Return>", "");

        QString const tag = "SetItemTags %1 'ApplicationTags' '%2' manager";
        Check("OnEditItemTags", 0, " c; my tag ;;c; B <Return>",
              tag.arg("Soft Clip", "B;c;my tag"));
        Check("OnEditItemTags", 0, "\u00E9;\u03A9<Ok>", tag.arg("Soft Clip", "?;\u00E9"));
        Check("OnEditItemTags", 0, "; ;<Return>", tag.arg("Soft Clip", ""));
        Check("OnEditItemTags", 1, "<Return>", tag.arg("Soft Glow", "a;b"));
        Check("OnEditItemTags", 2, "b; a<Return>", "");

        Check("OnSaveGraphLibrary", 0, "",
              QString("PrepareForSave A|CommitToDisk A empty list false ")
                  + qorm::UID_Null().GetStr());
        QString const uid = kClipUid;
        Check("OnCheckOutItem", 0, "", "CheckOut " + uid + " true");
        Check("OnMakeItemWritable", 0, "", "MakeWritable " + uid + " true");
        Check("OnShowItemFiles", 0, "", "ShowFiles " + uid + " false");
        // It has an object, but not the UID of one.
        Check("OnShowItemFiles", 2, "", "");
        // The menu shows the entry and never lets it be chosen.
        Check("OnDeleteItem", 0, "", "");
        for (char const* command : {"OnRenameItem", "OnCheckOutItem", "OnMakeItemWritable",
                                    "OnShowItemFiles", "OnEditItemTags"}) {
            Check(command, -1, "", "");
        }
        for (char const* command :
             {"OnNewSignature", "OnNewLoopCompound", "OnRenameItem", "OnEditItemTags"})
            Check(command, 0, "node<Escape>", "");
    }

    void actsOnTheItemThatTheEntryNames()
    {
        QString const uid = kGlowUid;
        QString const create = "CreateAndSetFromNew%1 A 'Halo' %2'' manager|"
                               "SetGlobalTarnoCompoundTarget Halo -";
        // An entry, what comes of each event after the choice and in the dialog, and the calls. One
        // sign for each event: done, not done, or left to the host, which refuses a library that
        // is not there.
        std::tuple<char const*, QString, QString, QString> const rows[] = {
            {"Show Files", "+-+----", "", "ShowFiles " + uid + " false"},
            {"elsewhere", "+-+----", "", "MoveToDataSource " + uid + " 'elsewhere' true"},
            {"Rename", "+-+---+", "+-+---+",
             "Initialize Soft Glow|RenameCompound Soft Glow 'Halo' manager"},
            {"Edit Tags", "+-+---+", "+-+---+",
             "SetItemTags Soft Glow 'ApplicationTags' 'Halo' manager"},
            {"Delete", "-------", "", ""},
            {"Compound sig", "", "+++-?-+", create.arg("Compound", "true null ")},
            {"Public compound", "", "+++-?-+", create.arg("Compound", "false '' ")},
            {"Public looping", "", "+++-?-+", create.arg("LoopCompound", "'' ")}};
        for (auto const& [entry, afterChoice, inDialog, calls] : rows) {
            QString const outcomes = afterChoice + inDialog;
            for (int step = 0; step < outcomes.size(); ++step) {
                bool const isInDialog = step >= afterChoice.size();
                QString const event = kEvents[step % 7];
                QString expected = outcomes[step] == '-' ? "" : calls;
                if (event == "item renamed")
                    expected.replace("Soft Glow", "A Glow");
                if (outcomes[step] == '?')
                    expected = expected.section('|', 0, 0).replace(" A ", " - ");
                bool const hasDialog = isInDialog || (outcomes[step] == '+' && !inDialog.isEmpty());
                QCOMPARE(ChooseMeanwhile(entry, afterChoice.isEmpty(), isInDialog, event),
                         entry + event + expected + (hasDialog ? " in a dialog" : ""));
            }
        }
    }

    /// Whatever menu or dialog is open at the time.
    void actsOnTheSelectedRowWhenTheHostCalls()
    {
        auto const callCommandOfHost = [this] {
            m_Browser->m_SelectedIndex = 0;
            Run("OnShowItemFiles");
        };
        DialogUser user([&](QDialog& dialog) {
            callCommandOfHost();
            Use(dialog, "Halo<Return>");
        });
        Choose("Rename", false, callCommandOfHost);
        QString const show = QString("ShowFiles %1 false|").arg(kClipUid);
        QCOMPARE(m_Host->TakeCalls().mid(1).join('|'),
                 show + show + "Initialize Soft Glow|RenameCompound Soft Glow 'Halo' manager");
    }

    /// A subclass may change the items without a word.
    void findsTheItemWhereverItStands()
    {
        Choose("Show Files", false, [this] {
            m_Host->TakeCalls();
            m_Browser->m_Items.erase(m_Browser->m_Items.begin());
            std::swap(m_Browser->m_Items[0], m_Browser->m_Items[1]);
        });
        QCOMPARE(m_Host->TakeCalls(), QStringList(QString("ShowFiles %1 false").arg(kGlowUid)));
    }

    void survivesEveryCallOfTheHost()
    {
        for (QString const scenario :
             {"OnNewSignature", "OnNewCompound", "OnNewLoopCompound", "OnSaveGraphLibrary",
              "OnRenameItem", "OnCheckOutItem", "OnMakeItemWritable", "OnShowItemFiles",
              "OnEditItemTags", "Show Files", "Rename", "elsewhere", "Edit Tags", "double click",
              "tool tip", "selection", "list: paint", "list: tags told", "list: state told"}) {
            if (!scenario.startsWith("list: "))
                RunAtEveryCall(scenario, "panel deleted");
            RunAtEveryCall(scenario, "library replaced");
        }
    }

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        MakePanel();
    }

    void TearDown() override
    {
        BrowserTest::TearDown();
        m_Other.reset();
    }

private:
    /// Three rows, the second of which is selected, and as many in the library that is not shown.
    void MakePanel()
    {
        m_Browser.reset();
        m_Library.reset(new TestLibrary("A"));
        m_Other.reset(new TestLibrary("B"));
        TestDatabase& database = m_Host->m_Database;
        database.Clear();
        m_Host->AddRevisionControl();
        m_Source = database.AddSource("project");
        database.AddResource(kResourceUid, "elsewhere", database.AddSource("elsewhere"));
        auto const add = [&](TestLibrary& library, char const* kind, char const* name,
                             char const* tags, char const* uid) {
            library.AddObject(library.Add(kind, name, tags, uid), m_Source);
        };
        add(*m_Library, TarnoType::gCompound, "Soft Clip", "b;a", kClipUid);
        add(*m_Library, TarnoType::gCompound, "Soft Glow", " b; a ", kGlowUid);
        add(*m_Library, TarnoType::gSolver, "Tone", "a;b", "no UID of a database object");
        for (int number = 1; number < 4; ++number)
            add(*m_Other, TarnoType::gCompound, "B", "x",
                qPrintable(QString("BBBBBBBB-0000-4000-8000-00000000000%1").arg(number)));
        m_Browser.reset(new TestBrowser);
        m_Browser->SetItemLibrary(m_Library->GetAccessor());
        m_Browser->SetCommandManager(&m_Host->m_CommandManager);
        m_Browser->Paint();
        m_Browser->m_SelectedIndex = 1;
        m_Host->TakeCalls();
    }

    void Happen(QString const& event)
    {
        if (event == "item added before")
            m_Library->Add(TarnoType::gCompound, "Soft Fade");
        else if (event == "item removed")
            m_Library->Remove((*m_Library)["Soft Glow"]);
        else if (event == "item renamed")
            (*m_Library)["Soft Glow"].name = "A Glow";
        else if (event == "library replaced")
            m_Browser->SetItemLibrary(m_Other->GetAccessor());
        else if (event == "library closed")
            m_Library.reset();
        else if (event == "panel deleted")
            m_Browser.reset();
        else if (event == "service withdrawn")
            m_Host->SetService("RevisionControlUIHelper", nullptr);
        if (m_Browser && !m_Browser->testAttribute(Qt::WA_WState_InPaintEvent)) {
            m_Browser->LibraryInvalidated(m_Browser->m_ItemLibrary);
            m_Browser->Paint();
        }
        m_Host->TakeCalls();
    }

    /// What the host is called for when the command runs on the row, given what is entered.
    void Check(QString const& command, int row, QString const& entered, QString const& calls)
    {
        MakePanel();
        for (QString const uid : {"uid-alpha", "uid-Zeta-1", "uid-Unary", "uid-Zeta-2"})
            m_Library
                ->Add(TarnoType::gCompound, uid.section('-', 1, 1).toStdString(), "",
                      qPrintable(uid))
                .isAbstract = true;
        m_Browser->m_SelectedIndex = static_cast<unsigned long>(row);
        DialogUser user(entered);
        Run(command);
        QString const name = command + QString::number(row) + entered + ": ";
        QCOMPARE(name + m_Host->TakeCalls().join('|'), name + calls);
        QCOMPARE(user.HasClosed(), !entered.isEmpty());
    }

    void RunAtEveryCall(QString const& scenario, QString const& event)
    {
        int call = 0;
        do {
            MakePanel();
            // Nothing is told of a change that is refused.
            m_Host->m_RefusesChanges = event == "panel deleted" && scenario.contains("Tags");
            m_Host->RunAt(++call, [&] { Happen(event); });
            DialogUser user("Halo<Return>");
            Run(scenario);
            // The other library is not what the user meant.
            QStringList const wrong = m_Host->TakeCalls().filter(QRegularExpression("\\bB+\\b"));
            QVERIFY2(scenario.startsWith("list") || wrong.isEmpty(), qPrintable(wrong.join('|')));
            if (m_Browser && m_Host->HasRun())
                QCOMPARE(m_Browser->GetRows(), QString("B B B"));
        } while (m_Host->HasRun());
        m_Host->RunAt(0, nullptr);
        QVERIFY2(call > 1, qPrintable(scenario));
    }

    void UseContextMenu(int row, std::function<void(QMenu&)> const& use)
    {
        WhenShown const menu([&] {
            QMenu* const shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (shown)
                use(*shown);
            return shown != nullptr;
        });
        Send(QEvent::MouseButtonPress, m_Browser->GetRowCenter(row), Qt::RightButton,
             Qt::RightButton);
    }

    /// Closes the menu. Entries that cannot be chosen stand in brackets.
    static QString TakeEntries(QMenu& menu)
    {
        QStringList entries;
        for (QAction const* action : menu.actions()) {
            entries << (action->isEnabled() ? action->text() : "(" + action->text() + ")");
            if (!action->data().isNull())
                entries.last() += " " + action->data().toStringList().join(" to ") + " "
                                  + action->toolTip().replace('\n', ' ');
        }
        menu.close();
        return entries.join('|');
    }

    /// Chooses the entry that begins like that, from a menu of the host or from the context menu
    /// of "Soft Glow" after something happened.
    void Choose(QString const& entry, bool isInMenuOfHost, std::function<void()> const& meanwhile)
    {
        auto const choose = [&](QMenu& menu) {
            // The menu is closed before the command runs, as it is for a click.
            menu.close();
            for (QAction* const action : menu.findChildren<QAction*>()) {
                if (action->text().startsWith(entry))
                    return action->trigger();
            }
            QFAIL(qPrintable("no entry " + entry));
        };
        if (isInMenuOfHost) {
            QMenu menu;
            for (int command = -1; command < 5; ++command)
                m_Browser->CreateMenuCommand(CNodeBrowser::eMenuCommand(command), &menu);
            return choose(menu);
        }
        UseContextMenu(1, [&](QMenu& menu) {
            meanwhile();
            QCOMPARE(menu.isVisible(), m_Browser != nullptr);
            choose(menu);
        });
    }

    /// What was chosen, what happened before or in the dialog, and what came of it.
    QString ChooseMeanwhile(QString const& entry, bool isInMenuOfHost, bool isInDialog,
                            QString const& event)
    {
        MakePanel();
        DialogUser user([&](QDialog& dialog) {
            Use(dialog, "Hal");
            if (isInDialog)
                Happen(event);
            QCOMPARE(dialog.isVisible(), m_Browser != nullptr);
            Use(dialog, "o<Return>");
        });
        Choose(entry, isInMenuOfHost, [&] {
            if (!isInDialog)
                Happen(event);
        });
        return entry + event + m_Host->TakeCalls().join('|')
               + (user.HasClosed() ? " in a dialog" : "");
    }

    /// A command of the panel, an entry of its context menu, or another scenario.
    void Run(QString const& scenario)
    {
        QPoint const point = m_Browser->GetRowCenter(1);
        if (scenario.startsWith("On"))
            QVERIFY(QMetaObject::invokeMethod(m_Browser.get(), qPrintable(scenario)));
        else if (scenario == "double click")
            Send(QEvent::MouseButtonDblClick, point, Qt::LeftButton, Qt::LeftButton);
        else if (scenario == "tool tip") {
            QHelpEvent event(QEvent::ToolTip, point, m_Browser->mapToGlobal(point));
            QApplication::sendEvent(m_Browser.get(), &event);
        } else if (scenario == "selection")
            m_Browser->IsSelectionType();
        else if (scenario == "list: paint") {
            m_Browser->m_ScStatesStale = true;
            m_Browser->Paint();
        } else if (scenario == "list: tags told")
            TellTags((*m_Library)["Soft Glow"].id);
        else if (scenario == "list: state told")
            TellState((*m_Library)["Soft Glow"].id, 5);
        else
            Choose(scenario, false, [] {});
    }

    std::unique_ptr<TestLibrary> m_Other;
    TestDataSource* m_Source;
};

NODEBROWSER_TEST(TestCommands)

#include "tst_commands.moc"
