#include "base/text8.h"
#include "hosttest.h"
#include "storage/systemfiles.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

using namespace embeddedhost;
using namespace tarno::datamodel;

namespace {

QStringList ToTexts(nlohmann::json const& array)
{
    QStringList texts;
    for (nlohmann::json const& text : array)
        texts << QString::fromStdString(text);
    return texts;
}

} // namespace

/// What can be used is there, what cannot is said and left out by itself.
class TestReading : public HostTest
{
    Q_OBJECT

protected:
    /// Each test opens the library when its files are written.
    void Open() override
    {
        m_Host = std::make_unique<CEmbeddedHost>();
    }

private:
    bool OpenLibrary()
    {
        return m_Host->OpenLibrary(m_Folder->GetPath());
    }

    QStringList GetAllNames() const
    {
        QStringList names;
        ItemTOCAccessor const toc = GetTOC(m_Host->GetLibrary());
        for (char const* kind : {TarnoType::gSolver, TarnoType::gPolymorphicSolver,
                                 TarnoType::gCompound, TarnoType::gGlobalConstant, LibType::gType})
            for (auto items = toc.GetItems(kind); !items.IsDone(); items.Next())
                names << QString::fromStdString(items.GetCurrent().GetName(true, nullptr));
        names.sort();
        return names;
    }

    /// Each message contains its text.
    void CheckMessages(QStringList const& messages, QStringList const& expected) const
    {
        QVERIFY2(messages.size() == expected.size(), qPrintable(messages.join('\n')));
        for (int i = 0; i < messages.size(); ++i)
            QVERIFY2(messages[i].contains(expected[i]), qPrintable(messages[i]));
    }

    /// Opens the library and compares what is said, and that nothing on disk has changed.
    void CheckFaults(bool opens, QStringList const& expected)
    {
        auto const before = m_Folder->Read();
        QCOMPARE(OpenLibrary(), opens);
        QCOMPARE(m_Folder->Read(), before);
        CheckMessages(GetMessages(*m_Host), expected);
        for (CMessageChannel::Message const& message : m_Host->GetMessages().GetLog())
            QCOMPARE(message.severity, opens ? eSeverity::kWarning : eSeverity::kError);
    }

private Q_SLOTS:
    /// The schemas are held against the same documents. A "text" is Latin-1.
    void documents_data()
    {
        QTest::addColumn<QByteArray>("row");
        std::ifstream file(TEST_DATA "/documents.json");
        for (nlohmann::json const& one : nlohmann::json::parse(file)) {
            std::string const name = std::string(one["form"]) + ": " + std::string(one["case"]);
            QTest::newRow(name.c_str()) << QByteArray::fromStdString(one.dump());
        }
    }

    void documents()
    {
        QFETCH(QByteArray, row);
        nlohmann::json const one = nlohmann::json::parse(row.toStdString());
        m_Folder->Write("project/a.json", Object(1, "solver", "Healthy"));
        m_Folder->Write("project/parts/z.json", Object(9, "type", "Healthy too"));
        m_Folder->Write(one["form"] == "object" ? "project/m.json" : "library.json",
                        one.contains("text") ? QString::fromStdString(one["text"]).toLatin1()
                                             : QByteArray::fromStdString(one["document"].dump()));
        if (one["valid"] || one.contains("says"))
            CheckFaults(one.value("opens", true),
                        ToTexts(one.value("says", nlohmann::json::array())));
        else
            QVERIFY(!OpenLibrary() || !GetMessages(*m_Host).isEmpty());
        if (one.contains("items")) {
            QStringList names = ToTexts(one["items"]) + QStringList{"Healthy", "Healthy too"};
            names.sort();
            QCOMPARE(GetAllNames(), names);
        }
        int const sources = FindObject(kProjectUid).IsValid() + FindObject(kFactoryUid).IsValid();
        QCOMPARE(sources, one.value("sources", sources));
    }

