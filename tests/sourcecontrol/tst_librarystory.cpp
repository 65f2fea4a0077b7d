#include "gitfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <qorm.h>

#include <nlohmann/json.hpp>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>

using namespace tarno::datamodel;
using nlohmann::ordered_json;

namespace {

char const* const kLamp = "5FA2F2E2-BA2D-4C16-B9AB-85195B1BD911";
char const* const kFlame = "15BF93D0-C11C-4FE7-82C3-43CC8D1B87C8";
char const* const kCoolDown = "72662ED6-FB2C-4496-9793-2FCF90C477D8";
char const* const kFade = "2E5F211F-9232-4270-A0E4-D0B571D66D00";

qorm::IRevisionControlUIHelper& GetHelper()
{
    return *dynamic_cast<qorm::IRevisionControlUIHelper*>(
        wekGetSystem()->GetService("RevisionControlUIHelper"));
}

qorm::QormHandle<qorm::IDbObject> FindObject(char const* uid)
{
    return GetHelper().FindObject(qorm::DbObjectId(uid));
}

} // namespace

/// The sample library in a work tree, changed the way a panel changes it.
class tst_LibraryStory : public LoggedTest
{
    Q_OBJECT

private:
    void CopySample() const
    {
        QDir const sample(QStringLiteral(SAMPLE_LIBRARY));
        QDirIterator files(sample.path(), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            m_Folder->Write(sample.relativeFilePath(file.fileName()), file.readAll());
        }
        m_Folder->Commit(QStringLiteral("the library"));
    }

    ordered_json ReadJson(QString const& file) const
    {
        return ordered_json::parse(m_Folder->Read(file).toStdString());
    }

    QStringList GetStatus() const
    {
        QStringList lines = m_Folder->Git({"status", "--porcelain", "-uall"}).split('\n');
        lines.sort();
        return lines;
    }

    QUndoStack& Stack() const
    {
        return m_Host->GetCommandManager().GetUndoStack();
    }

    ItemID Find(char const* uid) const
    {
        return m_Host->FindItem(uid);
    }

    QTemporaryDir m_Home;
    std::unique_ptr<GitFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;

protected:
    void SetUp() override
    {
        GitFolder::UseNoSettings(m_Home.path());
        m_Folder = std::make_unique<GitFolder>();
        CopySample();
        m_Host = std::make_unique<CEmbeddedHost>();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
    }

    void TearDown() override
    {
        m_Host.reset();
        m_Folder.reset();
    }

private Q_SLOTS:
    void ChangesReachDiskWhenSaved()
    {
        LibraryUser user(*m_Host);
        user.Create("Brand New");
        QVERIFY(user.Rename(Find(kLamp), "Tea Lamp"));
        QVERIFY(user.Tag(Find(kFlame), "warm;small"));
        QVERIFY(user.Tag(Find(kCoolDown), "undone"));
        Stack().undo();
        QCOMPARE(GetStatus(), QStringList(QString()));

        while (Stack().canUndo())
            Stack().undo();
        QVERIFY(!m_Host->IsModified());
        while (Stack().index() < 3)
            Stack().redo();
        QVERIFY(user.Save());
        QCOMPARE(GetStatus(),
                 (QStringList{" M project/cafe-lamp.json", " M project/candle-flame.json",
                              "?? project/brand-new.json"}));
        QVERIFY(ReadJson("project/brand-new.json")["name"] == "Brand New");
        QVERIFY(ReadJson("project/candle-flame.json")["tags"]["ApplicationTags"] == "warm;small");
        // Nothing but the one line.
        QString const changes = m_Folder->Git({"diff", "--numstat", "project/cafe-lamp.json"});
        QCOMPARE(changes, QString("1\t1\tproject/cafe-lamp.json"));
        QVERIFY(ReadJson("project/cafe-lamp.json")["name"] == "Tea Lamp");

        while (Stack().canUndo())
            Stack().undo();
        QVERIFY(user.Save());
        QCOMPARE(GetStatus(), QStringList(QString()));
    }

    void MovesThroughGit()
    {
        auto const object = FindObject(kLamp);
        QVERIFY(object.IsValid());
        QByteArray const content = m_Folder->Read("project/cafe-lamp.json");
        qorm::IHelper::GetHelper(object.GetInstance())
            ->MoveToDataSource(object, FindObject(kFade).GetDataSource(), true);
        QStringList const moved{"R  project/cafe-lamp.json -> shared/cafe-lamp.json"};
        QCOMPARE(m_Folder->Read("shared/cafe-lamp.json"), content);
        QTRY_COMPARE(GetStatus(), moved);
        Stack().undo();
        QTRY_COMPARE(GetStatus(), QStringList(QString()));
        Stack().redo();
        QTRY_COMPARE(GetStatus(), moved);

        LibraryUser user(*m_Host);
        QVERIFY(user.Rename(Find(kLamp), "Tea Lamp"));
        QVERIFY(user.Save());
        QCOMPARE(GetStatus(), QStringList{"RM project/cafe-lamp.json -> shared/cafe-lamp.json"});
    }

    void MovesWhileGitIsBusy()
    {
        auto const object = FindObject(kLamp);
        QString const lock = m_Folder->GetPath(".git/index.lock");
        m_Folder->Write(".git/index.lock", "");
        qorm::IHelper::GetHelper(object.GetInstance())
            ->MoveToDataSource(object, FindObject(kFade).GetDataSource(), true);
        QVERIFY(QFile::exists(m_Folder->GetPath("shared/cafe-lamp.json")));
        QFile::remove(lock);
        QTRY_COMPARE(GetStatus(),
                     QStringList{"R  project/cafe-lamp.json -> shared/cafe-lamp.json"});

        // When it is busy for long, the user is told what to do.
        m_Folder->Write(".git/index.lock", "");
        Stack().undo();
        QVERIFY(QFile::exists(m_Folder->GetPath("project/cafe-lamp.json")));
        auto const& log = m_Host->GetMessages().GetLog();
        QTRY_COMPARE(log.size(), std::size_t(1));
        QVERIFY(log.back().text.contains("moved on disk, but not for git: git's index cannot be"));
        QFile::remove(lock);
        m_Folder->Git({"add", "-A"});
        QCOMPARE(GetStatus(), QStringList(QString()));
    }

    void ChecksOut()
    {
        QString const file = m_Folder->GetPath("project/cool-down.json");
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
        bool isCheckedOut = false;
        GetHelper().CheckOut(FindObject(kCoolDown), isCheckedOut, true);
        QVERIFY(isCheckedOut);
        QVERIFY(QFile::permissions(file).testFlag(QFile::WriteOwner));
        QCOMPARE(GetStatus(), QStringList(QString()));

        LibraryUser user(*m_Host);
        QVERIFY(user.Tag(Find(kCoolDown), "checked"));
        QVERIFY(user.Save());
        QCOMPARE(GetStatus(), QStringList(" M project/cool-down.json"));
    }
};

NODEBROWSER_TEST_MAIN(tst_LibraryStory)
#include "tst_librarystory.moc"
