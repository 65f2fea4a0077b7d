#include "base/text8.h"
#include "changerecorder.h"
#include "hosttest.h"
#include "storage/systemfiles.h"

#include <nlohmann/json.hpp>

#include <QDir>
#include <QFile>
#include <QTest>

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

using embeddedhost::kMaxTextLength;
using namespace tarno::datamodel;

namespace {

QStringList GetNames(char const* kind)
{
    QStringList names;
    ItemTOCAccessor const toc = GetTOC(CEmbeddedHost::GetInstance()->GetLibrary());
    for (auto items = toc.GetItems(kind); !items.IsDone(); items.Next())
        names << QString::fromStdString(items.GetCurrent().GetName(true, nullptr));
    return names;
}

QStringList GetAllNames()
{
    QStringList names;
    for (char const* kind : {TarnoType::gSolver, TarnoType::gPolymorphicSolver,
                             TarnoType::gCompound, TarnoType::gGlobalConstant, LibType::gType})
        names << GetNames(kind);
    names.sort();
    return names;
}

/// Each message contains its text.
void CheckMessages(QStringList const& messages, QStringList const& expected)
{
    QVERIFY2(messages.size() == expected.size(), qPrintable(messages.join('\n')));
    for (int i = 0; i < messages.size(); ++i)
        QVERIFY2(messages[i].contains(expected[i]), qPrintable(messages[i]));
}

/// Opens the library and compares what is said, and that nothing on disk has changed.
void CheckFaults(CEmbeddedHost& host, LibraryFolder const& folder, bool opens,
                 QStringList const& expected)
{
    auto const before = folder.Read();
    QCOMPARE(host.OpenLibrary(folder.GetPath()), opens);
    QCOMPARE(folder.Read(), before);
    CheckMessages(GetMessages(host), expected);
    for (CMessageChannel::Message const& message : host.GetMessages().GetLog())
        QCOMPARE(message.severity, opens ? eSeverity::kWarning : eSeverity::kError);
}

QStringList ToTexts(nlohmann::json const& array)
{
    QStringList texts;
    for (nlohmann::json const& text : array)
        texts << QString::fromStdString(text);
    return texts;
}

} // namespace

