#include "boxanswer.h"
#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <embeddedhost.h>
#include <journal.h>
#include <mainwindow.h>
#include <settings.h>

#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

using namespace tarno::datamodel;

namespace {

QString const kGlowFile = QStringLiteral("project/glow.json");

/// One run of the editor: everything that ends with the process.
struct SRun
{
    explicit SRun(QString const& journalFolder)
        : journal(host, journalFolder)
        , window(host)
        , user(host)
    {
        journal.SetPause(10);
        window.UseSettings(settings);
        window.UseJournal(journal);
        window.show();
    }

    CEmbeddedHost host;
    CSettings settings;
    CJournal journal;
    CMainWindow window;
    LibraryUser user;
};

/// Chooses a folder in the file dialog that comes up.
class DialogAnswer
{
public:
    explicit DialogAnswer(QString const& folder)
    {
        QObject::connect(&m_Timer, &QTimer::timeout, &m_Timer, [this, folder] {
            auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            m_Timer.stop();
            dialog->selectFile(folder);
            QMetaObject::invokeMethod(dialog, "accept");
        });
        m_Timer.start(1);
    }

private:
    QTimer m_Timer;
};

void CollectActions(QList<QAction*> const& actions, QList<QAction*>& all)
{
    for (QAction* const action : actions) {
        all << action;
        if (action->menu())
            CollectActions(action->menu()->actions(), all);
    }
}

} // namespace

/// The window as a user has it, with settings and a journal in folders of its own.
class TestMainWindow : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_Home->path()));
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow", R"(, "nodes": [
            {"id": "ramp", "item": "BBBBBBBB-0000-0000-0000-000000000002", "position": [0, 0]}])"));
        m_Folder->Write(QStringLiteral("project/ramp.json"), Object(2, "compound", "Ramp"));
        Start();
    }

    void TearDown() override
    {
        m_Run.reset();
        m_Folder.reset();
        m_Home.reset();
    }

private:
    void Start()
    {
        // There is one host at a time.
        m_Run.reset();
        m_Run = std::make_unique<SRun>(m_Home->filePath(QStringLiteral("journal")));
    }

    void Open()
    {
        QVERIFY(m_Run->window.OpenLibrary(m_Folder->GetPath()));
    }

    ItemID Item(int number)
    {
        return m_Run->host.FindItem(Uid(number));
    }

    void Rename()
    {
        m_Run->user.Rename(Item(1), "Soft Glow");
    }

    QByteArray Content()
    {
        return m_Folder->Read().value(m_Folder->GetPath(kGlowFile));
    }

    int CountJournals()
    {
        return int(QDir(m_Home->filePath(QStringLiteral("journal")))
                       .entryList({QStringLiteral("*.json")})
                       .size());
    }

    QAction* FindAction(QString const& text)
    {
        QList<QAction*> all;
        CollectActions(m_Run->window.menuBar()->actions(), all);
        for (QAction* const action : all) {
            if (action->text().remove(QLatin1Char('&')) == text)
                return action;
        }
        qFatal("There is no menu entry %s.", qPrintable(text));
        return nullptr;
    }

    std::size_t CountNodes()
    {
        return m_Run->host.GetBody(Item(1)).nodes.size();
    }

    void ShowCompound(int number)
    {
        CompoundAccessor compound;
        compound.SetFrom(m_Run->host.GetLibrary().GetModel(Item(number), nullptr));
        m_Run->host.SetCompoundTarget(compound);
    }

    std::unique_ptr<QTemporaryDir> m_Home;
    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<SRun> m_Run;

