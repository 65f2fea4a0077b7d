#include "changerecorder.h"
#include "libraryfolder.h"
#include "loggedtest.h"
#include "base/text8.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using embeddedhost::kMaxTextLength;
using namespace tarno::datamodel;

namespace {

QByteArray ReadData(QString const& file)
{
    QFile data(QStringLiteral(TEST_DATA "/") + file);
    if (!data.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(data.fileName()));
    return data.readAll();
}

QStringList GetNames(ItemLibraryAccessor const& library, char const* kind)
{
    QStringList names;
    for (auto items = GetTOC(library).GetItems(kind); !items.IsDone(); items.Next())
        names << QString::fromStdString(items.GetCurrent().GetName(true, nullptr));
    return names;
}

QStringList GetAllNames(ItemLibraryAccessor const& library)
{
    return GetNames(library, TarnoType::gSolver) + GetNames(library, TarnoType::gPolymorphicSolver)
           + GetNames(library, TarnoType::gCompound) + GetNames(library, TarnoType::gGlobalConstant)
           + GetNames(library, LibType::gType);
}

} // namespace

class TestLibraryReader : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void SampleLibraryHasNoFaults()
    {
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(QStringLiteral(SAMPLE_LIBRARY)));
        QCOMPARE(GetMessages(host), QStringList());
        QVERIFY(GetAllNames(host.GetLibrary()).size() >= 300);
    }

    void ItemsComeInTheOrderOfSourcesFilesAndObjects()
    {
        LibraryFolder folder;
        folder.Write("factory/a.json", Object(1, "solver", "1"));
        folder.Write("project/b.json", '[' + Object(2, "solver", "2") + ',' + Object(3, "type", "3")
                                           + ',' + Object(4, "solver", "4") + ']');
        folder.Write("project/a/z.json", Object(5, "solver", "5"));
        folder.Write("project/Z.json", Object(6, "solver", "6"));
        folder.Write("project/.hidden/a.json", Object(7, "solver", "7"));
        folder.Write("project/readme.txt", "no object");

        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QCOMPARE(GetNames(host.GetLibrary(), TarnoType::gSolver),
                 QStringList({"6", "5", "2", "4", "1"}));
        QCOMPARE(GetNames(host.GetLibrary(), LibType::gType), QStringList("3"));
        QCOMPARE(GetMessages(host), QStringList());
    }

    void ProgressCoversAllFiles()
    {
        LibraryFolder folder;
        folder.Write("project/a.json", Object(1, "solver", "1"));
        folder.Write("project/b.json", "broken");
        CEmbeddedHost host;
        std::vector<std::pair<int, int>> steps;
        bool isRefused = true;
        host.OpenLibrary(folder.GetPath(), [&](int done, int total) {
            steps.emplace_back(done, total);
            isRefused = isRefused && !host.OpenLibrary(folder.GetPath());
        });
        QCOMPARE(steps, (std::vector<std::pair<int, int>>{{0, 2}, {1, 2}, {2, 2}}));
        QVERIFY2(isRefused, "a library was opened while another one was read");
        QVERIFY(host.GetLibrary().IsValid());
    }

    void BrokenManifest_data()
    {
        QTest::addColumn<bool>("opens");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<int>("sourceCount");

        auto const fatal = [](char const* defect, char const* message) {
            QTest::newRow(defect) << false << QStringList(message) << 0;
        };
        fatal("not-json", "library.json, line 4, column 17: this is not JSON: ");
        fatal("not-an-object", "library.json: the file must hold an object.");
        fatal("no-format", "key \"format\": the format version");
        fatal("format-as-text", "key \"format\": the format version");
        fatal("newer-format", "key \"format\": version 2 is not known");
        fatal("no-data-sources", "key \"dataSources\": an array is needed.");

        auto const open = [](char const* defect, int sourceCount, char const* message) {
            QTest::newRow(defect) << true << QStringList(message) << sourceCount;
        };
        open("no-name", 1, "library.json: key \"name\": ");
        open("data-source-as-text", 1, "library.json, data source 2: it must be an object");
        open("data-source-without-uid", 1, "data source 2: key \"uid\": ");
        open("data-source-uid-malformed", 1, "data source 2: key \"uid\": ");
        open("data-source-uid-twice", 1, "key \"uid\": the uid aaaaaaaa-");
        open("path-missing", 1, "data source 2: key \"path\": ");
        open("path-out-of-the-folder", 1, "\"project/../../elsewhere\" leads out of the library");
        open("path-absolute", 1, "\"/tmp\" leads out of the library");
        open("path-to-no-folder", 1, "\"nowhere\" is no folder");
        open("path-to-a-file", 1, "\"library.json\" is no folder");
        open("path-within-another", 1, "overlaps with the folder of another data source");
        open("path-around-another", 1, "overlaps with the folder of another data source");
        open("name-as-number", 2, "data source 2: key \"name\": ");
        open("access-unknown", 2, "key \"access\": it must be");
        open("component-malformed", 2, "key \"component\": it must be a UID");
        open("component-twice", 2, "key \"component\": the uid AAAAAAAA-");
    }

    void BrokenManifest()
    {
        QFETCH(bool, opens);
        QFETCH(QStringList, messages);
        QFETCH(int, sourceCount);
        LibraryFolder folder;
        folder.Write("project/parts/a.json", Object(1, "solver", "Healthy"));
        folder.Write("library.json",
                     ReadData(QStringLiteral("manifests/%1.json").arg(QTest::currentDataTag())));

        CEmbeddedHost host;
        CheckFaults(host, folder, opens, messages);
        QCOMPARE(GetAllNames(host.GetLibrary()), opens ? QStringList("Healthy") : QStringList());
        QCOMPARE(CountResources(), sourceCount);
    }

    void BrokenObjects_data()
    {
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QStringList>("names");

        auto const row = [](char const* defect, QStringList const& messages,
                            QStringList const& names = QStringList()) {
            QTest::newRow(defect) << messages << names;
        };
        row("not-json", {"project/not-json.json, line 3, column 13: this is not JSON: "});
        row("cut-off", {"project/cut-off.json, line 2, column 11: this is not JSON: "});
        row("empty", {"project/empty.json, line 1, column 1: this is not JSON: "});
        row("not-utf8", {"project/not-utf8.json, line 2, column 15: this is not JSON: "});
        row("number-too-large", {"too-large.json, line 1, column 98: this is not JSON: number "});
        row("zero-byte",
            {"project/zero-byte.json, line 2, column 1: this is not JSON: there is a "});
        row("keys-twice",
            {"object 1, key \"tags.ApplicationTags\": the key is there more than once. The last ",
             "object 1, key \"nodes[0].id\": the key is", "object 1, key \"name\": the key is",
             "key \"nodes[0].item\": it must be a text", "key \"nodes[0].position\": it must be"},
            {"Second"});
        row("holds-text", {"project/holds-text.json: the file must hold an object or an array"});
        row("array-of-texts", {"array-of-texts.json, object 1: it must be an object"}, {"Second"});
        row("uid-missing", {"uid-missing.json, object 1, key \"uid\": a text is needed",
                            "uid-missing.json, object 2, key \"uid\": a text is needed"});
        row("kind-missing", {"kind-missing.json, key \"kind\": a text is needed"});
        row("kind-unknown", {"object 1, key \"kind\": \"gadget\" is not known"}, {"Third"});
        row("name-missing", {"name-missing.json, key \"name\": a text is needed"});
        row("uid-twice", {"object 2, key \"uid\": bbbbbbbb-0000-0000-0000-000000000001 is the "},
            {"Second"});
        row("uid-of-a-data-source", {"key \"uid\": AAAAAAAA-0000-0000-0000-000000000001 is the "});
        row("wrong-types",
            {"key \"category\": it must be a text", "key \"implements\": it must be a text",
             "key \"parent\": it must be a text", "key \"specializes\": it must be a text",
             "key \"signature\": it must be true or false", "key \"loop\": it must be true or ",
             "key \"readOnly\": it must be true or false",
             "key \"tags.ApplicationTags\": it must be a text"},
            {"Second"});
        row("tags-as-text", {"key \"tags\": it must be an object"}, {"Second"});
        row("body-malformed",
            {"key \"inputs[1].type\": it must be a text", "\"inputs[2]\": it must be an object",
             "key \"outputs\": it must be an array", "key \"nodes[1].id\": it must be a text or ",
             "key \"nodes[2].id\": ", "key \"nodes[3].position\": it must be an array of two",
             "key \"nodes[4].id\": ", "key \"connections[1].from\": it must be an array"},
            {"Second"});
        row("reference-to-nothing",
            {"object BBBBBBBB-0000-0000-0000-000000000002, key "
             "\"parent\": the library has no object BBBBBBBB-0000"},
            {"Second"});
    }

    void BrokenObjects()
    {
        QFETCH(QStringList, messages);
        QFETCH(QStringList, names);
        QString const defect = QString::fromLatin1(QTest::currentDataTag()) + ".json";
        LibraryFolder folder;
        folder.Write("project/a.json", Object(1, "solver", "Healthy"));
        folder.Write("project/" + defect, ReadData("objects/" + defect));
        folder.Write("project/z.json", Object(9, "type", "Healthy too"));

        CEmbeddedHost host;
        CheckFaults(host, folder, true, messages);
        QStringList expected = QStringList({"Healthy", "Healthy too"}) + names;
        QStringList found = GetAllNames(host.GetLibrary());
        expected.sort();
        found.sort();
        QCOMPARE(found, expected);
    }

    void MissingFolder()
    {
        CEmbeddedHost host;
        QVERIFY(!host.OpenLibrary(QStringLiteral("/no/such/folder")));
        QCOMPARE(GetMessages(host), QStringList("/no/such/folder: there is no such folder."));

        QTemporaryDir empty;
        QVERIFY(!host.OpenLibrary(empty.path()));
        QVERIFY(GetMessages(host).last().contains("library.json: there is no such file."));
        QVERIFY(!host.GetLibrary().IsValid());
    }

    void ManifestThatIsNoFile_data()
    {
        QTest::addColumn<QByteArray>("target");
        QTest::newRow("a pipe") << QByteArray();
        QTest::newRow("a link to a device") << QByteArray("/dev/zero");
        QTest::newRow("a link to a folder") << QByteArray("project");
    }

    /// Whoever opens the pipe or reads the device waits for ever.
    void ManifestThatIsNoFile()
    {
        QFETCH(QByteArray, target);
        LibraryFolder folder;
        QByteArray const path = QFile::encodeName(folder.GetPath("library.json"));
        QVERIFY(QFile::remove(folder.GetPath("library.json")));
        QCOMPARE(target.isEmpty() ? mkfifo(path, 0600) : symlink(target, path), 0);
        CEmbeddedHost host;
        QVERIFY(!host.OpenLibrary(folder.GetPath()));
        CheckMessages(GetMessages(host), {"library.json: it is not a regular file."});
    }

    void Limits_data()
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

    void Limits()
    {
        QFETCH(QByteArray, more);
        QFETCH(QString, fault);
        LibraryFolder folder;
        folder.Write("project/a.json", '[' + Object(1, "solver", "Large", more) + ']');
        CEmbeddedHost host;
        QStringList const faults = fault.isEmpty() ? QStringList() : QStringList(fault);
        CheckFaults(host, folder, true, faults);
        QCOMPARE(GetAllNames(host.GetLibrary()).size(), fault.isEmpty() ? 1 : 0);
    }

    void ManyFaultsAreCounted()
    {
        LibraryFolder folder;
        folder.Write("project/a.json", '[' + QByteArray("7,").repeated(249) + "7]");
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        QCOMPARE(GetMessages(host).size(), 101);
        QCOMPARE(GetMessages(host).last(),
                 folder.GetPath() + ": the library has 150 more faults like these.");
    }

    void LinksAreFollowedWithinTheLibraryOnly()
    {
        LibraryFolder folder;
        QTemporaryDir outside;
        folder.Write("project/a.json", Object(1, "solver", "Healthy"));
        folder.Write("shelf.txt", Object(2, "solver", "On the shelf"));
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

        CEmbeddedHost host;
        CheckFaults(host, folder, true,
                    {"data source 2: key \"path\": \"factory\" leads out of the library folder",
                     "project/broken.json: there is no file", "project/folder: the link to a ",
                     "project/loop: the link to a", "project/out.json: the link leads out of"});
        QCOMPARE(GetAllNames(host.GetLibrary()), QStringList({"Healthy", "On the shelf"}));
    }

    void LinksIntoReadOnlySourcesAreReadOnly()
    {
        LibraryFolder folder;
        folder.Write("factory/a.json", Object(1, "compound", "Shipped"));
        folder.Write("factory/b.json", Object(2, "compound", "Shipped as well"));
        folder.Write("project/z.json", Object(2, "compound", "Own"));
        QVERIFY(QFile::link("../factory/a.json", folder.GetPath("project/link.json")));
        CEmbeddedHost host;
        CheckFaults(host, folder, true,
                    {"project/link.json: the link leads to a file of a data source that is read-",
                     "factory/a.json, key \"uid\": BBBBBBBB-0000-0000-0000-000000000001 is the ",
                     "factory/b.json, key \"uid\": "});
        QVERIFY(host.GetLibrary().ItemIsReadOnly(host.FindItem(Uid(1))));
        QVERIFY(!host.GetLibrary().ItemIsReadOnly(host.FindItem(Uid(2))));

        // The content is the same: only the access changes, and comes back.
        QString const path = folder.GetPath("project/z.json");
        QVERIFY(QFile::copy(path, folder.GetPath("factory/same")) && QFile::remove(path));
        QVERIFY(QFile::link("../factory/same", path));
        ChangeRecorder recorder(host.GetLibrary());
        QVERIFY(host.TakeFileFromDisk(path));
        QVERIFY(host.GetLibrary().ItemIsReadOnly(host.FindItem(Uid(2))));
        QVERIFY(QFile::remove(path) && QFile::copy(folder.GetPath("factory/same"), path));
        QVERIFY(host.TakeFileFromDisk(path));
        QVERIFY(!host.GetLibrary().ItemIsReadOnly(host.FindItem(Uid(2))));
        QCOMPARE(recorder.Take(),
                 (QStringList{"begin", "invalidated", "end", "begin", "invalidated", "end"}));
    }

    void UnreadableFiles()
    {
        LibraryFolder folder;
        folder.Write("project/a.json", Object(1, "solver", "Healthy"));
        folder.Write("project/b.json/c.json", Object(2, "solver", "In a folder"));
        // Nobody writes into the pipe: whoever opens it waits for ever.
        QCOMPARE(mkfifo(qPrintable(folder.GetPath("project/pipe.json")), 0600), 0);
        // Names that the toolkit cannot list.
        QByteArray const project = QFile::encodeName(folder.GetPath("project"));
        QCOMPARE(mkdir(project + "/m\xFC", 0700), 0);
        QCOMPARE(link(project + "/a.json", project + "/caf\xE9.json"), 0);
        QStringList faults({"project/caf\\xe9.json: the name is not UTF-8; what it names is ",
                            "project/m\\xfc: the name is not UTF-8",
                            "project/pipe.json: it is not a regular file"});
        QStringList names({"Healthy", "In a folder"});
        // For an administrator everything is readable.
        if (geteuid() != 0) {
            folder.Write("project/secret.json", Object(3, "solver", "Secret"));
            QVERIFY(QFile::setPermissions(folder.GetPath("project/secret.json"), {}));
            faults << "project/secret.json: the file cannot be read: ";
        }
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));
        // The toolkit cannot remove them either.
        QCOMPARE(rmdir(project + "/m\xFC"), 0);
        QCOMPARE(unlink(project + "/caf\xE9.json"), 0);
        QStringList found = GetMessages(host);
        found.sort();
        CheckMessages(found, faults);
        QCOMPARE(GetAllNames(host.GetLibrary()), names);
    }

    void BodyIsReadAsFarAsItIsWellFormed()
    {
        LibraryFolder folder;
        folder.Write("project/body.json", ReadData("objects/body-malformed.json"));
        CEmbeddedHost host;
        QVERIFY(host.OpenLibrary(folder.GetPath()));

        GraphBody const body = host.GetBody(host.FindItem(Uid(2)));
        QCOMPARE(body.inputs.size(), std::size_t(1));
        QCOMPARE(body.inputs[0].name, std::string("a"));
        QCOMPARE(body.inputs[0].type, std::string("T"));
        QVERIFY(body.outputs.empty());
        QCOMPARE(body.nodes.size(), std::size_t(2));
        QCOMPARE(body.nodes[0].position, QPointF(1, 2.5));
        QCOMPARE(body.nodes[1].id, std::string("7"));
        QCOMPARE(body.connections.size(), std::size_t(1));
        QCOMPARE(body.connections[0].from.node, std::string("in"));
        QCOMPARE(body.connections[0].to.port, std::string("1"));
        QVERIFY(host.GetBody(ItemID()).nodes.empty());
    }

