#include "gitlibrary.h"
#include "loggedtest.h"
#include "sourcecontrol/statebits.h"
#include "sourcecontrol/tooltip.h"

#include <sourcecontrol.h>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QTextDocument>

using namespace embeddedhost;

namespace {

QString GetToolTip(GitLibrary const& library, int number)
{
    return ScsUtils::GetToolTip(library.GetObject(number), QStringLiteral(":compound.png"));
}

/// Without the icon and the looks.
QStringList GetLines(QString const& toolTip)
{
    QTextDocument document;
    document.setHtml(toolTip);
    QString text = document.toPlainText();
    text.remove(QChar::ObjectReplacementCharacter);
    return text.trimmed().split('\n');
}

/// Many commits of other files on top.
void AddCommits(GitFolder const& folder, int count)
{
    QByteArray stream;
    for (int i = 0; i < count; ++i) {
        QByteArray const number = QByteArray::number(i);
        stream += "commit refs/heads/main\ncommitter A <a@example.org> 1700000000 +0000\n"
                  "data 1\nx\n";
        if (i == 0)
            stream += "from refs/heads/main^0\n";
        stream += "M 644 inline other\ndata " + QByteArray::number(number.size()) + '\n' + number
                  + "\n\n";
    }
    folder.Write("../stream", stream);
    QProcess git;
    git.setWorkingDirectory(folder.GetPath());
    git.setStandardInputFile(folder.GetPath("../stream"));
    git.start("git", {"fast-import", "--quiet"});
    QVERIFY(git.waitForFinished(120000) && git.exitCode() == 0);
}

} // namespace

class TestSourceControlToolTip : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void tellsAllThereIs();
    void tellsOfAFileThatIsNew();
    void namesTheFileWithoutSourceControl();
    void nothingForAnObjectThatIsGone();
    void textsAreEscaped();
    void longHistoryHoldsNobodyUp();

private:
    QTemporaryDir m_Home;
};

void TestSourceControlToolTip::initTestCase()
{
    GitFolder::UseNoSettings(m_Home.path());
}

void TestSourceControlToolTip::tellsAllThereIs()
{
    GitLibrary const library(2);
    library.Change(1);
    library.folder.Git({"commit", "-q", "-a", "--author",
                        QString::fromUtf8("J\xC3\xBCrgen <j@example.org>"), "--date",
                        "2024-02-29T23:30:00+0530", "-m", "Second <b>\n\nbody"});
    QString const hash = library.folder.Git({"log", "-1", "--format=%h"});
    library.folder.Write(GitLibrary::GetFile(1), "{}");
    QTRY_COMPARE(GetLines(GetToolTip(library, 1)),
                 (QStringList{"c1", GitLibrary::GetFile(1), "State: modified",
                              "Last commit: " + hash
                                  + QString::fromUtf8(", J\xC3\xBCrgen, 2024-02-29 23:30"),
                              "Second <b>"}));
    QVERIFY(GetToolTip(library, 1).contains(":compound.png"));
    QTRY_COMPARE(GetLines(GetToolTip(library, 0)).value(2), QString("State: unchanged"));
}

void TestSourceControlToolTip::tellsOfAFileThatIsNew()
{
    GitLibrary const library(1);
    library.folder.Git({"rm", "-q", "-r", "--cached", "."});
    library.folder.Git({"commit", "-q", "-m", "nothing"});
    library.folder.Git({"add", GitLibrary::GetFile(0)});
    QTRY_COMPARE(GetLines(GetToolTip(library, 0)),
                 (QStringList{"c0", GitLibrary::GetFile(0), "State: added", "Not committed yet"}));
}

void TestSourceControlToolTip::namesTheFileWithoutSourceControl()
{
    GitLibrary const library(1);
    QStringList const plain = {"c0", GitLibrary::GetFile(0)};
    library.host->SetRevisionControlEnabled(false);
    QCOMPARE(GetLines(GetToolTip(library, 0)), plain);
}

void TestSourceControlToolTip::nothingForAnObjectThatIsGone()
{
    GitLibrary const library(1);
    auto const object = library.GetObject(0);
    library.host->CloseLibrary();
    QCOMPARE(ScsUtils::GetToolTip(object, QString()), QString());
    QCOMPARE(ScsUtils::GetToolTip(qorm::QormHandle<qorm::IDbObject>(), QString()), QString());
}

void TestSourceControlToolTip::textsAreEscaped()
{
    GitCommit const commit{"<i>1</i>", "<i>2</i>", QDateTime(), "<i>3</i>"};
    QString const toolTip = BuildToolTip("\"<i>", "<i>4</i>", QString(),
                                         FileFacts{"<i>5</i>", StateBits::kClean, commit});
    QVERIFY(!toolTip.contains("<i>"));
    QVERIFY(toolTip.contains("&lt;i&gt;4&lt;/i&gt;"));
}

void TestSourceControlToolTip::longHistoryHoldsNobodyUp()
{
    GitLibrary const library(1);
    QString const hash = library.folder.Git({"log", "-1", "--format=%h"});
    AddCommits(library.folder, 30000);
    QElapsedTimer time;
    time.start();
    QString const first = GetToolTip(library, 0);
    // Generous, for machines that are busy; the search itself takes far longer.
    QVERIFY2(time.elapsed() < 500, qPrintable(QString::number(time.elapsed())));
    QCOMPARE(GetLines(first).last(), QString("Looking up the last commit..."));
    // Not QTRY_VERIFY: it asks once more, and each time is a search of its own.
    auto const tellsCommit = [&] {
        return GetToolTip(library, 0).contains(hash);
    };
    QVERIFY(QTest::qWaitFor(tellsCommit, 60000));
    // Found once, it is there soon.
    QVERIFY(QTest::qWaitFor(tellsCommit, 5000));

    // Nobody waits for a search that is still running.
    AddCommits(library.folder, 30000);
    GetToolTip(library, 0);
}

NODEBROWSER_TEST_MAIN(TestSourceControlToolTip)

#include "tst_sourcecontroltooltip.moc"
