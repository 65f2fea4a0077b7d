#include "loggedtest.h"

namespace {

/// In the editor's window, whose size the story sets; pixels.
QPoint const kFirstRow(60, 100);

/// What a tool prints.
QString Ask(QString const& program, QStringList const& arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

} // namespace

/// The program itself under a real mouse and keyboard: a new user makes a compound by dragging.
class TestWindow : public LoggedTest
{
    Q_OBJECT

private:
    /// Words of a command of the tool that moves the mouse and types.
    static QString Act(QString const& command)
    {
        return Ask("xdotool", command.split(' '));
    }

    static QString Title()
    {
        return Act("getactivewindow getwindowname");
    }

    static void Press(QStringList const& keys)
    {
        for (QString const& key : keys)
            Act("key --delay 50 " + key);
    }

    /// Returns when the mouse is there: a drag looks where it goes, not only where it comes out.
    void MoveTo(QPoint const& point) const
    {
        QString const command = "mousemove --sync --window %1 %2 %3";
        Act(command.arg(m_Window).arg(point.x()).arg(point.y()));
    }

    void Drop(QString const& name, QPoint const& point) const
    {
        int const steps = 8;
        Press({"ctrl+f"});
        Act("type --delay 15 " + name);
        MoveTo(kFirstRow);
        Act("mousedown 1");
        for (int step = 1; step <= steps; ++step)
            MoveTo(kFirstRow + (point - kFirstRow) * step / steps);
        Act("mouseup 1");
    }

    QTemporaryDir m_Home;
    QProcess m_Program;
    QString m_Window;

private Q_SLOTS:
    void makesACompound()
    {
        for (char const* const name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            qputenv(name, QFile::encodeName(m_Home.path()));
        m_Program.start(NODEEDITOR_PROGRAM, QStringList());
        QTRY_VERIFY_WITH_TIMEOUT(Title().contains("Sample Library"), 20000);
        m_Window = Act("getactivewindow");
        Act("windowsize --sync " + m_Window + " 1200 800");

        // The second entry of the menu: the public compound.
        Press({"alt+c", "Down", "Return"});
        QTRY_COMPARE(Title(), QStringLiteral("Create compound"));
        Press({"ctrl+a"});
        Act("type --delay 15 AddedTwice");
        Press({"Return"});
        QTRY_VERIFY(Title().startsWith("AddedTwice"));
        Drop("add", {520, 300});
        Drop("multiply", {860, 300});
        // The drop gave the keys to the canvas.
        Press({"ctrl+d", "ctrl+z", "ctrl+s"});
        QTRY_VERIFY(!Title().contains('*'));
        Ask("import", {"-window", "root", qEnvironmentVariable("WINDOW_PICTURES") + "/window.png"});
        Press({"ctrl+q"});
        QVERIFY(m_Program.waitForFinished() && !m_Program.exitCode());
        QCOMPARE(m_Program.exitStatus(), QProcess::NormalExit);

        // A new file is all that changed.
        QString const library = m_Home.filePath("nodeeditor/sample-library/");
        QString const status = Ask("git", {"-C", library, "status", "--porcelain", "-uall"});
        QFile file(library + status.mid(3));
        QVERIFY2(status.startsWith("?? ") && file.open(QIODevice::ReadOnly), qPrintable(status));
        QByteArray const content = file.readAll();
        for (char const* const text : {"\"AddedTwice\"", "\"id\": \"add\"", "\"id\": \"multiply\""})
            QCOMPARE(content.count(text), 1);
    }
};

NODEBROWSER_TEST(TestWindow)

#include "tst_window.moc"
