#include "hosttest.h"
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

using namespace tarno::datamodel;

namespace {

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
int RunHost(QStringList const& arguments)
{
    QString const library = arguments[0];
    std::string const name = arguments[2].toStdString();
    CEmbeddedHost host;
    host.OpenLibrary(library);
    LibraryUser user(host);
    QElapsedTimer time;
    time.start();
    for (int round = 0; time.elapsed() < arguments[1].toInt() * 1000; ++round) {
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

QString GetTags(nlohmann::ordered_json const& object)
{
    return QString::fromStdString(
        object.value(nlohmann::ordered_json::json_pointer("/tags/ApplicationTags"), ""));
}

/// The object, as soon as it has all the words. Null when it has not got them again within 5 s: a
/// version that a save puts in place is taken back when it was overtaken.
nlohmann::ordered_json ReadWith(QStringList const& words, QString const& path)
{
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 5000) {
        auto const content = nlohmann::ordered_json::parse(ReadFile(path).toStdString());
        QStringList const found = GetTags(content).split(';');
        if (std::all_of(words.begin(), words.end(),
                        [&](QString const& word) { return found.contains(word); }))
            return content;
    }
    return nullptr;
}

/// Reads, adds a word and writes, into the file and over it by turns, with no regard for others.
int RunWriter(QStringList const& arguments)
{
    QString const library = arguments[0];
    std::map<int, QStringList> words;
    QElapsedTimer time;
    time.start();
    for (int round = 0; time.elapsed() < arguments[1].toInt() * 1000; ++round) {
        int const object = kHostObjects + 1 + round % (kObjects - kHostObjects);
        QString const path = library + '/' + FileOf(object);
        auto content = ReadWith(words[object], path);
        if (content.is_null())
            return 2;
        std::string const word = "w" + std::to_string(round);
        content["tags"]["ApplicationTags"] = Add(GetTags(content).toStdString(), word);
        bool const isInPlace = round / kObjects % 2 == 0;
        QString const target = isInPlace ? path : library + "/written";
        if (!WriteFile(target, QByteArray::fromStdString(content.dump()))
            || (!isInPlace
                && std::rename(QFile::encodeName(target).constData(),
                               QFile::encodeName(path).constData())
                       != 0))
            return 1;
        Say("saved", object, word);
        words[object] << QString::fromStdString(word);
    }
    return 0;
}

bool const gAreChildrenAdded = AddChild("save", RunHost) && AddChild("write", RunWriter);

} // namespace

/// Several programs write to one library.
class TestRacingSaves : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        for (int object = 1; object <= kObjects; ++object)
            m_Folder->Write(FileOf(object), Object(object, "compound",
                                                   ("Object " + std::to_string(object)).c_str()));
    }

private:
    /// What a process said, by the first word of the line.
    typedef std::map<QString, QStringList> Said;

    std::unique_ptr<QProcess> Start(char const* child, char const* name) const
    {
        auto process = std::make_unique<QProcess>();
        process->start(QCoreApplication::applicationFilePath(),
                       {child, m_Folder->GetPath(), QString::number(GetSeconds()), name});
        return process;
    }

    static Said Finish(QProcess& process)
    {
        bool const isFinished = process.waitForFinished((GetSeconds() + 60) * 1000);
        if (!isFinished || process.exitCode() != 0)
            qFatal("a process ended with %d: %s", process.exitCode(),
                   process.readAllStandardError().constData());
        Said said = {{"saved", {}}, {"conflict", {}}};
        QStringList const lines = QString::fromLatin1(process.readAllStandardOutput()).split('\n');
        for (QString const& line : lines)
            said[line.section(' ', 0, 0)] << line.section(' ', 1);
        return said;
    }

    /// Object and word, of all versions of the object's file that are there.
    std::set<QString> FindWords() const
    {
        std::set<QString> words;
        for (QByteArray const& file : m_Folder->Read()) {
            auto const content = nlohmann::ordered_json::parse(file.toStdString(), nullptr, false);
            if (!content.is_object() || !content.contains("tags"))
                continue;
            QString const object = QString::fromStdString(content["name"]).section(' ', 1);
            for (QString const& word : GetTags(content).split(';'))
                words.insert(object + ' ' + word);
        }
        return words;
    }

    QStringList FindLost(Said const& said, int lastObject) const
    {
        std::set<QString> const words = FindWords();
        QStringList lost;
        for (QString const& word : said.at("saved")) {
            if (word.section(' ', 0, 0).toInt() <= lastObject && words.count(word) == 0)
                lost << word;
        }
        return lost;
    }

private Q_SLOTS:
    void nothingIsLost()
    {
#ifdef NODEBROWSER_PORTABLE_FILES
        QSKIP("files cannot be exchanged");
#endif
        auto const first = Start("save", "a");
        auto const second = Start("save", "b");
        auto const writer = Start("write", "");
        Said const a = Finish(*first);
        Said const b = Finish(*second);
        Said const w = Finish(*writer);
        int const conflicts = int(a.at("conflict").size() + b.at("conflict").size());
        qInfo("%d, %d and %d files saved, %d conflicts", int(a.at("saved").size()),
              int(b.at("saved").size()), int(w.at("saved").size()), conflicts);
        QCOMPARE(FindLost(a, kHostObjects), QStringList());
        QCOMPARE(FindLost(b, kHostObjects), QStringList());
        QCOMPARE(FindLost(w, kObjects), QStringList());
        QVERIFY(conflicts > 0);
    }

    /// Who comes second waits, but not for long, and says whom it has waited for.
    void savesTakeTurns()
    {
        m_User->Tag(Item(1), "light");
        int patience = 0;
        QString fault;
        auto other =
            embeddedhost::CStagingFolder::Open(m_Folder->GetPath("project"), &patience, &fault);
        QVERIFY2(other, qPrintable(fault));
        QElapsedTimer time;
        time.start();
        QVERIFY(!m_User->Save() && time.elapsed() < 10000);
        QString const message = QString::fromStdString(m_User->GetSaveMessages().front());
        QVERIFY2(message.contains(QString::number(QCoreApplication::applicationPid())),
                 qPrintable(message));
        QVERIFY(m_Host->IsModified());
        other.reset();
        QVERIFY(m_User->Save());
    }
};

NODEBROWSER_TEST(TestRacingSaves)
#include "tst_racingsaves.moc"