private:
    /// Opens the library and compares what is said, beginning or middle of each message, and
    /// that nothing on disk has changed.
    static void CheckFaults(CEmbeddedHost& host, LibraryFolder const& folder, bool opens,
                            QStringList const& expected)
    {
        auto const before = folder.Read();
        QCOMPARE(host.OpenLibrary(folder.GetPath()), opens);
        QCOMPARE(folder.Read(), before);
        CheckMessages(GetMessages(host), expected);
        for (CMessageChannel::Message const& message : host.GetMessages().GetLog())
            QCOMPARE(message.severity, opens ? eSeverity::kWarning : eSeverity::kError);
    }

    static void CheckMessages(QStringList const& messages, QStringList const& expected)
    {
        QVERIFY2(messages.size() == expected.size(), qPrintable(messages.join('\n')));
        for (int i = 0; i < messages.size(); ++i)
            QVERIFY2(messages[i].contains(expected[i]), qPrintable(messages[i]));
    }

    static int CountResources()
    {
        auto* const helper = dynamic_cast<qorm::IRevisionControlUIHelper*>(
            wekGetSystem()->GetService("RevisionControlUIHelper"));
        int count = 0;
        for (char const* uid : {kProjectUid, kFactoryUid})
            count += helper->FindObject(qorm::DbObjectId(uid)).IsValid();
        return count;
    }
};

NODEBROWSER_TEST_MAIN(TestLibraryReader)
#include "tst_libraryreader.moc"