    void readingTellsItsProgressAndIsCancelled()
    {
        m_Folder->Write("project/a.json", Object(1, "solver", "1"));
        m_Folder->Write("project/b.json", Object(2, "solver", "2"));
        QTemporaryDir const outside;
        QString const second = m_Folder->GetPath("project/b.json");
        bool cancels = true;
        QStringList steps;
        auto const open = [&] {
            return m_Host->OpenLibrary(m_Folder->GetPath(), [&](int done, int total) {
                steps << QStringLiteral("%1/%2").arg(done).arg(total);
                QVERIFY2(m_Host->IsOpening() && !OpenLibrary(), "another one while one was read");
                if (cancels && done == 1)
                    m_Host->CancelOpening();
                // By now it was listed as a file.
                if (!cancels && done == 1 && QFile::rename(second, outside.filePath("b.json")))
                    QFile::link(outside.filePath("b.json"), second);
            });
        };
        QVERIFY(OpenLibrary() && !open());
        QVERIFY(!m_Host->GetLibrary().IsValid() && Item(1).IsNull());
        steps.clear();
        cancels = false;
        QVERIFY(open() && Item(1).IsValid() && !Item(2).IsValid() && !m_Host->IsOpening());
        QVERIFY(Log().contains("b.json: it leads out of the library folder."));
        QCOMPARE(steps, QStringList({"0/2", "1/2", "2/2"}));
    }

    void objectsStayAsTheyWereRead()
    {
        QByteArray const body = R"(, "nodes": [{"id": "n", "item": "i", "position": [0, 0]}])";
        m_Folder->Write("project/a.json", Object(1, "compound", "A", body));
        m_Folder->Write("project/b.json", '[' + Object(2, "compound", "B", body) + ']');
        QVERIFY(OpenLibrary());
        m_Folder->Write("project/a.json", Object(3, "compound", "Other"));
        m_Folder->Write("project/b.json", "broken");
        for (int number : {1, 2})
            QCOMPARE(m_Host->GetBody(Item(number)).nodes.size(), std::size_t(1));
    }

    void aLibraryIsMadeOfAnyBytes()
    {
        QString const path = m_Folder->GetPath("made");
        QString fault;
        NewLibrary const library = {"\xFF", {{kProjectUid, "\xFE", "project"}}};
        QVERIFY2(CEmbeddedHost::MakeLibrary(path, library, &fault), qPrintable(fault));
        QVERIFY2(m_Host->OpenLibrary(path), "its texts have marks for the bytes");
        QVERIFY(FindObject(kProjectUid).IsValid());
    }

    void onlyWhatCanBeOpenedIsMade()
    {
        typedef NewLibrary::DataSource Source;
        auto const refuses = [&](std::vector<Source> const& sources, char const* reason) {
            QString const path = m_Folder->GetPath("made");
            QString fault;
            return !CEmbeddedHost::MakeLibrary(path, {"Made", sources}, &fault)
                   && fault.contains(QLatin1String(reason)) && !QFile::exists(path);
        };
        QVERIFY(refuses({{kProjectUid, "", "a/../.."}}, "\"a/../..\" does not lead into"));
        QVERIFY(refuses({{kProjectUid, "", "/tmp"}}, "does not lead into"));
        QVERIFY(refuses({{kProjectUid, "", ""}}, "does not lead into"));
        QVERIFY(refuses({{kProjectUid, "", "library.json/a"}}, "is the manifest"));
        QVERIFY(refuses({{"7", "", "a"}}, "data source 1: \"7\" is no UID"));
        QVERIFY(
            refuses({{kProjectUid, "", "a"}, {kProjectUid, "", "b"}}, "data source 2: the UID"));
        QVERIFY(refuses({{kProjectUid, "", "a", true, kProjectUid}}, "more than once"));
        QVERIFY(refuses({{kProjectUid, "", "a/b/"}, {kFactoryUid, "", "./a"}}, "overlaps"));
        QVERIFY(refuses({{kProjectUid, "", "."}, {kFactoryUid, "", "a"}}, "overlaps"));
    }

    void aFolderWithFilesIsNotMadeALibrary()
    {
        QTemporaryDir const parent;
        std::string const path = parent.filePath("full").toStdString();
        std::string const file = path + "/\xE9";
        QString fault;
        auto const refuses = [&](char const* reason) {
            return !CEmbeddedHost::MakeLibrary(QString::fromStdString(path), &fault)
                   && fault.endsWith(QLatin1String(reason));
        };
        QCOMPARE(::mkdir(path.c_str(), 0777), 0);
        std::ofstream(file) << "of another program";
        QVERIFY2(refuses("is not empty"), "the name is no text, but there is one");
        // Files can be made in it, but not listed; a superuser would list them.
        QCOMPARE(::rename(file.c_str(), (path + "/a").c_str()), 0);
        QCOMPARE(::chmod(path.c_str(), 0333), 0);
        QCOMPARE(::chmod(parent.path().toLocal8Bit(), 0711), 0);
        uid_t const user = ::geteuid();
        QCOMPARE(::seteuid(user == 0 ? 1 : user), 0);
        bool const isRefused = refuses("cannot be read");
        QCOMPARE(::seteuid(user), 0);
        QCOMPARE(::chmod(path.c_str(), 0755), 0);
        QVERIFY2(isRefused, qPrintable(fault));
    }

