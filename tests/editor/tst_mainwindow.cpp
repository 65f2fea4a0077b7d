#include "boxanswer.h"
#include "mainwindowtest.h"

#include <QDockWidget>
#include <QFileDialog>

using namespace tarno::datamodel;

namespace {

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

} // namespace

/// Libraries in the window: opened, closed, saved and recovered.
class TestMainWindow : public MainWindowTest
{
    Q_OBJECT

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
        QTest::newRow("theirs") << "Take from Disk"
                                << "Theirs";
        QTest::newRow("ours") << "Overwrite"
                              << "Soft Glow";
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
            BoxAnswer const refused(
                {QStringLiteral("Save"), QStringLiteral("Take from Disk"), QStringLiteral("OK")});
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
};

NODEBROWSER_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
