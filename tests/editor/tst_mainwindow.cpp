#include "loggedtest.h"
#include "whenshown.h"

#include <editorapplication.h>
#include <embeddedhost/journal.h>
#include <libraryfolder.h>
#include <libraryuser.h>
#include <mainwindow.h>
#include <palette/nodepalette.h>
#include <settings.h>

#include <QAccessible>

#include <stdexcept>

using namespace tarno::datamodel;

using namespace embeddedhost;

namespace {

QString const kGlowFile = QStringLiteral("project/glow.json");

/// One run of the editor, with everything that ends with the process; its settings are those of the
/// environment.
struct EditorRun
{
    explicit EditorRun(QString const& journalFolder)
        : journal(host, journalFolder)
        , window(host)
    {
        journal.SetPause(10);
        window.UseSettings(settings);
        window.UseJournal(journal);
        window.show();
    }

    CEmbeddedHost host;
    CSettings settings;
    embeddedhost::CJournal journal;
    CMainWindow window;
};

/// Throws when it is painted or closed, and an int when it is pressed, once it is gone itself.
struct SFailingWidget : QWidget
{
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::Paint || event->type() == QEvent::Close)
            throw std::runtime_error("the brush broke");
        if (event->type() != QEvent::MouseButtonPress)
            return QWidget::event(event);
        delete this;
        throw 42;
    }
};

} // namespace

/// The window as a user has it, with settings and a journal in folders of its own.
class TestMainWindow : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Run.reset();
        m_Home = std::make_unique<QTemporaryDir>();
        // Wherever temporary folders are, others are not in this home.
        for (char const* const name : {"HOME", "XDG_CONFIG_HOME"})
            qputenv(name, QFile::encodeName(m_Home->path()));
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow"));
        m_Folder->Write("project/ramp.json", Object(2, "compound", "Ramp"));
        Start();
    }

private:
    void Start()
    {
        // There is one host at a time.
        m_Run.reset();
        m_Run = std::make_unique<EditorRun>(m_Home->filePath("journal"));
    }

    void Open()
    {
        QVERIFY(m_Run->window.OpenLibrary(m_Folder->GetPath()));
    }

    /// Open, with a change that is not saved.
    void OpenAndRename()
    {
        Open();
        LibraryUser(m_Run->host).Rename(Item(1), "New");
        QTRY_COMPARE(CountJournals(), 1);
    }

    ItemID Item(int number)
    {
        return m_Run->host.FindItem(Uid(number));
    }

    QString Name()
    {
        return QString::fromStdString(LibraryUser(m_Run->host).NameOf(Item(1)));
    }

    QString NameOnDisk()
    {
        QByteArray const content = ReadFile(m_Folder->GetPath(kGlowFile));
        return QJsonDocument::fromJson(content).object()["name"].toString();
    }

    int CountJournals()
    {
        return int(QDir(m_Home->filePath("journal")).entryList({"*.json"}).size());
    }

    QAction* Action(QString const& text)
    {
        for (QAction* const action : m_Run->window.findChildren<QAction*>())
            if (action->text().remove('&') == text)
                return action;
        qFatal("There is no menu entry %s.", qPrintable(text));
    }

    std::unique_ptr<QTemporaryDir> m_Home;
    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<EditorRun> m_Run;