private Q_SLOTS:
    void titleTellsWhatIsOpen()
    {
        CMainWindow& window = m_Run->window;
        Open();
        QCOMPARE(window.windowTitle(), QStringLiteral("Test[*]"));
        ShowCompound(1);
        QCOMPARE(window.windowTitle(), QStringLiteral("Glow - Test[*]"));
        QVERIFY(!window.isWindowModified());
        Rename();
        QTRY_COMPARE(window.windowTitle(), QStringLiteral("Soft Glow - Test[*]"));
        QVERIFY(window.isWindowModified());
        QCOMPARE(FindAction(QStringLiteral("Undo Rename Glow"))->isEnabled(), true);
        FindAction(QStringLiteral("Undo Rename Glow"))->trigger();
        QTRY_COMPARE(window.windowTitle(), QStringLiteral("Glow - Test[*]"));
        QVERIFY(!window.isWindowModified());
        FindAction(QStringLiteral("Redo Rename Glow"))->trigger();
        FindAction(QStringLiteral("Save graph library"))->trigger();
        QTRY_VERIFY(!window.isWindowModified());
        QVERIFY(Content().contains("Soft Glow"));
    }

    void closingAsks_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("isClosed");
        QTest::addColumn<bool>("isSaved");
        QTest::newRow("save") << "Save" << true << true;
        QTest::newRow("discard") << "Discard" << true << false;
        QTest::newRow("cancel") << "Cancel" << false << false;
        QTest::newRow("escape") << "" << false << false;
    }

    void closingAsks()
    {
        QFETCH(QString, button);
        QFETCH(bool, isClosed);
        QFETCH(bool, isSaved);
        Open();
        Rename();
        QTRY_COMPARE(CountJournals(), 1);
        BoxAnswer const answer({button});
        QCOMPARE(m_Run->window.close(), isClosed);
        QVERIFY(answer.IsDone());
        QCOMPARE(Content().contains("Soft Glow"), isSaved);
        // The process may end before anything else happens.
        QCOMPARE(CountJournals(), isClosed ? 0 : 1);
    }

    void openingAnotherLibraryAsks()
    {
        LibraryFolder const other;
        Start();
        m_Run->settings.AddRecentLibrary(other.GetPath());
        Open();
        Rename();
        FindAction(QStringLiteral("1  ") + m_Folder->GetPath());
        QAction* const entry = FindAction(QStringLiteral("2  ") + other.GetPath());
        {
            BoxAnswer const answer({QStringLiteral("Cancel")});
            entry->trigger();
            QTRY_VERIFY(answer.IsDone());
            QCOMPARE(m_Run->host.GetLibraryFolder(), m_Folder->GetPath());
        }
        BoxAnswer const answer({QStringLiteral("Save")});
        entry->trigger();
        QTRY_COMPARE(m_Run->host.GetLibraryFolder(), other.GetPath());
        QVERIFY(Content().contains("Soft Glow"));
    }

    void newLibraryNeedsAnEmptyFolder()
    {
        Open();
        QTemporaryDir const empty;
        DialogAnswer const chosen(empty.path());
        FindAction(QStringLiteral("New Library..."))->trigger();
        QCOMPARE(m_Run->host.GetLibraryFolder(), QFileInfo(empty.path()).canonicalFilePath());

        DialogAnswer const again(m_Folder->GetPath());
        BoxAnswer const told({QStringLiteral("OK")});
        FindAction(QStringLiteral("New Library..."))->trigger();
        QVERIFY2(told.GetText().contains(QStringLiteral("not empty")), qPrintable(told.GetText()));
        QCOMPARE(m_Run->host.GetLibraryFolder(), QFileInfo(empty.path()).canonicalFilePath());
    }

    void brokenLibraryLeavesTheOpenOneAlone()
    {
        LibraryFolder const broken;
        broken.Write(QStringLiteral("library.json"), "{");
        Start();
        m_Run->settings.AddRecentLibrary(broken.GetPath());
        Open();
        Rename();
        QTRY_COMPARE(CountJournals(), 1);
        BoxAnswer const answer({QStringLiteral("OK")});
        FindAction(QStringLiteral("2  ") + broken.GetPath())->trigger();
        QTRY_VERIFY(answer.IsDone());
        QVERIFY2(answer.GetText().contains(QStringLiteral("library.json")),
                 qPrintable(answer.GetText()));
        QCOMPARE(m_Run->host.GetLibraryFolder(), m_Folder->GetPath());
        QCOMPARE(CountJournals(), 1);
        FindAction(QStringLiteral("Undo Rename Glow"))->trigger();
        QCOMPARE(m_Run->user.NameOf(Item(1)), std::string("Glow"));
    }

    void unsavedWindowStaysOpen()
    {
        Open();
        Rename();
        m_Folder->Write(kGlowFile, Object(1, "compound", "Theirs"));
        BoxAnswer const answer({QStringLiteral("Save"), QStringLiteral("Cancel")});
        QVERIFY(!m_Run->window.close());
        QVERIFY(answer.IsDone());
        QVERIFY2(answer.GetText().contains(kGlowFile), qPrintable(answer.GetText()));
        QVERIFY(Content().contains("Theirs"));
    }

    void conflictsAreResolved_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("name");
        QTest::newRow("theirs") << "Take from Disk" << "Theirs";
        QTest::newRow("ours") << "Overwrite" << "Soft Glow";
    }

    void conflictsAreResolved()
    {
        QFETCH(QString, button);
        QFETCH(QString, name);
        Open();
        Rename();
        m_Folder->Write(kGlowFile, Object(1, "compound", "Theirs"));
        BoxAnswer const answer({button});
        FindAction(QStringLiteral("Save graph library"))->trigger();
        QVERIFY(answer.IsDone());
        QCOMPARE(m_Run->user.NameOf(Item(1)), name.toStdString());
        QVERIFY(Content().contains(name.toUtf8()));
        QVERIFY(!m_Run->host.IsModified());
    }

    void takingFromDiskClosesOrSaysWhyNot()
    {
        Open();
        Rename();
        m_Folder->Write(kGlowFile, "{");
        {
            BoxAnswer const refused({QStringLiteral("Save"), QStringLiteral("Take from Disk"),
                                     QStringLiteral("OK")});
            QVERIFY(!m_Run->window.close());
            QVERIFY(refused.IsDone());
            QVERIFY2(refused.GetText().contains(QStringLiteral("not JSON")),
                     qPrintable(refused.GetText()));
        }
        QFile::remove(m_Folder->GetPath(kGlowFile));
        BoxAnswer const taken({QStringLiteral("Save"), QStringLiteral("Take from Disk")});
        QVERIFY(m_Run->window.close());
        QVERIFY(taken.IsDone());
    }

    void changesOfAKilledEditorAreOffered_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("isRecovered");
        QTest::addColumn<int>("journals");
        QTest::newRow("recover") << "Recover" << true << 1;
        QTest::newRow("discard") << "Discard" << false << 0;
        QTest::newRow("later") << "" << false << 1;
    }

    void changesOfAKilledEditorAreOffered()
    {
        QFETCH(QString, button);
        QFETCH(bool, isRecovered);
        QFETCH(int, journals);
        Open();
        Rename();
        QTRY_COMPARE(CountJournals(), 1);
        Start();
        auto const before = m_Folder->Read();
        BoxAnswer const answer({button});
        Open();
        QVERIFY(answer.IsDone());
        QCOMPARE(m_Run->user.NameOf(Item(1)) == "Soft Glow", isRecovered);
        QTRY_COMPARE(m_Run->window.isWindowModified(), isRecovered);
        QCOMPARE(CountJournals(), journals);
        QCOMPARE(m_Folder->Read(), before);
    }

    void isAsItWasLeft()
    {
        Open();
        ShowCompound(2);
        QDockWidget* panel = m_Run->window.findChild<QDockWidget*>(QStringLiteral("Node Browser"));
        panel->hide();
        FindAction(QStringLiteral("Dark Palette"))->trigger();
        FindAction(QStringLiteral("Source-Control Marks"))->trigger();
        m_Run->window.resize(640, 480);
        QVERIFY(m_Run->window.close());

        Start();
        panel = m_Run->window.findChild<QDockWidget*>(QStringLiteral("Node Browser"));
        QVERIFY(panel->isHidden());
        QCOMPARE(m_Run->window.size(), QSize(640, 480));
        QVERIFY(FindAction(QStringLiteral("Dark Palette"))->isChecked());
        QVERIFY(m_Run->window.palette().color(QPalette::Window).lightness() < 100);
        QVERIFY(!FindAction(QStringLiteral("Source-Control Marks"))->isChecked());
        QVERIFY(!m_Run->host.IsRevisionControlEnabled());
        QCOMPARE(m_Run->settings.GetRecentLibraries(), QStringList(m_Folder->GetPath()));
        Open();
        QVERIFY(m_Run->host.GetCompoundTarget().GetItemID() == Item(2));

        // Each library has a compound of its own to come back to.
        LibraryFolder const other;
        other.Write(kGlowFile, Object(3, "compound", "Other"));
        QVERIFY(m_Run->window.OpenLibrary(other.GetPath()));
        ShowCompound(3);
        Open();
        QVERIFY(m_Run->host.GetCompoundTarget().GetItemID() == Item(2));
    }

    void shortcutsAreTheirOwn()
    {
        Open();
        QMap<QString, QString> owners;
        for (QAction const* const action : m_Run->window.findChildren<QAction*>()) {
            for (QKeySequence const& key : action->shortcuts()) {
                QString& owner = owners[key.toString()];
                QVERIFY2(owner.isEmpty(), qPrintable(key.toString() + ": " + owner + ", "
                                                     + action->text()));
                owner = action->text();
            }
        }
        QVERIFY(owners.size() > 10);
    }

    /// What is typed into the search field is no command for the graph.
    void searchFieldKeepsItsKeys()
    {
        Open();
        Rename();
        ShowCompound(1);
        FindAction(QStringLiteral("Select All"))->trigger();
        QTRY_VERIFY(FindAction(QStringLiteral("Delete"))->isEnabled());
        QApplication::setActiveWindow(&m_Run->window);
        auto* const field = m_Run->window.findChild<QLineEdit*>();
        field->setFocus();
        QTRY_VERIFY(field->hasFocus());
        QTest::keyClicks(field, QStringLiteral("ramp"));
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(field->text(), QString());
        QCOMPARE(m_Run->user.NameOf(Item(1)), std::string("Soft Glow"));
        QTest::keyClicks(field, QStringLiteral("ramp"));
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field, Qt::Key_Delete);
        QCOMPARE(field->text(), QString());
        QCOMPARE(CountNodes(), std::size_t(1));
    }

    void editMenuActsOnTheGraph()
    {
        Open();
        ShowCompound(1);
        FindAction(QStringLiteral("Select All"))->trigger();
        QTRY_VERIFY(FindAction(QStringLiteral("Copy"))->isEnabled());
        FindAction(QStringLiteral("Copy"))->trigger();
        FindAction(QStringLiteral("Paste"))->trigger();
        QCOMPARE(CountNodes(), std::size_t(2));
        QTRY_VERIFY(m_Run->window.isWindowModified());
        FindAction(QStringLiteral("Delete"))->trigger();
        QCOMPARE(CountNodes(), std::size_t(1));
        m_Run->host.GetCommandManager().GetUndoStack().undo();
        QCOMPARE(CountNodes(), std::size_t(2));
    }

    void withoutALibraryNothingIsOffered()
    {
        for (QString const& text : {QStringLiteral("Save graph library"),
                                    QStringLiteral("Public compound"), QStringLiteral("Paste"),
                                    QStringLiteral("Input...")})
            QVERIFY2(!FindAction(text)->isEnabled(), qPrintable(text));
        Open();
        QVERIFY(FindAction(QStringLiteral("Save graph library"))->isEnabled());
        QVERIFY(!FindAction(QStringLiteral("Paste"))->isEnabled());
        ShowCompound(1);
        QVERIFY(FindAction(QStringLiteral("Paste"))->isEnabled());
        QVERIFY(!FindAction(QStringLiteral("Copy"))->isEnabled());
    }
};

NODEBROWSER_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
