#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"
#include "storage/stagingfolder.h"

#include <nlohmann/json.hpp>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <vector>

using namespace tarno::datamodel;

namespace {

char const* const kHostChild = "--save";
char const* const kWriterChild = "--write";

/// The first of them are for the hosts only, the others are written by the plain program as well.
int const kObjects = 8;
int const kHostObjects = 3;

QString FileOf(int object)
{
    return QStringLiteral("project/o%1.json").arg(object);
}

int GetSeconds()
{
    int const seconds = qEnvironmentVariableIntValue("NODEBROWSER_RACE_SECONDS");
    return seconds > 0 ? seconds : 10;
}

/// Everybody adds words to the tags, so that what was lost is missing at the end.
std::string Add(std::string const& tags, std::string const& word)
{
    return tags.empty() ? word : tags + ';' + word;
}

void Say(char const* what, int object, std::string const& word)
{
    std::printf("%s %d %s\n", what, object, word.c_str());
}

/// Adds a word to each object and saves, again and again; takes the other version when there is a
/// conflict. Says which words it was told to be saved.
int RunHost(QString const& library, std::string const& name, int seconds)
{
    CEmbeddedHost host;
    host.OpenLibrary(library);
    LibraryUser user(host);
    QElapsedTimer time;
    time.start();
    for (int round = 0; time.elapsed() < seconds * 1000; ++round) {
        host.CheckFolder();
        std::string const word = name + std::to_string(round);
        for (int object = 1; object <= kObjects; ++object) {
            ItemID const id = host.FindItem(Uid(object));
            if (!id.IsNull())
                user.Tag(id,
                         Add(host.GetLibrary().GetItemTags(id, "ApplicationTags"), word).c_str());
        }
        user.Save();
        for (int object = 1; object <= kObjects; ++object) {
            ItemID const id = host.FindItem(Uid(object));
            if (id.IsNull())
                continue;
            bool const isSaved = !user.IsModified(id);
            Say(isSaved ? "saved" : "conflict", object, word);
            if (!isSaved)
                host.TakeFileFromDisk(library + '/' + FileOf(object));
        }
    }
    return 0;
}

QByteArray Get(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool Put(QString const& path, std::string const& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
           && file.write(content.data(), qint64(content.size())) == qint64(content.size());
}

/// In milliseconds: a version that a save puts in place is taken back within that time when it
/// was overtaken.
int const kLongestMoment = 5000;

/// The object, as soon as it has all the words. Null when it has not got them again.
nlohmann::ordered_json ReadWith(std::vector<std::string> const& words, QString const& path)
{
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < kLongestMoment) {
        auto const content = nlohmann::ordered_json::parse(Get(path).toStdString());
        std::string const tags =
            content.contains("tags")
                ? ';' + content["tags"]["ApplicationTags"].get<std::string>() + ';'
                : std::string();
        bool const hasAll = std::all_of(words.begin(), words.end(), [&](std::string const& word) {
            return tags.find(';' + word + ';') != std::string::npos;
        });
        if (hasAll)
            return content;
    }
    return nullptr;
}

/// Reads, adds a word and writes, into the file and over it by turns, with no regard for others.
int RunWriter(QString const& library, int seconds)
{
    std::map<int, std::vector<std::string>> words;
    QElapsedTimer time;
    time.start();
    for (int round = 0; time.elapsed() < seconds * 1000; ++round) {
        int const object = kHostObjects + 1 + round % (kObjects - kHostObjects);
        QString const path = library + '/' + FileOf(object);
        auto content = ReadWith(words[object], path);
        if (content.is_null())
            return 2;
        auto& tags = content["tags"]["ApplicationTags"];
        std::string const word = "w" + std::to_string(round);
        tags = Add(tags.is_string() ? tags.get<std::string>() : std::string(), word);
        bool const isInPlace = round / kObjects % 2 == 0;
        QString const target = isInPlace ? path : library + "/written";
        if (!Put(target, content.dump())
            || (!isInPlace
                && std::rename(QFile::encodeName(target).constData(),
                               QFile::encodeName(path).constData())
                       != 0))
            return 1;
        Say("saved", object, word);
        words[object].push_back(word);
    }
    return 0;
}

} // namespace

/// Several programs write to one library.
class tst_RacingSaves : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Folder = std::make_unique<LibraryFolder>();
        for (int object = 1; object <= kObjects; ++object)
            m_Folder->Write(FileOf(object), Object(object, "compound",
                                                   ("Object " + std::to_string(object)).c_str()));
    }

