#include "browsertest.h"
#include "dialoguser.h"
#include "testtable.h"

#include <QAction>
#include <QHelpEvent>
#include <QMenu>
#include <QRegularExpression>
#include <QTimer>

using namespace tarno::datamodel;

namespace {

char const kClipUid[] = "AAAAAAAA-0000-4000-8000-000000000000";
char const kGlowUid[] = "AAAAAAAA-0000-4000-8000-000000000001";
char const kResourceUid[] = "EEEEEEEE-0000-4000-8000-000000000001";

char const* const kEvents[] = {"item added before", "item removed",   "item renamed",
                               "library replaced",  "library closed", "panel deleted",
                               "service withdrawn"};

} // namespace

/// Which item commands act on, whatever happens between the choice and the end of the command.
class TestCommandTarget : public BrowserTest
{
    Q_OBJECT

private Q_SLOTS:
    void actsOnTheItemThatTheEntryNames_data()
    {
        AddColumns<QString, QString, QString, QString>("entry", "afterChoice", "inDialog", "calls");
        QString const uid = kGlowUid;
        QString const create = "Create%1 A 'Halo' %2'' manager|SetGlobalTarnoCompoundTarget Halo -";
        // One sign for each event: done, not done, or left to the host, which refuses a library
        // that is not there.
        auto const add = [](char const* entry, char const* afterChoice, char const* inDialog,
                            QString const& calls) {
            AddRow(entry, entry, afterChoice, inDialog, calls);
        };
        add("Show Files", "+-+----", "", "ShowFiles " + uid + " false");
        add("elsewhere", "+-+----", "", "MoveToDataSource " + uid + " 'elsewhere' true");
        add("Rename", "+-+---+", "+-+---+",
            "Initialize Soft Glow|RenameCompound Soft Glow 'Halo' manager");
        add("Edit Tags", "+-+---+", "+-+---+",
            "SetItemTags Soft Glow 'ApplicationTags' 'Halo' manager");
        add("Delete", "-------", "", "");
        add("Compound sig", "", "+++-?-+", create.arg("AndSetFromNewCompound", "true null "));
        add("Public compound", "", "+++-?-+", create.arg("AndSetFromNewCompound", "false '' "));
        add("Public looping", "", "+++-?-+", create.arg("AndSetFromNewLoopCompound", "'' "));
    }

    void actsOnTheItemThatTheEntryNames()
    {
        QFETCH(QString, entry);
        QFETCH(QString, afterChoice);
        QFETCH(QString, inDialog);
        QFETCH(QString, calls);
        QString const outcomes = afterChoice + inDialog;
        for (int step = 0; step < outcomes.size(); ++step) {
            bool const isInDialog = step >= afterChoice.size();
            QString const event = kEvents[step % 7];
            MakePanel();
            DialogUser user([&](QDialog& dialog) {
                Use(dialog, "Hal");
                if (isInDialog)
                    Happen(event);
                QCOMPARE(dialog.isVisible(), m_Browser != nullptr);
                Use(dialog, "o<Return>");
            });
            if (afterChoice.isEmpty())
                ChooseInMenuOfHost(entry);
            else
                ChooseInContextMenu(entry, [&] {
                    if (!isInDialog)
                        Happen(event);
                });
            QString expected = outcomes[step] == '-' ? "" : calls;
            if (event == "item renamed")
                expected.replace("Soft Glow", "A Glow");
            if (outcomes[step] == '?')
                expected = expected.section('|', 0, 0).replace(" A ", " - ");
            QCOMPARE(event + ": " + m_Host->TakeCalls().join('|'), event + ": " + expected);
            QCOMPARE(user.HasClosed(),
                     isInDialog || (outcomes[step] == '+' && !inDialog.isEmpty()));
            QVERIFY(!m_Browser || m_Browser->m_SelectedIndex == 1);
        }
    }

    /// Whatever menu or dialog is open at the time.
    void actsOnTheSelectedRowWhenTheHostCalls()
    {
        auto const callTheHostsCommand = [this] {
            m_Browser->m_SelectedIndex = 0;
            QMetaObject::invokeMethod(m_Browser.get(), "OnShowItemFiles");
        };
        DialogUser user([&](QDialog& dialog) {
            callTheHostsCommand();
            Use(dialog, "Halo<Return>");
        });
        ChooseInContextMenu("Rename", [&] {
            m_Host->TakeCalls();
            callTheHostsCommand();
        });
        QString const show = QString("ShowFiles %1 false").arg(kClipUid);
        QCOMPARE(m_Host->TakeCalls(), (QStringList{show, show, "Initialize Soft Glow",
                                                   "RenameCompound Soft Glow 'Halo' manager"}));

        // An item that is gone has no dialog.
        m_Library->Remove((*m_Library)["Soft Clip"]);
        for (char const* command : {"OnRenameItem", "OnEditItemTags"}) {
            DialogUser none([](QDialog&) { QFAIL("a dialog"); });
            QMetaObject::invokeMethod(m_Browser.get(), command);
        }
    }

    /// A subclass may change the items without a word.
    void findsTheItemWhereverItStands()
    {
        ChooseInContextMenu("Show Files", [this] {
            m_Host->TakeCalls();
            m_Browser->m_Items.erase(m_Browser->m_Items.begin());
        });
        QCOMPARE(m_Host->TakeCalls(), QStringList(QString("ShowFiles %1 false").arg(kGlowUid)));
    }

    void survivesEveryCallOfTheHost_data()
    {
        AddColumns<QString>("scenario");
        for (char const* scenario :
             {"OnNewSignature", "OnNewCompound", "OnNewLoopCompound", "OnSaveGraphLibrary",
              "OnRenameItem", "OnCheckOutItem", "OnMakeItemWritable", "OnShowItemFiles",
              "OnEditItemTags", "Show Files", "Rename", "elsewhere", "Edit Tags", "double click",
              "tool tip", "selection", "list: paint", "list: tags told", "list: state told"})
            AddRow(scenario, scenario);
    }

