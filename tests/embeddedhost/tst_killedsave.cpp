#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"

#include <nlohmann/json.hpp>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <chrono>
#include <random>
#include <set>
#include <thread>

using nlohmann::ordered_json;

namespace {

char const* const kChild = "--save-forever";

int const kObjects = 40;
int const kRounds = 100;
/// More saves than a child gets done before it is killed.
int const kMostSaves = 100000;
/// In microseconds: a save or two.
int const kLongestLife = 150000;

QString FileOf(int object)
{
    return QStringLiteral("project/o%1.json").arg(object);
}

/// What a save with this number writes, to the byte.
QByteArray ContentOf(int object, int save)
{
    ordered_json content;
    content["uid"] = Uid(object);
    content["kind"] = "compound";
    content["name"] = "Object " + std::to_string(object);
    content["tags"]["ApplicationTags"] = std::to_string(save);
    return QByteArray::fromStdString(content.dump(2) + '\n');
}

/// Changes and saves all objects, numbering the saves, until the process is killed.
int SaveForever(QString const& library, int firstSave)
{
    CEmbeddedHost host;
    host.OpenLibrary(library);
    LibraryUser user(host);
    for (int save = firstSave;; ++save) {
        for (int object = 1; object <= kObjects; ++object)
            user.Tag(host.FindItem(Uid(object)), std::to_string(save).c_str());
        std::puts("saving");
        std::fflush(stdout);
        if (!user.Save())
            return 1;
    }
}

} // namespace

/// A save may end at any moment, and nothing is torn.
class tst_KilledSave : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        for (QString const& leftover : FindOtherFiles())
            QFile::remove(GetProject() + '/' + leftover);
        Restore(0);
    }

private:
    void SaveAndKill(int firstSave)
    {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {QString::fromLatin1(kChild), m_Folder.GetPath(), QString::number(firstSave)});
        QVERIFY(child.waitForReadyRead(30000));
        std::uniform_int_distribution<int> life(1, kLongestLife);
        std::this_thread::sleep_for(std::chrono::microseconds(life(m_Random)));
        QCOMPARE(child.state(), QProcess::Running);
        child.kill();
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    }

    /// Each file is the one that was there before the round, or one of its saves.
    void VerifyFiles(int firstSave)
    {
        for (int object = 1; object <= kObjects; ++object) {
            QFile file(m_Folder.GetPath(FileOf(object)));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QByteArray const content = file.readAll();
            auto const parsed = ordered_json::parse(content.toStdString(), nullptr, false);
            QVERIFY2(!parsed.is_discarded(), qPrintable(file.fileName()));
            int const save = std::stoi(parsed["tags"]["ApplicationTags"].get<std::string>());
            QVERIFY2(content == ContentOf(object, save), qPrintable(file.fileName()));
            QVERIFY(save == m_Saves[object] || save >= firstSave);
            m_Saves[object] = save;
        }
    }

    /// The kill came while files were being put in place.
    bool IsSaveTorn() const
    {
        return std::set<int>(m_Saves.begin() + 1, m_Saves.end()).size() > 1;
    }

    QStringList FindOtherFiles() const
    {
        return QDir(GetProject())
            .entryList({QStringLiteral("*.json.*")}, QDir::Files | QDir::Hidden, QDir::Name);
    }

    QString GetProject() const
    {
        return m_Folder.GetPath(QStringLiteral("project"));
    }

    /// What a save leaves that is killed at the wrong moment, `seconds` ago.
    void LeaveBehind(QString const& name, int seconds) const
    {
        QFile file(GetProject() + '/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds),
                                 QFileDevice::FileModificationTime));
    }

    /// All files as after a complete save.
    void Restore(int save)
    {
        for (int object = 1; object <= kObjects; ++object) {
            m_Folder.Write(FileOf(object), ContentOf(object, save));
            m_Saves[object] = save;
        }
    }

    void OpenAndSave(int save)
    {
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(m_Folder.GetPath()));
        QCOMPARE(GetMessages(host), QStringList());
        for (int object = 1; object <= kObjects; ++object)
            QVERIFY(host.FindItem(Uid(object)) != tarno::datamodel::ItemID());
        LibraryUser user(host);
        QVERIFY(user.Tag(host.FindItem(Uid(1)), std::to_string(save).c_str()));
        QVERIFY2(user.Save(), user.GetSaveMessages().front().c_str());
        m_Saves[1] = save;
    }

    LibraryFolder m_Folder;
    std::mt19937 m_Random{20261121};
    /// By object.
    std::vector<int> m_Saves = std::vector<int>(kObjects + 1, 0);

private Q_SLOTS:
    void LeavesWholeFiles()
    {
        int tornSaves = 0;
        for (int round = 1; round <= kRounds && !QTest::currentTestFailed(); ++round) {
            int const firstSave = round * kMostSaves;
            SaveAndKill(firstSave);
            VerifyFiles(firstSave);
            tornSaves += IsSaveTorn();
            OpenAndSave(firstSave + kMostSaves - 1);
            Restore(firstSave + kMostSaves - 1);
        }
        QVERIFY2(tornSaves > 0, "all kills came at another time");
    }

    /// Temporary files of a killed save are passed over, and go with the next save.
    void NextSaveTidiesUp()
    {
        QStringList const kept = {
            QStringLiteral("o1.json.aBcDeF"), // of a save that may be running
            QStringLiteral("o1.json.backup"), // somebody's own copy
        };
        LeaveBehind(kept[0], 5);
        LeaveBehind(kept[1], 120);
        LeaveBehind(QStringLiteral("o2.json.GhIjKl"), 120);
        OpenAndSave(1);
        QCOMPARE(FindOtherFiles(), kept);
    }
};

int main(int argc, char** argv)
{
    if (argc == 4 && qstrcmp(argv[1], kChild) == 0) {
        QCoreApplication application(argc, argv);
        return SaveForever(QFile::decodeName(argv[2]), atoi(argv[3]));
    }
    tst_KilledSave test;
    return RunTest(test, argc, argv);
}
#include "tst_killedsave.moc"
