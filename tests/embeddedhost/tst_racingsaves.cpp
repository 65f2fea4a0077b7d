#include "hosttest.h"

#include <cstdio>

using namespace tarno::datamodel;

namespace {

int const kObjects = 3;
int const kSeconds = 5;

QString FileOf(int object)
{
    return QStringLiteral("project/o%1.json").arg(object);
}

/// Adds a word to the tags of each object and saves, again and again; takes the other version when
/// there is a conflict. Prints which words it was told to be saved.
int SaveForever(QStringList const& arguments)
{
    CEmbeddedHost host;
    host.OpenLibrary(arguments[0]);
    LibraryUser user(host);
    QElapsedTimer time;
    time.start();
    for (int round = 0; time.elapsed() < kSeconds * 1000; ++round) {
        host.CheckFolder();
        std::string const word = arguments[1].toStdString() + std::to_string(round);
        for (int object = 1; object <= kObjects; ++object) {
            ItemID const id = host.FindItem(Uid(object));
            std::string const tags = host.GetLibrary().GetItemTags(id, "ApplicationTags");
            user.Tag(id, (tags.empty() ? word : tags + ';' + word).c_str());
        }
        user.Save();
        for (int object = 1; object <= kObjects; ++object) {
            bool const isSaved = !user.IsModified(host.FindItem(Uid(object)));
            std::printf("%s %d %s\n", isSaved ? "saved" : "conflict", object, word.c_str());
            if (!isSaved)
                host.TakeFileFromDisk(host.GetLibraryFolder() + '/' + FileOf(object));
        }
    }
    return 0;
}

bool const gIsSaverAdded = AddChild("save-forever", SaveForever);

} // namespace

/// Several programs save one library.
class TestRacingSaves : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        for (int object = 1; object <= kObjects; ++object)
            m_Folder->Write(FileOf(object), Object(object, "compound", "Object"));
    }

private Q_SLOTS:
    /// Tags only grow, so that what was lost is missing at the end.
    void nothingIsLost()
    {
#ifdef NODEBROWSER_PORTABLE_FILES
        QSKIP("files cannot be exchanged");
#endif
        QProcess processes[2];
        for (QProcess& process : processes)
            process.start(QCoreApplication::applicationFilePath(),
                          {"save-forever", m_Folder->GetPath(), &process == processes ? "a" : "b"});
        QStringList said;
        for (QProcess& process : processes) {
            QVERIFY(process.waitForFinished((kSeconds + 60) * 1000) && process.exitCode() == 0);
            said << QString::fromLatin1(process.readAllStandardOutput()).split('\n');
        }
        m_Host->CheckFolder();
        QStringList tags = {""};
        for (int object = 1; object <= kObjects; ++object)
            tags << TagsOf(object);
        for (QString const& line : said.filter("saved ")) {
            QStringList const words = line.split(' ');
            QVERIFY2(tags[words[1].toInt()].split(';').contains(words[2]), qPrintable(line));
        }
        QVERIFY(!said.filter("saved ").isEmpty() && !said.filter("conflict ").isEmpty());

        QFile writer(m_Folder->GetPath(FileOf(1)));
        QVERIFY(writer.open(QIODevice::Append) && m_User->Rename(Item(1), "Ours"));
        QVERIFY(!m_User->Save() && Log().contains("another program is writing it"));
    }
};

NODEBROWSER_TEST(TestRacingSaves)
#include "tst_racingsaves.moc"
