#include "loggedtest.h"
#include "realuser.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString const kCompound = QStringLiteral("AddedTwice");

// In the editor's window, whose size the story sets; pixels.
QSize const kWindowSize(1200, 800);
QPoint const kFirstRow(60, 100);
QPoint const kLeftOnCanvas(520, 300);
QPoint const kRightOnCanvas(860, 300);

/// What a tool prints.
QString Ask(QString const& program, QStringList const& arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString AskXdotool(QStringList const& arguments)
{
    return Ask(QStringLiteral("xdotool"), arguments);
}

} // namespace

/// The program itself, from the first start of a new user to the second one.
class TestProgramStory : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void findsAllAgain();

private:
    void Start();
    void Quit();
    QString GetTitle() const;
    QPoint InWindow(QPoint const& point) const;
    void Drop(QString const& name, QPoint const& point) const;
    QString GetLibraryFolder() const;
    /// The compound as it is on disk; empty when it is not.
    QJsonObject ReadCompound() const;

    QTemporaryDir m_Home;
    QProcess m_Program;
    RealUser m_User{qEnvironmentVariable("WINDOW_PICTURES", QDir::tempPath())};
};

void TestProgramStory::Start()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    for (char const* const name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.insert(QString::fromLatin1(name), m_Home.path());
    m_Program.setProcessEnvironment(environment);
    m_Program.start(QStringLiteral(NODEEDITOR_PROGRAM), QStringList());
    QTRY_VERIFY_WITH_TIMEOUT(GetTitle().contains(QStringLiteral("Sample Library")), 20000);
    QString const window = AskXdotool({QStringLiteral("getactivewindow")});
    AskXdotool({QStringLiteral("windowsize"), QStringLiteral("--sync"), window,
                QString::number(kWindowSize.width()), QString::number(kWindowSize.height())});
}

void TestProgramStory::Quit()
{
    m_User.Press(QStringLiteral("ctrl+q"));
    QVERIFY(m_Program.waitForFinished());
    QCOMPARE(m_Program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_Program.exitCode(), 0);
}

QString TestProgramStory::GetTitle() const
{
    return AskXdotool({QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
}

QPoint TestProgramStory::InWindow(QPoint const& point) const
{
    // The mouse tells better than the window manager where a window begins.
    QString const window = AskXdotool({QStringLiteral("getactivewindow")});
    AskXdotool({QStringLiteral("mousemove"), QStringLiteral("--window"), window,
                QStringLiteral("0"), QStringLiteral("0")});
    QStringList const lines =
        AskXdotool({QStringLiteral("getmouselocation"), QStringLiteral("--shell")})
            .split(QLatin1Char('\n'));
    QPoint corner;
    for (QString const& line : lines) {
        if (line.startsWith(QLatin1String("X=")))
            corner.setX(line.mid(2).toInt());
        if (line.startsWith(QLatin1String("Y=")))
            corner.setY(line.mid(2).toInt());
    }
    return corner + point;
}

void TestProgramStory::Drop(QString const& name, QPoint const& point) const
{
    m_User.Press(QStringLiteral("ctrl+f"));
    m_User.Type(name);
    m_User.Drag(InWindow(kFirstRow), InWindow(point));
}

QString TestProgramStory::GetLibraryFolder() const
{
    QDirIterator files(m_Home.path(), {QStringLiteral("library.json")}, QDir::Files,
                       QDirIterator::Subdirectories);
    return files.hasNext() ? QFileInfo(files.next()).path() : QString();
}

QJsonObject TestProgramStory::ReadCompound() const
{
    QDirIterator files(GetLibraryFolder(), {QStringLiteral("*.json")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QJsonObject const object = QJsonDocument::fromJson(file.readAll()).object();
        if (object[QStringLiteral("name")].toString() == kCompound)
            return object;
    }
    return QJsonObject();
}

void TestProgramStory::findsAllAgain()
{
    Start();
    m_User.Press(QStringLiteral("alt+c"));
    // The second entry: the public compound.
    m_User.Press(QStringLiteral("Down"));
    m_User.Press(QStringLiteral("Return"));
    QTRY_COMPARE(GetTitle(), QStringLiteral("Create compound"));
    m_User.Press(QStringLiteral("ctrl+a"));
    m_User.Type(kCompound);
    m_User.Press(QStringLiteral("Return"));
    QTRY_VERIFY(GetTitle().startsWith(kCompound));

    Drop(QStringLiteral("add"), kLeftOnCanvas);
    Drop(QStringLiteral("multiply"), kRightOnCanvas);
    // The drop gave the keys to the canvas.
    m_User.Press(QStringLiteral("ctrl+d"));
    m_User.Press(QStringLiteral("ctrl+z"));
    m_User.Press(QStringLiteral("ctrl+s"));
    QTRY_VERIFY(!GetTitle().contains(QLatin1Char('*')));
    m_User.TakePicture(QStringLiteral("first-run"));
    Quit();

    QJsonArray const nodes = ReadCompound()[QStringLiteral("nodes")].toArray();
    QCOMPARE(nodes.size(), 2);
    QCOMPARE(nodes[0].toObject()[QStringLiteral("id")].toString(), QStringLiteral("add"));
    QCOMPARE(nodes[1].toObject()[QStringLiteral("id")].toString(), QStringLiteral("multiply"));
    QString const status =
        Ask(QStringLiteral("git"), {QStringLiteral("-C"), GetLibraryFolder(),
                                    QStringLiteral("status"), QStringLiteral("--porcelain")});
    QVERIFY2(status.startsWith(QLatin1String("?? ")) && !status.contains(QLatin1Char('\n')),
             qPrintable(status));

    Start();
    QTRY_VERIFY(GetTitle().startsWith(kCompound));
    m_User.TakePicture(QStringLiteral("second-run"));
    Quit();
}

NODEBROWSER_TEST_MAIN(TestProgramStory)
#include "tst_programstory.moc"