private:
    static void Start(QProcess& process, QStringList const& arguments)
    {
        process.start(QCoreApplication::applicationFilePath(), arguments);
        QVERIFY(process.waitForStarted());
    }

    /// What a process said, by the first word of the line.
    static std::map<QString, QStringList> Finish(QProcess& process)
    {
        std::map<QString, QStringList> said;
        bool const isFinished = process.waitForFinished((GetSeconds() + 60) * 1000);
        if (!isFinished || process.exitCode() != 0)
            qFatal("a process ended with %d: %s", process.exitCode(),
                   process.readAllStandardError().constData());
        QStringList const lines = QString::fromLatin1(process.readAllStandardOutput()).split('\n');
        for (QString const& line : lines)
            said[line.section(' ', 0, 0)] << line.section(' ', 1);
        return said;
    }

    /// Object and word, of all versions of the object's file that are there.
    std::set<QString> FindWords() const
    {
        std::set<QString> words;
        auto const files = m_Folder->Read();
        for (auto file = files.begin(); file != files.end(); ++file) {
            auto const content = nlohmann::json::parse(file.value().toStdString(), nullptr, false);
            if (!content.is_object() || !content.contains("tags"))
                continue;
            QString const object = QString::fromStdString(content["name"]).section(' ', 1);
            QString const tags = QString::fromStdString(content["tags"]["ApplicationTags"]);
            for (QString const& word : tags.split(';'))
                words.insert(object + ' ' + word);
        }
        return words;
    }

    static QStringList FindLost(QStringList const& saved, std::set<QString> const& words,
                                int lastObject)
    {
        QStringList lost;
        for (QString const& word : saved) {
            if (word.section(' ', 0, 0).toInt() <= lastObject && words.count(word) == 0)
                lost << word;
        }
        return lost;
    }

    std::unique_ptr<LibraryFolder> m_Folder;

private Q_SLOTS:
    void NothingIsLost()
    {
#ifdef NODEBROWSER_PORTABLE_FILES
        QSKIP("files cannot be exchanged");
#endif
        QString const seconds = QString::number(GetSeconds());
        QProcess first;
        QProcess second;
        QProcess writer;
        Start(first, {kHostChild, m_Folder->GetPath(), "a", seconds});
        Start(second, {kHostChild, m_Folder->GetPath(), "b", seconds});
        Start(writer, {kWriterChild, m_Folder->GetPath(), seconds});
        auto const a = Finish(first);
        auto const b = Finish(second);
        auto const w = Finish(writer);

        auto const words = FindWords();
        int kept = 0;
        for (auto const& path : m_Folder->Read().keys())
            kept += path.endsWith(".staged");
        auto const count = [](std::map<QString, QStringList> const& said, char const* what) {
            auto const found = said.find(what);
            return found == said.end() ? 0 : int(found->second.size());
        };
        qInfo("hosts: %d and %d files saved, %d and %d conflicts; writer: %d files; %d kept",
              count(a, "saved"), count(b, "saved"), count(a, "conflict"), count(b, "conflict"),
              count(w, "saved"), kept);
        QCOMPARE(FindLost(a.at("saved"), words, kHostObjects), QStringList());
        QCOMPARE(FindLost(b.at("saved"), words, kHostObjects), QStringList());
        QCOMPARE(FindLost(w.at("saved"), words, kObjects), QStringList());
        QVERIFY(count(a, "conflict") + count(b, "conflict") > 0);
    }

    /// Who comes second waits, but not for long, and says whom it has waited for.
    void SavesTakeTurns()
    {
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(m_Folder->GetPath()));
        LibraryUser user(host);
        user.Tag(host.FindItem(Uid(1)), "light");
        int patience = 0;
        QString fault;
        auto other =
            embeddedhost::CStagingFolder::Open(m_Folder->GetPath("project"), &patience, &fault);
        QVERIFY2(other, qPrintable(fault));
        QElapsedTimer time;
        time.start();
        QVERIFY(!user.Save());
        QVERIFY(time.elapsed() < 10000);
        QString const message = QString::fromStdString(user.GetSaveMessages().front());
        QVERIFY2(message.contains(QString::number(QCoreApplication::applicationPid())),
                 qPrintable(message));
        QVERIFY(host.IsModified());
        other.reset();
        QVERIFY(user.Save());
    }
};

int main(int argc, char** argv)
{
    if (argc > 2) {
        QCoreApplication application(argc, argv);
        QStringList const arguments = application.arguments();
        if (arguments[1] == kHostChild)
            return RunHost(arguments[2], arguments[3].toStdString(), arguments[4].toInt());
        if (arguments[1] == kWriterChild)
            return RunWriter(arguments[2], arguments[3].toInt());
    }
    tst_RacingSaves test;
    return RunTest(test, argc, argv);
}
#include "tst_racingsaves.moc"