    /// The host deletes the panel, or replaces its library, inside each call in turn: questions
    /// that are asked on the way, and what is done in the end. No toolkit survives a widget that is
    /// deleted while it is painted, so questions about the list must not do that.
    void survivesEveryCallOfTheHost()
    {
        QFETCH(QString, scenario);
        bool const isOfList = scenario.startsWith("list: ");
        for (QString const event : {"panel deleted", "library replaced"}) {
            bool const isDeleted = event == "panel deleted";
            if (isDeleted && isOfList)
                continue;
            int call = 0;
            do {
                MakePanel();
                // Nothing is told of a change that is refused.
                m_Host->m_RefusesChanges = isDeleted && scenario.contains("Tags");
                m_Host->RunAt(++call, [&] { Happen(event); });
                Run(scenario);
                // The other library is not what the user meant.
                QStringList const wrong =
                    m_Host->TakeCalls().filter(QRegularExpression("\\bB+\\b"));
                QVERIFY2(isOfList || wrong.isEmpty(), qPrintable(wrong.join('|')));
                if (m_Browser && m_Host->HasRun())
                    QCOMPARE(m_Browser->GetRows(), QString("B B B"));
            } while (m_Host->HasRun());
            m_Host->RunAt(0, nullptr);
            QVERIFY(call > 1);
        }
    }

protected:
    void SetUp() override
    {
        BrowserTest::SetUp();
        m_Other.reset(new TestLibrary("B"));
        MakePanel();
    }

    void TearDown() override
    {
        BrowserTest::TearDown();
        m_Other.reset();
    }

private:
    /// Three rows, the second of which is "Soft Glow", and as many in the library that is not
    /// shown.
    void MakePanel()
    {
        m_Browser.reset();
        m_Library.reset(new TestLibrary("A"));
        m_Other.reset(new TestLibrary("B"));
        m_Host->m_Database.Clear();
        m_Host->AddRevisionControl();
        TestDatabase& database = m_Host->m_Database;
        TestDataSource* const source = database.AddSource("project");
        database.AddResource(kResourceUid, "elsewhere", database.AddSource("elsewhere"));
        m_Library->AddObject(m_Library->Add(TarnoType::gCompound, "Soft Clip", "x", kClipUid),
                             source);
        m_Library->AddObject(m_Library->Add(TarnoType::gCompound, "Soft Glow", "x", kGlowUid),
                             source);
        m_Library->Add(TarnoType::gSolver, "Tone");
        for (char const* uid :
             {"BBBBBBBB-0000-4000-8000-000000000001", "BBBBBBBB-0000-4000-8000-000000000002",
              "BBBBBBBB-0000-4000-8000-000000000003"})
            m_Other->AddObject(m_Other->Add(TarnoType::gCompound, "B", "x", uid), source);
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

    /// Chooses the entry of the menu, or of a submenu, that begins like that.
    static void Choose(QMenu& menu, QString const& entry)
    {
        // The menu is closed before the command runs, as it is for a click.
        menu.close();
        for (QAction* const action : menu.findChildren<QAction*>()) {
            if (action->text().startsWith(entry))
                return action->trigger();
        }
        QFAIL(qPrintable("no entry " + entry));
    }

    /// Opens the context menu of "Soft Glow" and chooses the entry after that happened.
    void ChooseInContextMenu(QString const& entry, std::function<void()> const& meanwhile)
    {
        QObject untilReturn;
        QTimer::singleShot(0, &untilReturn, [&] {
            QMenu* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu)
                return;
            meanwhile();
            QCOMPARE(menu->isVisible(), m_Browser != nullptr);
            Choose(*menu, entry);
        });
        Send(QEvent::MouseButtonPress, m_Browser->GetRowCenter(1), Qt::RightButton,
             Qt::RightButton);
    }

    void ChooseInMenuOfHost(QString const& entry)
    {
        QMenu menu;
        for (int command = 0; command < 4; ++command)
            m_Browser->CreateMenuCommand(static_cast<CNodeBrowser::eMenuCommand>(command), &menu);
        Choose(menu, entry);
    }

    void Run(QString const& scenario)
    {
        QPoint const point = m_Browser->GetRowCenter(1);
        DialogUser user("Halo<Return>");
        if (scenario == "double click") {
            Send(QEvent::MouseButtonDblClick, point, Qt::LeftButton, Qt::LeftButton);
        } else if (scenario == "tool tip") {
            QHelpEvent event(QEvent::ToolTip, point, m_Browser->mapToGlobal(point));
            QApplication::sendEvent(m_Browser.get(), &event);
        } else if (scenario == "selection") {
            m_Browser->IsSelectionType();
        } else if (scenario.startsWith("On")) {
            QMetaObject::invokeMethod(m_Browser.get(), qPrintable(scenario));
        } else if (scenario == "list: paint") {
            m_Browser->m_ScStatesStale = true;
            m_Browser->Paint();
        } else if (scenario.startsWith("list: ")) {
            ItemID const id = (*m_Library)["Soft Glow"].id;
            ItemLibraryAccessor library = m_Library->GetAccessor();
            if (scenario == "list: tags told")
                m_Browser->ItemTagsChanged(library, id, "ApplicationTags");
            else
                m_Browser->ItemAccessStateChanged(library, id, 5);
        } else {
            ChooseInContextMenu(scenario, [] {});
        }
    }

    std::unique_ptr<TestLibrary> m_Other;
};

NODEBROWSER_TEST(TestCommandTarget)

#include "tst_commandtarget.moc"
