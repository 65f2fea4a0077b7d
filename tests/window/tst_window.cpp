#include "loggedtest.h"
#include "realuser.h"

#include <canvas.h>
#include <embeddedhost.h>
#include <journal.h>
#include <mainwindow.h>
#include <nodebrowser.h>
#include <samplelibrary.h>
#include <settings.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace tarno::datamodel;

namespace {

int const kRowHeight = 24;
/// Left of the scroll bar and right of the icon, in a panel of any width.
int const kRowCentre = 60;

QString const kMade = QStringLiteral("WarmTint");
QString const kRenamed = QStringLiteral("WARMTINT");

/// One run of the editor; its settings are those of the environment.
struct SRun
{
    explicit SRun(QString const& journalFolder)
        : journal(host, journalFolder)
        , window(host)
    {
        window.resize(1200, 800);
        window.UseSettings(settings);
        window.UseJournal(journal);
        window.show();
    }

    CEmbeddedHost host;
    CSettings settings;
    CJournal journal;
    CMainWindow window;
};

QString PictureFolder()
{
    QString const folder = qEnvironmentVariable("WINDOW_PICTURES", QDir::tempPath());
    QDir().mkpath(folder);
    return folder;
}

/// A tool tip that begins so is on the screen.
bool IsToolTip(QString const& text)
{
    for (QWidget* const widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->inherits("QTipLabel"))
            return static_cast<QLabel*>(widget)->text().contains(text);
    return false;
}

/// Mean difference of the channels of two pictures of one size, 0 to 255.
double Difference(QImage const& left, QImage const& right)
{
    double sum = 0;
    for (int y = 0; y < left.height(); ++y)
        for (int x = 0; x < left.width(); ++x) {
            QColor const a = left.pixelColor(x, y);
            QColor const b = right.pixelColor(x, y);
            sum +=
                qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue());
        }
    return sum / (3.0 * left.width() * left.height());
}

} // namespace

/// The editor under a real mouse and keyboard, with a fresh profile and a copy of the sample
/// library that is a git work tree.
class TestWindow : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        // Windows that close while the toolkit asks the server about them.
        Expect(QStringLiteral("QXcbConnection: XCB error: 3 (BadWindow)"));
        m_Home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_Home->path()));
        QString fault;
        PrepareSampleLibrary(SAMPLE_LIBRARY, Library(), &fault);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        Start();
    }

    void TearDown() override
    {
        m_Run.reset();
        m_Home.reset();
    }