/// What can be used is there, what cannot is said and left out by itself.
class TestReading : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void sampleLibraryHasNoFaults()
    {
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(QStringLiteral(SAMPLE_LIBRARY)));
        QCOMPARE(GetMessages(host), QStringList());
        QVERIFY(GetAllNames().size() >= 300);
    }

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
        LibraryFolder const folder;
        folder.Write("project/a.json", Object(1, "solver", "Healthy"));
        folder.Write("project/parts/z.json", Object(9, "type", "Healthy too"));
        folder.Write(one["form"] == "object" ? "project/m.json" : "library.json",
                     one.contains("text") ? QString::fromStdString(one["text"]).toLatin1()
                                          : QByteArray::fromStdString(one["document"].dump()));
        CEmbeddedHost host;
        if (one["valid"] || one.contains("says"))
            CheckFaults(host, folder, one.value("opens", true),
                        ToTexts(one.value("says", nlohmann::json::array())));
        else
            QVERIFY(!host.OpenLibrary(folder.GetPath()) || !GetMessages(host).isEmpty());
        if (one.contains("items")) {
            QStringList names = ToTexts(one["items"]) + QStringList{"Healthy", "Healthy too"};
            names.sort();
            QCOMPARE(GetAllNames(), names);
        }
        int const sources = FindObject(kProjectUid).IsValid() + FindObject(kFactoryUid).IsValid();
        QCOMPARE(sources, one.value("sources", sources));
    }

    void itemsComeInTheOrderOfSourcesFilesAndObjects()
    {
        LibraryFolder const folder;
        folder.Write("factory/a.json", Object(1, "solver", "1"));
        folder.Write("project/b.json", '[' + Object(2, "solver", "2") + ',' + Object(3, "type", "3")
                                           + ',' + Object(4, "solver", "4") + ']');
        folder.Write("project/a/z.json", Object(5, "solver", "5"));
        folder.Write("project/Z.json", Object(6, "solver", "6"));
        folder.Write("project/.hidden/a.json", Object(7, "solver", "7"));
        folder.Write("project/readme.txt", "no object");
        CEmbeddedHost host;
        CheckFaults(host, folder, true, {});
        QCOMPARE(GetNames(TarnoType::gSolver), QStringList({"6", "5", "2", "4", "1"}));
        QCOMPARE(GetNames(LibType::gType), QStringList("3"));
    }

    void progressCoversAllFiles()
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", "broken");
        CEmbeddedHost host;
        std::vector<std::pair<int, int>> steps;
        bool isRefused = true;
        host.OpenLibrary(folder.GetPath(), [&](int done, int total) {
            steps.emplace_back(done, total);
            isRefused = isRefused && !host.OpenLibrary(folder.GetPath());
        });
        QCOMPARE(steps, (std::vector<std::pair<int, int>>{{0, 1}, {1, 1}}));
        QVERIFY2(isRefused, "a library was opened while another one was read");
        QVERIFY(host.GetLibrary().IsValid());
    }

    /// Whoever opens the pipe or reads the device waits for ever.
    void manifestThatIsNoFile()
    {
        LibraryFolder const folder;
        QByteArray const path = QFile::encodeName(folder.GetPath("library.json"));
        CEmbeddedHost host;
        QStringList faults;
        for (char const* target : {"|", "/dev/zero", "project", ""}) {
            QCOMPARE(unlink(path), 0);
            bool const isPipe = *target == '|';
            QVERIFY((isPipe ? mkfifo(path, 0600) : symlink(target, path)) == 0 || !*target);
            QVERIFY(!host.OpenLibrary(folder.GetPath()));
            faults << (*target ? "library.json: it is not a regular file."
                               : "library.json: there is no such file.");
        }
        QVERIFY(!host.OpenLibrary(QStringLiteral("/no/such/folder")));
        CheckMessages(GetMessages(host), faults << "/no/such/folder: there is no such folder.");
        QVERIFY(!host.GetLibrary().IsValid());
    }

    void limits_data()
    {
        QTest::addColumn<QByteArray>("more");
        QTest::addColumn<QString>("fault");
        auto const nested = [](int levels) {
            return ", \"later\": " + QByteArray(levels, '[') + QByteArray(levels, ']');
        };
        QTest::newRow("deep") << nested(99) << QString();
        QTest::newRow("too deep") << nested(100) << "line 1, column 193: it nests deeper than 100 ";
        QTest::newRow("far too deep") << nested(100000) << "line 1, column 193: it nests deeper";

        // Two bytes each.
        QByteArray const text = QByteArray("\xC3\xA9").repeated(kMaxTextLength);
        auto const row = [&](char const* key, QByteArray const& begin, QByteArray const& end) {
            QTest::addRow("%s", key) << begin + text + end << QString();
            QTest::addRow("%s, too long", key)
                << begin + text + 'e' + end
                << QStringLiteral("object 1, key \"%1\": the text is longer than").arg(key);
        };
        row("category", ", \"category\": \"", "\"");
        row("tags.a", ", \"tags\": {\"a\": \"", "\"}");
        row("nodes[0].id", ", \"nodes\": [{\"item\": \"a\", \"position\": [0, 0], \"id\": \"",
            "\"}]");
        row("connections[0].to",
            ", \"connections\": [{\"from\": [\"a\", \"b\"], \"to\": [\"a\", \"", "\"]}]");
        QTest::newRow("long, but not used") << ", \"later\": \"" + text + text + '"' << QString();
    }

    void limits()
    {
        QFETCH(QByteArray, more);
        QFETCH(QString, fault);
        LibraryFolder const folder;
        folder.Write("project/a.json", '[' + Object(1, "solver", "Large", more) + ']');
        CEmbeddedHost host;
        CheckFaults(host, folder, true, fault.isEmpty() ? QStringList() : QStringList(fault));
        QCOMPARE(GetAllNames().size(), fault.isEmpty() ? 1 : 0);
    }

    void manyFaultsAreCounted()
    {
        LibraryFolder const folder;
        folder.Write("project/a.json", '[' + QByteArray("7,").repeated(249) + "7]");
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QCOMPARE(GetMessages(host).size(), 101);
        QCOMPARE(GetMessages(host).last(),
                 folder.GetPath() + ": the library has 150 more faults like these.");
    }

    /// Links are followed within the library only, and nothing is waited for.
    void unusualFiles()
    {
        LibraryFolder const folder;
        QTemporaryDir const outside;
        folder.Write("project/a.json", Object(1, "solver", "Healthy"));
        folder.Write("project/b.json/c.json", Object(2, "solver", "In a folder"));
        folder.Write("shelf.txt", Object(3, "solver", "On the shelf"));
        QVERIFY(QFile(folder.GetPath("project/a.json")).copy(outside.filePath("o.json")));
        auto const link = [&](QString const& target, char const* name) {
            QVERIFY(QFile::link(target, folder.GetPath(name)));
        };
        link(folder.GetPath("shelf.txt"), "project/within.json");
        link(outside.filePath("o.json"), "project/out.json");
        link(outside.path(), "project/folder");
        link(folder.GetPath("project"), "project/loop");
        link(folder.GetPath("nowhere"), "project/broken.json");
        QDir(folder.GetPath()).rmdir("factory");
        link(outside.path(), "factory");
        QCOMPARE(mkfifo(qPrintable(folder.GetPath("project/pipe.json")), 0600), 0);
        // Names that the toolkit cannot list.
        QByteArray const project = QFile::encodeName(folder.GetPath("project"));
        QCOMPARE(mkdir(project + "/m\xFC", 0700), 0);
        QCOMPARE(::link(project + "/a.json", project + "/caf\xE9.json"), 0);
        QStringList const faults = {
            "data source 2: key \"path\": \"factory\" leads out of the library folder",
            "project/broken.json: there is no file",
            "project/caf\\xe9.json: the name is not UTF-8",
            "project/folder: the link to a ",
            "project/loop: the link to a",
            "project/m\\xfc: the name is not UTF-8",
            "project/out.json: the link leads out of",
            "project/pipe.json: it is not a regular file"};
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        // The toolkit cannot remove them either.
        QCOMPARE(rmdir(project + "/m\xFC"), 0);
        QCOMPARE(unlink(project + "/caf\xE9.json"), 0);
        QStringList found = GetMessages(host);
        found.sort();
        CheckMessages(found, faults);
        QCOMPARE(GetAllNames(), QStringList({"Healthy", "In a folder", "On the shelf"}));
    }

    void filesThatMayNotBeReadAreSaid()
    {
        if (geteuid() == 0)
            QSKIP("root may read everything");
        LibraryFolder const folder;
        folder.Write("project/secret.json", Object(4, "solver", "Secret"));
        QVERIFY(QFile::setPermissions(folder.GetPath("project/secret.json"), {}));
        CEmbeddedHost host;
        CheckFaults(host, folder, true, {"project/secret.json: the file cannot be read: "});
    }

    void linksIntoReadOnlySourcesAreReadOnly()
    {
        LibraryFolder const folder;
        folder.Write("factory/a.json", Object(1, "compound", "Shipped"));
        folder.Write("factory/b.json", Object(2, "compound", "Shipped as well"));
        folder.Write("project/z.json", Object(2, "compound", "Own"));
        QVERIFY(QFile::link("../factory/a.json", folder.GetPath("project/link.json")));
        CEmbeddedHost host;
        CheckFaults(host, folder, true,
                    {"project/link.json: the link leads to a file of a data source that is read-",
                     "factory/a.json, key \"uid\": BBBBBBBB-0000-0000-0000-000000000001 is the ",
                     "factory/b.json, key \"uid\": "});
        auto const isReadOnly = [&](int number) {
            return host.GetLibrary().ItemIsReadOnly(host.FindItem(Uid(number)));
        };
        QVERIFY(isReadOnly(1) && !isReadOnly(2));

        // The content is the same: only the access changes, and comes back.
        QString const path = folder.GetPath("project/z.json");
        QVERIFY(QFile::copy(path, folder.GetPath("factory/same")) && QFile::remove(path));
        QVERIFY(QFile::link("../factory/same", path));
        ChangeRecorder recorder(host.GetLibrary());
        QVERIFY(host.TakeFileFromDisk(path) && isReadOnly(2));
        QVERIFY(QFile::remove(path) && QFile::copy(folder.GetPath("factory/same"), path));
        QVERIFY(host.TakeFileFromDisk(path) && !isReadOnly(2));
        QCOMPARE(recorder.Take(),
                 (QStringList{"begin", "invalidated", "end", "begin", "invalidated", "end"}));
    }

    void bodyIsReadAsFarAsItIsWellFormed()
    {
        LibraryFolder const folder;
        folder.Write("project/body.json", Object(2, "compound", "Body", R"(,
            "inputs": [{"name": "a", "type": "T"}, {"name": "b"}, "c"], "outputs": {},
            "nodes": [{"id": "n", "item": "I", "position": [1, 2.5]},
                      {"id": "m", "item": "I", "position": [1]},
                      {"id": 7, "item": "I", "position": [0, 0]}],
            "connections": [{"from": ["in", "a"], "to": ["n", 1]}, {"from": ["n"]}])"));
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        GraphBody const body = host.GetBody(host.FindItem(Uid(2)));
        QVERIFY(body.inputs.size() == 1 && body.outputs.empty());
        QVERIFY(body.inputs[0].name == "a" && body.inputs[0].type == "T");
        QVERIFY(body.nodes.size() == 2 && body.nodes[1].id == "7");
        QCOMPARE(body.nodes[0].position, QPointF(1, 2.5));
        QCOMPARE(body.connections.size(), std::size_t(1));
        QCOMPARE(body.connections[0].from.node, std::string("in"));
        QCOMPARE(body.connections[0].to.port, std::string("1"));
        QVERIFY(host.GetBody(ItemID()).nodes.empty());
    }

    /// Each time anew: what was a file when the folder was scanned may be a pipe by now.
    void readsRegularFilesOfTheLibraryOnly()
    {
        LibraryFolder const folder;
        QTemporaryDir const outside;
        auto const link = [&](char const* from, QString const& to) {
            QVERIFY(QFile::link(to, folder.GetPath(QString::fromLatin1(from))));
        };
        folder.Write("file", "text");
        folder.Write("large", "");
        QVERIFY(QFile::resize(folder.GetPath("large"), embeddedhost::kMaxFileSize + 1));
        QVERIFY(QFile::copy(folder.GetPath("file"), outside.filePath("hostname")));
        link("dangling", folder.GetPath("none"));
        link("inner", folder.GetPath("file"));
        link("outer", outside.filePath("hostname"));
        link("sub", outside.path());
        link("again", folder.GetPath());
        link("circle", folder.GetPath("circle"));
        link("zero", QStringLiteral("/dev/zero"));
        QCOMPARE(mkfifo(QFile::encodeName(folder.GetPath("pipe")).constData(), 0600), 0);

        // What is found: the text, a fault, or nothing.
        std::pair<char const*, char const*> const rows[] = {{"file", "text"},
                                                            {"inner", "text"},
                                                            {"outer", "out of the library"},
                                                            {"project", "not a regular file"},
                                                            {"pipe", "not a regular file"},
                                                            {"zero", "not a regular file"},
                                                            {"large", "larger than 256 MiB"},
                                                            {"none", ""},
                                                            {"file/x", ""},
                                                            {"dangling", ""},
                                                            {"sub/hostname", ""},
                                                            {"again/file", ""},
                                                            {"circle", ""}};
        for (auto const& [name, found] : rows) {
            auto const content =
                embeddedhost::ReadRegularFile(folder.GetPath(name), folder.GetPath());
            QVERIFY2(content.exists == (*found != 0), name);
            QVERIFY2((content.bytes + content.fault).contains(found), name);
            QVERIFY2(content.bytes.isEmpty() || content.fault.isEmpty(), name);
            QVERIFY2(*found || (content.bytes + content.fault).isEmpty(), name);
        }
    }
};

NODEBROWSER_TEST(TestReading)
#include "tst_reading.moc"