private Q_SLOTS:
    void otherLibrariesAreOpenedFromTheMenu()
    {
        QString const empty = m_Home->filePath("Empty & new");
        QDir().mkpath(empty);
        LibraryFolder const broken;
        broken.Write("library.json", "{");
        m_Run->settings.AddRecentLibrary(broken.GetPath());
        OpenAndRename();
        // What cannot be opened leaves the open one alone: a broken library, a new one in a folder
        // that is not empty, and one for which changes would have to go.
        SAnswers answers({"OK", "OK", "Cancel", "Discard"});
        Action("2  " + broken.GetPath())->trigger();
        QTRY_VERIFY(answers.said.contains("library.json"));
        for (QString const& chosen : {m_Folder->GetPath(), empty}) {
            WhenShown const dialog(OnDialog<QFileDialog>([&chosen](QFileDialog& dialog) {
                dialog.selectFile(chosen);
                return QMetaObject::invokeMethod(&dialog, "accept") && false;
            }));
            Action("New Library...")->trigger();
            QCOMPARE(m_Run->host.GetLibraryFolder(), m_Folder->GetPath());
        }
        QVERIFY(answers.said.contains("not empty"));
        Action("Undo Rename Glow")->trigger();
        QVERIFY(m_Run->window.OpenLibrary(empty));
        Action("2  " + m_Folder->GetPath())->trigger();
        QTRY_COMPARE(m_Run->host.GetLibraryFolder(), m_Folder->GetPath());
    }

    void closingAsks()
    {
        // What another program calls the item on disk ("Glow" changes nothing), the answers, and
        // the name here and on disk; behind a ! where the window stays open.
        for (QString const row :
             {"Glow|Save|New New", "Glow|Discard|New Glow", "Glow||!New Glow",
              "Theirs|Save,Take from Disk|Theirs Theirs", "Theirs|Save,Overwrite|New New",
              "Theirs|Save,Cancel|!New Theirs", "(broken)|Save,Take from Disk,OK|!New "}) {
            SetUp();
            QString const theirs = row.section('|', 0, 0);
            OpenAndRename();
            if (theirs != "Glow")
                m_Folder->Write(kGlowFile,
                                theirs == "Theirs" ? Object(1, "compound", "Theirs") : "{");
            SAnswers const answers(row.section('|', 1, 1).split(','));
            QString const isKept(m_Run->window.close() ? "" : "!");
            QVERIFY(answers.buttons.isEmpty());
            QVERIFY(theirs == "Glow" || answers.said.contains(kGlowFile));
            QCOMPARE(row + isKept + Name() + ' ' + NameOnDisk(), row + row.section('|', 2));
            // The process may end before anything else happens.
            QCOMPARE(CountJournals() == 0, !m_Run->window.isVisible());
        }
    }

    void closingStopsTheReading()
    {
        CMainWindow& window = m_Run->window;
        QStringList texts;
        QTimer::singleShot(0, &window, [&] {
            for (QLabel const* const label : window.findChildren<QLabel*>())
                texts << label->text();
            // Nothing is done of what could be chosen meanwhile.
            QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
            window.close();
        });
        QVERIFY(window.OpenLibrary(m_Folder->GetPath()));
        QVERIFY2(texts.contains("Reading the library..."), qPrintable(texts.join('|')));
        QVERIFY(!window.isVisible());
        QVERIFY(!m_Run->host.GetLibrary().IsValid());
        QVERIFY(m_Run->settings.GetRecentLibraries().isEmpty());
        // It can be opened again.
        Open();
    }

    void changesOfAKilledEditorAreOffered()
    {
        for (QString const answer : {"Recover", "Discard", "Ask Later"}) {
            SetUp();
            OpenAndRename();
            Start();
            auto const before = m_Folder->Read();
            SAnswers const answers({answer});
            Open();
            QVERIFY(answers.said.contains("One item was changed"));
            QCOMPARE(Name() == "New", answer == "Recover");
            QTRY_COMPARE(m_Run->window.isWindowModified(), answer == "Recover");
            QCOMPARE(CountJournals(), answer == "Discard" ? 0 : 1);
            QCOMPARE(m_Folder->Read(), before);
        }
    }

    void messagesAreShown()
    {
        CMainWindow& window = m_Run->window;
        CMessageChannel& messages = m_Run->host.GetMessages();
        QDockWidget& log = *window.findChild<QDockWidget*>("Messages");
        QTextDocument const& shown = *log.findChild<QPlainTextEdit*>()->document();
        messages.Post(eSeverity::kInformation, "one\ntwo");
        QTRY_COMPARE(window.statusBar()->currentMessage(), QString("one\ntwo"));
        QCOMPARE(shown.lastBlock().text().mid(8), QString("  one\u2028two"));
        QVERIFY(log.isHidden());
        messages.Post(eSeverity::kWarning, QString(2001, 'x'));
        QTRY_COMPARE(shown.lastBlock().text().mid(8),
                     "  Warning: " + QString(2000, 'x') + "... (1 more letters)");
        // It comes by itself once.
        QVERIFY(log.isVisible() && log.close());
        for (int const dropped : {3, 1004}) {
            for (int number = 0; number <= 1000; ++number)
                messages.Post(eSeverity::kError, QString("%1: %2").arg(dropped).arg(number));
            QTRY_VERIFY(shown.lastBlock().text().endsWith(QString("%1: 1000").arg(dropped)));
            QCOMPARE(shown.blockCount(), 1001);
            QCOMPARE(shown.firstBlock().text(),
                     QString("%L1 earlier messages are not shown any more.").arg(dropped));
            QVERIFY(shown.firstBlock().next().text().endsWith(QString(" %1: 1").arg(dropped)));
        }
        QVERIFY(log.isHidden());
    }

    void screenReadersFindPopupsOverTheWindow()
    {
        CMainWindow& window = m_Run->window;
        QMenu menu(&window);
        menu.addAction(QStringLiteral("Entry"));
        menu.popup(window.mapToGlobal(window.rect().center()));
        QMenu* const submenu = menu.addMenu(QStringLiteral("More"));
        submenu->addAction(QStringLiteral("Other"));
        submenu->popup(menu.geometry().topRight());
        for (QMenu* const found : {&menu, submenu}) {
            QPoint const point = found->geometry().center();
            QCOMPARE(QAccessible::queryAccessibleInterface(&window)->childAt(point.x(), point.y()),
                     QAccessible::queryAccessibleInterface(found));
        }
    }

    void theStatusBarTellsOfTheGraph()
    {
        Open();
        auto const& label = *m_Run->window.statusBar()->findChild<QLabel*>();
        QCOMPARE(label.text(), QString("No compound is open"));
        auto const& dock = *m_Run->window.findChild<QDockWidget*>("Node Browser");
        QVERIFY(dock.findChild<CNodePalette*>()->SelectItem(Item(2)));
        Action("Open Compound")->trigger();
        QVERIFY(m_Run->host.GetCompoundTarget().GetItemID() == Item(2));
        QCOMPARE(label.text(), QString("0 nodes · 100%"));
        Action("Zoom Out")->trigger();
        QCOMPARE(label.text(), QString("0 nodes · 80%"));
    }

    void isAsItWasLeft()
    {
        Open();
        CompoundAccessor compound;
        compound.SetFrom(m_Run->host.GetLibrary().GetModel(Item(2), nullptr));
        m_Run->host.SetCompoundTarget(compound);
        m_Run->window.findChild<QDockWidget*>("Node Browser")->hide();
        for (char const* const entry : {"Dark Palette", "Source-Control Marks", "Best Names First"})
            Action(entry)->trigger();
        m_Run->window.resize(640, 480);
        QVERIFY(m_Run->window.close());

        Start();
        QCOMPARE(m_Run->window.size(), QSize(640, 480));
        QVERIFY(Action("Dark Palette")->isChecked());
        QVERIFY(!Action("Source-Control Marks")->isChecked());
        QVERIFY(!m_Run->host.IsRevisionControlEnabled());
        QVERIFY(!Action("Best Names First")->isChecked());
        QVERIFY(m_Run->window.palette().color(QPalette::Window).lightness() < 100);
        QVERIFY(m_Run->window.findChild<QDockWidget*>("Node Browser")->isHidden());
        Action("1  " + m_Folder->GetPath())->trigger();
        QTRY_VERIFY(Item(2).IsValid());
        QVERIFY(m_Run->host.GetCompoundTarget().GetItemID() == Item(2));
        // The oldest of eight libraries is forgotten, and so is what was open in it.
        for (int number = 0; number < 8; ++number)
            m_Run->settings.AddRecentLibrary(QString::number(number));
        QCOMPARE(m_Run->settings.GetRecentLibraries().join(' '), QString("7 6 5 4 3 2 1 0"));
        QVERIFY(m_Run->settings.GetCompound(m_Folder->GetPath()).empty());
    }

    /// Whatever raises an exception, the program goes on and tells about it.
    void failuresAreSurvived()
    {
        for (char const* const text :
             {"the brush broke", "unknown reason", "out of paper", "A listener to the messages",
              "not accepted by receiving widget"})
            Expect(text);
        QSignalSpy failures(qApp, SIGNAL(ExceptionCaught(QString)));
        QPointer<SFailingWidget> const widget = new SFailingWidget;
        widget->show();
        QTRY_VERIFY(failures.count() > 0);
        // It may have something that is not saved.
        QVERIFY(!widget->close() && widget->isVisible());
        QTest::mousePress(widget, Qt::LeftButton);
        QVERIFY(!widget);
        // In the loops of menus and dialogs, too.
        static_cast<CEditorApplication*>(qApp)->ReportTo(m_Run->host.GetMessages());
        connect(&m_Run->host.GetMessages(), &embeddedhost::CMessageChannel::MessagePosted,
                &m_Run->window, [] { throw 42; });
        QTRY_VERIFY(failures.value(failures.count() - 1).value(0).toString().contains("unknown"));
        failures.clear();
        QMenu menu;
        QTimer::singleShot(0, &menu, [] { throw std::runtime_error("out of paper"); });
        QTimer::singleShot(1, &menu, &QMenu::close);
        QVERIFY(!menu.exec());
        QTRY_VERIFY(m_Run->window.statusBar()->currentMessage().contains("out of paper"));
        // What the listener threw was not posted to it in its turn.
        QCoreApplication::processEvents();
        QCOMPARE(failures.count(), 1);
    }
};

NODEBROWSER_TEST(TestMainWindow)

static bool const isApplicationSet = UseApplication(
    [](int& argc, char** argv) -> QApplication* { return new CEditorApplication(argc, argv); });

#include "tst_mainwindow.moc"