private:
    void Start()
    {
        // There is one host at a time.
        m_Run.reset();
        m_Run = std::make_unique<SRun>(m_Home->filePath("journal"));
        QVERIFY(m_Run->window.OpenLibrary(Library()));
        QVERIFY(QTest::qWaitForWindowActive(&m_Run->window));
    }

    QString Library() const
    {
        return m_Home->filePath("library");
    }

    void Play(std::function<void()> const& story)
    {
        QString const fault = m_User.Play(story);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }

    // In the application's thread.

    QString NameOf(ItemID const& id)
    {
        return QString::fromLatin1(m_Run->host.GetLibrary().GetItemName(id, true, nullptr).c_str());
    }

    QString ShownCompound()
    {
        CompoundAccessor compound = m_Run->host.GetCompoundTarget();
        return compound.IsValid() ? NameOf(compound.GetItemID()) : QString();
    }

    GraphBody Body()
    {
        return m_Run->host.GetBody(m_Run->host.GetCompoundTarget().GetItemID());
    }

    bool HasItem(QString const& name)
    {
        return IsNameInNodeLibraryHierarchy(m_Run->host.GetLibrary(), qPrintable(name));
    }

    QUndoStack& Stack()
    {
        return m_Run->host.GetCommandManager().GetUndoStack();
    }

    template <class Widget>
    Widget& Find()
    {
        return *m_Run->window.findChild<Widget*>();
    }

    /// Of the panel, below the header.
    QRect RowArea()
    {
        CNodeBrowser& panel = Find<CNodeBrowser>();
        return panel.rect().adjusted(0, panel.findChild<QScrollBar*>()->y(), 0, 0);
    }

    QPoint PortPoint(char const* node, char const* port, bool isOutput)
    {
        CCanvas& canvas = Find<CCanvas>();
        auto const pick =
            static_cast<CGraphScene*>(canvas.scene())->GetPort({node, port}, isOutput);
        return pick ? canvas.viewport()->mapToGlobal(canvas.mapFromScene(pick->position))
                    : QPoint();
    }

    // What a user does, for stories.

    QPoint RowPoint(int row)
    {
        return RealUser::OnScreen([&] {
            int const top = RowArea().top() + kRowHeight / 2;
            return Find<CNodeBrowser>().mapToGlobal(QPoint(kRowCentre, top + row * kRowHeight));
        });
    }

    QPoint CanvasPoint(double across, double down)
    {
        return RealUser::OnScreen([&] {
            QWidget const& view = *Find<CCanvas>().viewport();
            return view.mapToGlobal(QPoint(int(view.width() * across), int(view.height() * down)));
        });
    }

    /// The row that has to come first is selected then.
    void Search(QString const& text, QString const& name)
    {
        RealUser::Press("ctrl+f");
        RealUser::Type(text);
        RealUser::WaitUntil("the search for " + text,
                            [&] { return Find<QLineEdit>().text() == text; });
        RealUser::Click(RowPoint(0));
        RealUser::WaitUntil(name + " in the first row",
                            [&] { return NameOf(Find<CNodeBrowser>().GetSelection()) == name; });
    }

    void ChooseInRowMenu(QStringList const& texts)
    {
        RealUser::Click(RowPoint(0), 3);
        RealUser::ChooseInMenu(texts);
    }

    void AnswerDialog(QString const& title, QString const& text)
    {
        RealUser::WaitForDialog(title);
        RealUser::Type(text);
        m_User.TakePicture(title);
        RealUser::Press("Return");
        RealUser::WaitForDialog(QString());
    }

    void Create(QString const& name)
    {
        RealUser::Click(RealUser::OnScreen([&] {
            QMenuBar const& bar = *m_Run->window.menuBar();
            for (QAction* const action : bar.actions())
                if (action->text() == "&Create")
                    return bar.mapToGlobal(bar.actionGeometry(action).center());
            return QPoint();
        }));
        RealUser::ChooseInMenu({"Public compound"});
        AnswerDialog("Create compound", name);
        RealUser::WaitUntil("the new compound", [&] { return ShownCompound() == name; });
    }

    void DropItem(QString const& name, double across)
    {
        std::size_t const before = RealUser::OnScreen([&] { return Body().nodes.size(); });
        Search(name, name);
        RealUser::Drag(RowPoint(0), CanvasPoint(across, 0.3));
        RealUser::WaitUntil("a node", [&] { return Body().nodes.size() == before + 1; });
    }

    RealUser m_User{PictureFolder()};
    std::unique_ptr<QTemporaryDir> m_Home;
    std::unique_ptr<SRun> m_Run;

