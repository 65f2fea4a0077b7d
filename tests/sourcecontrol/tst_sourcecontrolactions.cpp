#include "gitlibrary.h"
#include "loggedtest.h"
#include "sourcecontrol/statebits.h"
#include "sourcecontroltask.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace embeddedhost::StateBits;

namespace {

qorm::IRevisionControlUIHelper& GetHelper()
{
    return dynamic_cast<qorm::IRevisionControlUIHelper&>(
        *wekGetSystem()->GetService("RevisionControlUIHelper"));
}

} // namespace

/// What the panel asks of source control for one object.
class TestSourceControlActions : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void checkOut();
    void checkOutSaysWhyNot();
    void makeWritable();
    void showFiles();

private:
    QTemporaryDir m_Home;
};

void TestSourceControlActions::initTestCase()
{
    GitFolder::UseNoSettings(m_Home.path());
}

void TestSourceControlActions::checkOut()
{
    GitLibrary const library(2);
    QString const file = library.folder.GetPath(GitLibrary::GetFile(0));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    StateRecorder const recorder(library.host->GetLibrary());
    TaskPtr const task = MakeTask();
    task->RequestObjectStates(library.GetObjects());
    QTRY_COMPARE(recorder.count, 2);

    bool isCheckedOut = false;
    GetHelper().CheckOut(library.GetObject(0), isCheckedOut, true);
    QVERIFY(isCheckedOut);
    QVERIFY(QFile::permissions(file).testFlag(QFile::WriteOwner));
    QTRY_COMPARE(recorder.GetState(library.GetItem(0)), kClean | kCheckedOut);
    QCOMPARE(library.folder.Git({"status", "--porcelain"}), QString());
}

void TestSourceControlActions::checkOutSaysWhyNot()
{
    GitLibrary const library(2);
    auto const isRefused = [&](QString const& reason) {
        library.host->GetMessages().ClearLog();
        bool isCheckedOut = true;
        GetHelper().CheckOut(library.GetObject(0), isCheckedOut, true);
        auto const& log = library.host->GetMessages().GetLog();
        return !isCheckedOut && std::any_of(log.begin(), log.end(), [&](auto const& message) {
            return message.text.contains(reason);
        });
    };
    // Nothing of the git folder is known any more.
    library.folder.Write(".git/config", "[broken");
    QVERIFY(isRefused("it cannot be checked out: git cannot read the work tree "
                      + library.folder.GetPath()));
    QVERIFY(QDir(library.folder.GetPath()).rename(".git", ".gone"));
    QVERIFY(isRefused("it is not in a git work tree"));
    QFile::remove(library.folder.GetPath(GitLibrary::GetFile(0)));
    QVERIFY(isRefused("has no file on disk"));

    bool isCheckedOut = true;
    GetHelper().CheckOut(qorm::QormHandle<qorm::IDbObject>(), isCheckedOut, true);
    QVERIFY(!isCheckedOut);
}

void TestSourceControlActions::makeWritable()
{
    GitLibrary const library(1);
    QString const file = library.folder.GetPath(GitLibrary::GetFile(0));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup));
    GetHelper().MakeWritable(library.GetObject(0), true);
    QFile::Permissions const permissions = QFile::permissions(file);
    QVERIFY(permissions.testFlag(QFile::WriteOwner));
    QVERIFY(!permissions.testFlag(QFile::WriteGroup));
    QVERIFY(!QFileInfo::exists(library.folder.GetPath(".git/checkedout.json")));
    QVERIFY(library.host->GetMessages().GetLog().empty());
}

void TestSourceControlActions::showFiles()
{
    GitLibrary const library(2);
    QSignalSpy const shown(library.host.get(), &CEmbeddedHost::ShowFilesRequested);
    GetHelper().ShowFiles(library.GetObject(1), false);
    QCOMPARE(shown.count(), 1);
    QCOMPARE(shown.front().front().toStringList(),
             QStringList(library.folder.GetPath(GitLibrary::GetFile(1))));
    GetHelper().ShowFiles(qorm::QormHandle<qorm::IDbObject>(), false);
    QCOMPARE(shown.count(), 1);
}

NODEBROWSER_TEST_MAIN(TestSourceControlActions)

#include "tst_sourcecontrolactions.moc"