    void limits()
    {
        auto const nested = [](int levels) {
            return ", \"later\": " + QByteArray(levels, '[') + QByteArray(levels, ']');
        };
        // Two bytes each.
        QByteArray const text = QByteArray("\xC3\xA9").repeated(kMaxTextLength);
        QByteArray const more[] = {nested(99),
                                   ", \"category\": \"" + text + '"',
                                   ", \"later\": \"" + text + text + '"',
                                   nested(100000),
                                   nested(100),
                                   ", \"category\": \"" + text + "e\"",
                                   ", \"inputs\": [{\"name\": \"" + text + "e\"}]"};
        for (int i = 0; i < 7; ++i)
            m_Folder->Write(QStringLiteral("project/%1.json").arg(i),
                            '[' + Object(1 + i, "solver", "Large", more[i]) + ']');
        CheckFaults(true, {"3.json, line 1, column 193: it nests deeper than 100 ",
                           "4.json, line 1, column 193: it nests deeper than 100 ",
                           "5.json, object 1, key \"category\": the text is longer than",
                           "6.json, object 1, key \"inputs[0].name\": the text is longer than"});
        QCOMPARE(GetAllNames().size(), 3);
    }

    /// Links are followed within the library only, and nothing is waited for.
    void unusualFiles()
    {
        QTemporaryDir const outside;
        m_Folder->Write("project/a.json", Object(1, "solver", "Healthy"));
        m_Folder->Write("project/b.json/c.json", Object(2, "solver", "In a folder"));
        m_Folder->Write("shelf.txt", Object(3, "solver", "On the shelf"));
        QVERIFY(QFile(m_Folder->GetPath("project/a.json")).copy(outside.filePath("o.json")));
        auto const link = [&](QString const& target, char const* name) {
            QVERIFY(QFile::link(target, m_Folder->GetPath(name)));
        };
        link(m_Folder->GetPath("shelf.txt"), "project/within.json");
        link(outside.filePath("o.json"), "project/out.json");
        link(outside.path(), "project/folder");
        link(m_Folder->GetPath("nowhere"), "project/broken.json");
        m_Folder->Write("project/large.json", "");
        QVERIFY(QFile::resize(m_Folder->GetPath("project/large.json"), kMaxFileSize + 1));
        QDir(m_Folder->GetPath()).rmdir("factory");
        link(outside.path(), "factory");
        QCOMPARE(mkfifo(qPrintable(m_Folder->GetPath("project/pipe.json")), 0600), 0);
        // Names that the toolkit cannot list.
        QByteArray const project = QFile::encodeName(m_Folder->GetPath("project"));
        QCOMPARE(mkdir(project + "/m\xFC", 0700), 0);
        QCOMPARE(::link(project + "/a.json", project + "/caf\xE9.json"), 0);
        QStringList const faults = {
            "data source 2: key \"path\": \"factory\" leads out of the library folder",
            "project/broken.json: there is no file",
            "project/caf\\xe9.json: the name is not UTF-8",
            "project/folder: the link to a ",
            "project/large.json: it is larger than 256 MiB",
            "project/m\\xfc: the name is not UTF-8",
            "project/out.json: the link leads out of",
            "project/pipe.json: it is not a regular file"};
        QVERIFY(OpenLibrary());
        // The toolkit cannot remove them either.
        QCOMPARE(rmdir(project + "/m\xFC"), 0);
        QCOMPARE(unlink(project + "/caf\xE9.json"), 0);
        QStringList found = GetMessages(*m_Host);
        found.sort();
        CheckMessages(found, faults);
        QCOMPARE(GetAllNames(), QStringList({"Healthy", "In a folder", "On the shelf"}));
        QString const manifest = m_Folder->GetPath("library.json");
        QVERIFY(QFile::remove(manifest));
        QCOMPARE(mkfifo(qPrintable(manifest), 0600), 0);
        QVERIFY(!OpenLibrary());
        QVERIFY2(Log().endsWith("library.json: it is not a regular file."), qPrintable(Log()));
    }
};

NODEBROWSER_TEST(TestReading)
#include "tst_reading.moc"