private Q_SLOTS:
    /// From the first click to what is on disk and there again at the next start.
    void keepsWhatIsMade()
    {
        Play([&] {
            Create(kMade);
            DropItem("Add", 0.25);
            DropItem("Multiply", 0.7);
            RealUser::Drag(RealUser::OnScreen([&] { return PortPoint("add", "result", true); }),
                           RealUser::OnScreen([&] { return PortPoint("multiply", "a", false); }));
            RealUser::WaitUntil("a connection", [&] { return Body().connections.size() == 1; });
            Search(kMade, kMade);
            ChooseInRowMenu({"Rename " + kMade});
            AnswerDialog("Rename " + kMade, kRenamed);
            Search(kRenamed, kRenamed);
            ChooseInRowMenu({"Edit Tags for " + kRenamed});
            AnswerDialog("Edit Item Tags", "cosiness");
            Search("cosiness", kRenamed);
            ChooseInRowMenu({"Compound source", "Shared"});
            RealUser::WaitForDialog(QString());
            // The search field would undo what was typed.
            RealUser::Click(CanvasPoint(0.5, 0.1));
            while (RealUser::OnScreen([&] { return Stack().canUndo(); }))
                RealUser::Press("ctrl+z");
            RealUser::WaitUntil("nothing", [&] { return !HasItem(kRenamed) && !HasItem(kMade); });
            while (RealUser::OnScreen([&] { return Stack().canRedo(); }))
                RealUser::Press("ctrl+shift+z");
            Search(kRenamed, kRenamed);
            RealUser::Click(RowPoint(0));
            RealUser::Click(RowPoint(0));
            RealUser::WaitUntil("it on the canvas", [&] { return ShownCompound() == kRenamed; });
            RealUser::Press("ctrl+s");
            RealUser::WaitUntil("a save", [&] { return !m_Run->host.IsModified(); });
            m_User.TakePicture("saved");
            RealUser::Press("ctrl+q");
            RealUser::WaitUntil("the end", [&] { return !m_Run->window.isVisible(); });
        });
        QProcess git;
        git.start("git", {"-C", Library(), "status", "--porcelain"});
        QVERIFY(git.waitForFinished());
        QByteArray const status = git.readAllStandardOutput().trimmed();
        QVERIFY2(status.startsWith("?? shared/") && !status.contains('\n'), status.constData());
        QFile file(Library() + '/' + status.mid(3));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray const content = file.readAll();
        QVERIFY(content.contains("WARMTINT") && content.contains("cosiness"));

        Start();
        QCOMPARE(ShownCompound(), kRenamed);
        GraphBody const body = Body();
        QCOMPARE(body.nodes.size(), std::size_t(2));
        QCOMPARE(body.nodes[0].id, std::string("add"));
        QCOMPARE(body.connections.size(), std::size_t(1));
        QCOMPARE(body.connections[0].to.node, std::string("multiply"));
        QVERIFY(!m_Run->host.IsModified());
    }

    /// What is on the screen is what would be painted now.
    void screenFollowsTheSearch()
    {
        QImage screen;
        Play([&] {
            Search("add", "Add");
            screen = m_User.TakePicture("search");
        });
        CNodeBrowser& panel = Find<CNodeBrowser>();
        QRect const rows = RowArea();
        QRect const onScreen(panel.mapToGlobal(rows.topLeft()), rows.size());
        QVERIFY(Difference(screen.copy(onScreen), panel.grab(rows).toImage()) < 3.0);
    }

    void menusAndToolTipsComeUp()
    {
        Play([&] {
            Search("Rolling Hills", "Rolling Hills");
            RealUser::MoveTo(RowPoint(0) + QPoint(9, 0));
            RealUser::WaitUntil("the row's tool tip", [] { return IsToolTip("Rolling Hills"); });
            RealUser::Click(RowPoint(0), 3);
            RealUser::PointAtEntry("Compound source");
            RealUser::PointAtEntry("Shared");
            RealUser::WaitUntil("the data source's tool tip",
                                [] { return IsToolTip("Move compound to this data source"); });
            m_User.TakePicture("menu");
            RealUser::Press("Escape");
            RealUser::Press("Escape");
            RealUser::WaitForDialog(QString());
        });
    }

    void wheelScrolls()
    {
        Play([&] {
            for (int const button : {5, 5, 4})
                RealUser::Click(RowPoint(3), button);
            RealUser::WaitUntil("three rows further down", [&] {
                return Find<CNodeBrowser>().findChild<QScrollBar*>()->value() == 3 * kRowHeight;
            });
        });
    }
};

NODEBROWSER_TEST_MAIN(TestWindow)

#include "tst_window.moc"
