#include "changerecorder.h"
#include "libraryfolder.h"
#include "libraryuser.h"
#include "loggedtest.h"
#include "storage/filedigest.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <nlohmann/json.hpp>
#include <qorm.h>

#include <limits>
#include <sys/resource.h>

using namespace tarno::datamodel;

namespace {

QString const kGlowFile = QStringLiteral("project/glühen.json");

} // namespace

/// Saving, and files that other programs change meanwhile.
class tst_Saving : public LoggedTest
{
    Q_OBJECT

protected:
    void SetUp() override
    {
        m_Folder = std::make_unique<LibraryFolder>();
        m_Folder->Write(kGlowFile, Indented(R"({"uid": ")" + QByteArray::fromStdString(Uid(1))
                                            + R"(", "kind": "compound", "name": "Glow",
                                                 "later": {"b": 1, "a": [2]}})"));
        m_Folder->Write("project/two.json", '[' + Object(2, "compound", "Ramp") + ", 7, "
                                                + Object(3, "compound", "Fade") + ']');
        m_Folder->Write("project/odd.json", "  " + Object(4, "solver", "Odd") + "   \n\n");
        Open();
    }

    void TearDown() override
    {
        m_User.reset();
        m_Host.reset();
        m_Folder.reset();
    }

private:
    static QByteArray Indented(QByteArray const& object)
    {
        return QByteArray::fromStdString(nlohmann::ordered_json::parse(object.toStdString()).dump(2)
                                         + '\n');
    }

    void Open()
    {
        m_User.reset();
        m_Host.reset();
        m_Host = std::make_unique<CEmbeddedHost>();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        m_Host->GetMessages().ClearLog();
        m_User = std::make_unique<LibraryUser>(*m_Host);
    }

    /// By path; an empty one is no file.
    typedef QMap<QString, QByteArray> Contents;

    void WriteAll(Contents const& contents)
    {
        for (auto file = contents.begin(); file != contents.end(); ++file) {
            if (file.value().isEmpty())
                QFile::remove(m_Folder->GetPath(file.key()));
            else
                m_Folder->Write(file.key(), file.value());
        }
    }

    static QByteArray Compact(QByteArray const& json)
    {
        return QByteArray::fromStdString(nlohmann::ordered_json::parse(json.toStdString()).dump());
    }

    QStringList ListItems()
    {
        QStringList items;
        for (char const* kind : {TarnoType::gSolver, TarnoType::gCompound, LibType::gType}) {
            auto all = GetTOC(m_Host->GetLibrary()).GetItems(kind);
            for (; !all.IsDone(); all.Next())
                items << QString::fromStdString(all.GetCurrent().GetItemID().Serialize() + ' '
                                                + all.GetCurrent().GetName(true, nullptr));
        }
        items.sort();
        return items;
    }

    ItemID Item(int number)
    {
        return m_Host->FindItem(Uid(number));
    }

    QByteArray Content(QString const& file)
    {
        return m_Folder->Read().value(m_Folder->GetPath(file));
    }

    QString Log()
    {
        return GetMessages(*m_Host).join('\n');
    }

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
    std::unique_ptr<LibraryUser> m_User;

private Q_SLOTS:
    void WritesWhatChangedAndNothingElse()
    {
        auto before = m_Folder->Read();
        m_User->Rename(Item(1), "Soft Glow");
        m_User->Tag(Item(1), "light");
        QVERIFY(m_User->Save());
        QVERIFY(!m_User->IsModified(Item(1)));
        QVERIFY(!m_Host->IsModified());

        QByteArray& glow = before[m_Folder->GetPath(kGlowFile)];
        glow.replace("\"Glow\",", "\"Soft Glow\",\n  \"tags\": {\n"
                                  "    \"ApplicationTags\": \"light\"\n  },");
        QCOMPARE(m_Folder->Read(), before);
    }

    void KeepsTheBytesOfWhatDidNotChange_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");

        // "..." stands for the object's uid and kind.
        auto const row = [](char const* name, QByteArray before, QByteArray after) {
            QByteArray const start =
                Object(9, "compound", "").split(',').mid(0, 2).join(',').mid(1);
            QTest::newRow(name) << before.replace("...", start) << after.replace("...", start);
        };
        QByteArray const tags = R"("tags": {"ApplicationTags":"light"})";
        row("numbers that no double holds",
            R"({..., "a": 12345678901234567890123, "name": "Old", "b": [1e-400, 1.50]})",
            "{..., " + tags
                + R"(, "a": 12345678901234567890123, "name": "New", "b": [1e-400, 1.50]})");
        QByteArray const odd =
            "\xEF\xBB\xBF[ 7 ,{\"uid\":\"?\",\"n\":1,\"n\":1E5},\r\n\t{...,\n\t\t\"\\u006eame\" : "
            "\"Old\",\n"
            "\t\t\"tags\": {\"Other\": \"\\u0061\",  \"ApplicationTags\": \"dark\" }\n\t}\r\n "
            ",\"\\/\"\t]";
        row("the layout of others, and other objects", odd,
            QByteArray(odd).replace("Old", "New").replace("dark", "light"));
        row("the last of equal keys",
            R"({..., "a": 0.10, "name": "Odd", "a": 0.20, "name": "Old"})",
            "{..., " + tags + R"(, "a": 0.20, "name": "New"})");
    }

    void KeepsTheBytesOfWhatDidNotChange()
    {
        QFETCH(QByteArray, before);
        m_Folder->Write("project/kept.json", before);
        Open();
        m_User->Rename(Item(9), "New");
        m_User->Tag(Item(9), "light");
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QTEST(Content("project/kept.json"), "after");
    }

    void NewItemsGetFilesAndLoseThem_data()
    {
        QTest::addColumn<bool>("isRestored");
        QTest::newRow("a link in place of the file becomes one again") << true;
        QTest::newRow("a link in place of the file is removed by hand") << false;
    }

    void NewItemsGetFilesAndLoseThem()
    {
        QFETCH(bool, isRestored);
        ItemID const id = m_User->Create("Über Ramp!");
        m_User->Create("Uber-Ramp");
        QVERIFY(m_User->Save());
        QStringList const files = m_Folder->Read().keys();
        QCOMPARE(files.filter("/project/").size(), 5);
        Open();
        QVERIFY2(m_Host->FindItem(ItemIDUnlock::GetItemIDUID(id)) == id, qPrintable(Log()));

        // A link that leads nowhere takes a name, too.
        QVERIFY(QFile::link("nowhere", m_Folder->GetPath("project/short-lived.json")));
        ItemID const other = m_User->Create("Short Lived");
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        m_Host->GetCommandManager().GetUndoStack().undo();
        QVERIFY2(m_Host->IsModified(), "there is a file to remove");
        QString const path = m_Folder->GetPath("project/short-lived-2.json");
        QString const real = m_Folder->GetPath("real");
        QVERIFY(QFile::rename(path, real) && QFile::link(real, path));
        QVERIFY(!m_User->Save());
        QVERIFY2(Log().contains("it is a link") && QFileInfo::exists(path), qPrintable(Log()));
        QVERIFY(QFile::remove(path));
        QVERIFY(isRestored ? QFile::rename(real, path) : QFile::remove(real));
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(m_Host->GetLibrary().GetItemName(other, true, nullptr).empty());
        QCOMPARE(m_Folder->Read().keys(), files);
    }

    void ListenersMayRefuse()
    {
        ChangeRecorder recorder(m_Host->GetLibrary());
        m_User->Rename(Item(1), "Soft Glow");
        recorder.Take();
        recorder.RefuseCommits();
        auto const before = m_Folder->Read();
        QVERIFY(!m_User->Save());
        QCOMPARE(recorder.Take(), (QStringList{"precommit", "postcommit"}));
        QCOMPARE(m_User->GetSaveMessages().size(), std::size_t(1));
        QCOMPARE(m_Folder->Read(), before);
        QVERIFY(m_User->IsModified(Item(1)));
    }

    void WhatCannotBeWrittenStaysModified_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("reason");
        // Not even root can replace it.
        QTest::newRow("a folder") << "folder"
                                  << "not a regular file";
        QTest::newRow("a link to nothing") << "link"
                                           << "leads nowhere";
#ifndef NODEBROWSER_PORTABLE_FILES
        QTest::newRow("a writer") << "writer"
                                  << "save again";
#endif
    }

    void WhatCannotBeWrittenStaysModified()
    {
        QFETCH(QString, way);
        QFETCH(QString, reason);
        m_User->Rename(Item(1), "Soft Glow");
        m_User->Rename(Item(2), "Slope");
        QString const path = m_Folder->GetPath(kGlowFile);
        QFile writer(path);
        QVERIFY(way == "writer" ? writer.open(QIODevice::Append) : QFile::remove(path));
        if (way == "folder")
            QVERIFY(QDir().mkdir(path));
        else if (way == "link")
            QVERIFY(QFile::link("nowhere", path) && m_Host->OverwriteFileOnDisk(path));
        QVERIFY(!m_User->Save());
        QString const said = QString::fromLatin1(m_User->GetSaveMessages().front().c_str());
        QVERIFY2(said.contains(kGlowFile) && said.contains(reason), qPrintable(said));
        QVERIFY(m_User->IsModified(Item(1)));
        QVERIFY2(!m_User->IsModified(Item(2)), "the others are written all the same");
        QVERIFY(Content("project/two.json").contains("Slope"));
    }

    /// Many at once: a save has few files open at a time.
    void SavesMoreFilesThanMayBeOpen()
    {
        int const first = 100;
        int const count = 100;
        for (int object = first; object < first + count; ++object)
            m_Folder->Write(QStringLiteral("project/many%1.json").arg(object),
                            Object(object, "compound", "Many"));
        Open();
        for (int object = first; object < first + count; ++object)
            m_User->Tag(Item(object), "light");
        rlimit before;
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &before), 0);
        rlimit const tight = {60, before.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &tight), 0);
        bool const isSaved = m_User->Save();
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &before), 0);
        QVERIFY2(isSaved, qPrintable(Log()));
    }

    void LinksStayInTheLibrary_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("isSaved");
        QTest::newRow("in the data source") << "project/.real" << true;
        QTest::newRow("in the library") << "shared.json" << true;
        QTest::newRow("in a read-only data source") << "factory/.real" << false;
        QTest::newRow("outside") << QString() << false;
    }

    /// The file became a link since it was read.
    void LinksStayInTheLibrary()
    {
        QFETCH(QString, target);
        QFETCH(bool, isSaved);
        QTemporaryDir const outside;
        QString const real =
            target.isEmpty() ? outside.filePath("real") : m_Folder->GetPath(target);
        QByteArray const content = Content(kGlowFile);
        QString const path = m_Folder->GetPath(kGlowFile);
        QVERIFY(QFile::copy(path, real) && QFile::remove(path) && QFile::link(real, path));
        m_User->Rename(Item(1), "Soft Glow");
        QCOMPARE(m_User->Save(), isSaved);
        QCOMPARE(m_User->IsModified(Item(1)), !isSaved);
        QVERIFY(m_Host->OverwriteFileOnDisk(path));
        QCOMPARE(!m_User->IsModified(Item(1)) || m_User->Save(), isSaved);
        QVERIFY2(QFileInfo(path).isSymLink(), "the link is kept");
        QFile file(real);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll() == content, !isSaved);
    }

    /// As when the library is opened.
    void FoldersThatBecameLinksAreNotFollowed()
    {
        m_Folder->Write("project/sub/a.json", Object(8, "compound", "Left"));
        m_Folder->Write("project/sub/b.json", Object(9, "compound", "Changed"));
        Open();
        m_User->Rename(Item(9), "Ours");
        QVERIFY(QDir().rename(m_Folder->GetPath("project/sub"), m_Folder->GetPath("other")));
        QVERIFY(QFile::link("../other", m_Folder->GetPath("project/sub")));
        m_Host->CheckFolder();
        QVERIFY(Item(8).IsNull());
        QString const path = m_Folder->GetPath("project/sub/b.json");
        QCOMPARE(m_Host->FindConflicts(), QStringList(path));
        QVERIFY(m_Host->OverwriteFileOnDisk(path));
        QVERIFY(!m_User->Save());
        QCOMPARE(Content("other/b.json"), Object(9, "compound", "Changed"));
        QCOMPARE(m_User->NameOf(Item(9)), std::string("Ours"));
    }

    void WhatIsGoneIsNotMadeAgain_data()
    {
        QTest::addColumn<QString>("gone");
        QTest::newRow("the library folder") << QString();
        QTest::newRow("library.json") << "library.json";
        QTest::newRow("the data source's folder") << "project";
    }

    void WhatIsGoneIsNotMadeAgain()
    {
        QFETCH(QString, gone);
        m_User->Create("New");
        QString const path = gone.isEmpty() ? m_Folder->GetPath() : m_Folder->GetPath(gone);
        QVERIFY(QDir().rename(path, path + "-away"));
        QVERIFY(!m_User->Save());
        QVERIFY2(Log().contains("gone") || Log().contains("has no library.json"),
                 qPrintable(Log()));
        QVERIFY(!QFileInfo::exists(path));
        QVERIFY(m_Host->IsModified());
        QVERIFY(QDir().rename(path + "-away", path));
        QVERIFY2(m_User->Save(), qPrintable(Log()));
    }

    void LongNamesGetFiles()
    {
        QByteArray const name(300, 'n');
        m_User->Create(name);
        m_User->Create(name + '2');
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QCOMPARE(m_Folder->Read().keys().filter("/nnn").size(), 2);
    }

    /// What a save left that was killed goes; what anybody else put there, or lost there, stays.
    void LeftoversAreTidiedUp()
    {
        QString const staging = QStringLiteral("project/.nodebrowser/");
        auto const hex = [](QByteArray const& content) {
            return QString::fromLatin1(embeddedhost::GetDigest(content).toHex());
        };
        auto const staged = [&](int number) {
            return staging
                   + QStringLiteral("%1-%2-%3-glow.json.staged")
                         .arg(QString::number(number), hex("old"), hex("new"));
        };
        QStringList kept = {"project/o1.json.BackUp", "project/o1.json.aBcDeF",
                            staging + "mine.txt"};
        int const large = 10;
        for (int number = large; number < large + 120; ++number)
            kept << staged(number);
        kept << staged(std::numeric_limits<int>::max());
        auto const before = m_Folder->Read();
        m_Folder->Write(staging + ".gitignore",
                        "# Made by a save of the node browser, which removes it.\n*\n");
        m_Folder->Write(staged(1), "old");
        m_Folder->Write(staged(2), "new");
        m_Folder->Write(staging + "4.new", "half");
        m_Folder->Write(staging + "lock", "");
        for (QString const& file : kept)
            m_Folder->Write(file, "theirs");
        // Larger than any file of a library.
        QVERIFY(QFile::resize(m_Folder->GetPath(staged(large)), qint64(3) << 30));

        m_Host->CloseLibrary();
        m_Host->GetMessages().ClearLog();
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        QVERIFY(QFile::resize(m_Folder->GetPath(staged(large)), 6));
        QVERIFY2(Log().contains("there are 21 more such files"), qPrintable(Log()));
        QCOMPARE(Log().count("holds what another program wrote"), 100);
        m_User->Rename(Item(1), "Soft Glow");
        QVERIFY2(m_User->Save(), "the numbers of its files go on");
        QStringList const files = m_Folder->Read().keys();
        QCOMPARE(files.size(), before.size() + kept.size() + 1);
        for (QString const& file : kept)
            QCOMPARE(Content(file), QByteArray("theirs"));
    }

    void OwnFoldersAreLeftAlone_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::newRow("any file") << QStringList{"mine.txt"};
        QTest::newRow("an empty .gitignore") << QStringList{".gitignore", "mine.txt", "3.new"};
    }

    /// A user's own folder of that name is not ours to use.
    void OwnFoldersAreLeftAlone()
    {
        QFETCH(QStringList, names);
        for (QString const& name : names)
            m_Folder->Write("project/.nodebrowser/" + name, "");
        auto const before = m_Folder->Read();
        m_User->Rename(Item(1), "Soft Glow");
        QVERIFY(!m_User->Save());
        QVERIFY2(Log().contains("rename it or remove it"), qPrintable(Log()));
        QCOMPARE(m_Folder->Read(), before);
    }

    /// Both sides changed the object: nothing is lost, and the user decides.
    void ConflictsAreKeptApart_data()
    {
        QTest::addColumn<bool>("takesTheirs");
        QTest::newRow("take theirs") << true;
        QTest::newRow("overwrite") << false;
    }

    void ConflictsAreKeptApart()
    {
        QFETCH(bool, takesTheirs);
        m_User->Rename(Item(1), "Ours");
        QByteArray theirs = Content(kGlowFile);
        theirs.replace("Glow", "Theirs");
        m_Folder->Write(kGlowFile, theirs);
        QVERIFY(!m_User->Save());
        QVERIFY2(Log().contains(kGlowFile), qPrintable(Log()));
        QCOMPARE(Content(kGlowFile), theirs);
        QCOMPARE(m_User->NameOf(Item(1)), std::string("Ours"));
        QVERIFY(m_User->IsModified(Item(1)));

        QString const path = m_Folder->GetPath(kGlowFile);
        if (takesTheirs) {
            QVERIFY(m_Host->TakeFileFromDisk(path));
            QCOMPARE(m_User->NameOf(Item(1)), std::string("Theirs"));
            QVERIFY(!m_User->IsModified(Item(1)));
            QUndoStack& stack = m_Host->GetCommandManager().GetUndoStack();
            QCOMPARE(stack.undoText(), QString("Take from disk glühen.json"));
            stack.undo();
            QCOMPARE(m_User->NameOf(Item(1)), std::string("Ours"));
        } else {
            QVERIFY(m_Host->OverwriteFileOnDisk(path));
        }
        QVERIFY(m_User->Save());
        QVERIFY(Content(kGlowFile).contains("Ours"));
    }

    void RemovalsAreKeptApart_data()
    {
        ConflictsAreKeptApart_data();
    }

    /// We are to remove a file that another program changes.
    void RemovalsAreKeptApart()
    {
        QFETCH(bool, takesTheirs);
        ItemID const fresh = m_User->Create("Fresh");
        QVERIFY(m_User->Save());
        m_Host->GetCommandManager().GetUndoStack().undo();
        m_Folder->Write("project/fresh.json", Content("project/fresh.json") + "\n\n");
        m_Host->CheckFolder();
        QString const path = m_Folder->GetPath("project/fresh.json");
        QVERIFY2(Log().contains("fresh.json: another program"), qPrintable(Log()));
        QCOMPARE(m_Host->FindConflicts(), QStringList(path));
        QVERIFY(m_User->NameOf(fresh).empty());

        QVERIFY(takesTheirs ? m_Host->TakeFileFromDisk(path) : m_Host->OverwriteFileOnDisk(path));
        QCOMPARE(m_User->NameOf(fresh), std::string(takesTheirs ? "Fresh" : ""));
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QCOMPARE(QFileInfo::exists(path), takesTheirs);
        QVERIFY(!m_Host->IsModified());
    }

    void OverwritesWhatWasUndone_data()
    {
        QTest::addColumn<bool>("isOurs");
        QTest::addColumn<QByteArray>("theirs");
        QByteArray const ramp = Object(2, "compound", "Ramp");
        QByteArray const fade = Object(3, "compound", "Fade");
        QTest::newRow("changed") << true
                                 << '[' + Object(2, "compound", "Theirs") + ',' + fade + ']';
        QTest::newRow("gone") << true << QByteArray();
        QTest::newRow("more") << true
                              << '[' + ramp + ',' + fade + ',' + Object(9, "type", "T") + ']';
        QTest::newRow("nothing of ours") << false << QByteArray();
    }

    /// What is shown is what is on disk after the next save.
    void OverwritesWhatWasUndone()
    {
        QFETCH(bool, isOurs);
        QFETCH(QByteArray, theirs);
        if (isOurs)
            m_User->Rename(Item(2), "Ours");
        QString const path = m_Folder->GetPath("project/two.json");
        QFile::remove(path);
        if (!theirs.isEmpty())
            m_Folder->Write("project/two.json", theirs);
        QVERIFY(m_Host->OverwriteFileOnDisk(path));
        m_Host->GetCommandManager().GetUndoStack().undo();
        m_Host->CheckFolder();
        QCOMPARE(m_Host->IsModified(), isOurs);
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(m_User->NameOf(Item(2)), std::string(isOurs ? "Ramp" : ""));
            QCOMPARE(Item(3).IsNull(), !isOurs);
            QVERIFY(Item(9).IsNull());
            Open();
        }
    }

    /// Without changes of ours the file is followed again.
    void TakesWhatIsOnDiskOnceUndone()
    {
        m_User->Rename(Item(2), "Ours");
        m_User->Rename(Item(4), "Ours");
        m_Folder->Write("project/two.json", '[' + Object(2, "compound", "Theirs") + ']');
        m_Folder->Write("project/odd.json", "{}");
        m_Host->CheckFolder();
        QCOMPARE(m_User->NameOf(Item(2)), std::string("Ours"));
        m_Host->GetCommandManager().GetUndoStack().setIndex(0);
        QTRY_COMPARE(m_User->NameOf(Item(2)), std::string("Theirs"));
        QVERIFY(Item(3).IsNull());
        QVERIFY(Item(4).IsNull());
        QVERIFY(!m_Host->IsModified());
    }

    void TakesWhatIsGone_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isThere");
        QTest::newRow("the object") << "project/two.json" << QByteArray("[7]") << false;
        QTest::newRow("the file") << QString() << QByteArray() << false;
        QTest::newRow("for another object")
            << "project/two.json" << Object(9, "compound", "Theirs") << false;
        QTest::newRow("for another kind")
            << "project/two.json" << Object(2, "solver", "Theirs") << true;
        QTest::newRow("to another file")
            << "project/moved.json" << Object(2, "compound", "Theirs") << true;
    }

    /// What we changed is no longer on disk, or no longer there.
    void TakesWhatIsGone()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, content);
        QFETCH(bool, isThere);
        m_User->Rename(Item(2), "Ours");
        m_User->Rename(Item(3), "Ours As Well");
        QString const path = m_Folder->GetPath("project/two.json");
        QFile::remove(path);
        if (!file.isEmpty())
            m_Folder->Write(file, content);
        m_Host->CheckFolder();
        QVERIFY(!m_User->Save());
        QVERIFY(m_Host->TakeFileFromDisk(path));
        QVERIFY2(!m_Host->IsModified(), qPrintable(Log()));
        QVERIFY(Item(3).IsNull());
        QCOMPARE(Item(2).IsNull(), !isThere);
        QVERIFY(!isThere || m_User->NameOf(Item(2)) == "Theirs");

        QUndoStack& stack = m_Host->GetCommandManager().GetUndoStack();
        stack.undo();
        QCOMPARE(m_User->NameOf(Item(2)), std::string("Ours"));
        stack.redo();
        QCOMPARE(Item(2).IsNull(), !isThere);
        stack.setIndex(0);
        stack.setIndex(stack.count());
        stack.setIndex(2);
        QVERIFY(m_User->Save());
        Open();
        QVERIFY2(Log().isEmpty(), qPrintable(Log()));
        QCOMPARE(m_User->NameOf(Item(2)), std::string("Ours"));
        QCOMPARE(m_User->NameOf(Item(3)), std::string("Ours As Well"));
    }

    void ReadsChangesAsOpeningDoes_data()
    {
        QTest::addColumn<Contents>("before");
        QTest::addColumn<Contents>("after");
        QByteArray const ramp = Object(2, "compound", "Ramp");
        QByteArray const steep = Object(2, "compound", "Steep");
        QByteArray const twin = Object(2, "compound", "Twin");
        auto const row = [](char const* name, QByteArray const& before, QByteArray const& after) {
            QTest::newRow(name) << Contents{{"project/two.json", '[' + before + ']'}}
                                << Contents{{"project/two.json", '[' + after + ']'}};
        };
        auto const keeps = [&](char const* name, QByteArray const& other) {
            row(name, ramp + ',' + other, steep + ',' + other);
        };
        auto const keepsFirst = [&](char const* name, QByteArray const& other) {
            row(name, other + ',' + ramp, other + ',' + steep);
        };
        keeps("exact twin", ramp);
        keeps("twin of another kind", Object(2, "solver", "Ramp"));
        keeps("twin in small letters", twin.toLower().replace("twin", "Twin"));
        keeps("uid of another file's item", Object(1, "compound", "Glow"));
        keeps("uid of a data source", QByteArray(twin).replace(Uid(2).c_str(), kProjectUid));
        keepsFirst("unknown kind", Object(2, "gadget", "Ramp"));
        keepsFirst("no name", Object(2, "compound", ""));
        keepsFirst("no object", "7, [], null");
        row("twin is first", ramp, twin + ',' + ramp);
        row("its twin goes", ramp + ',' + twin, twin);
        row("its twin becomes faulty", ramp + ',' + twin, Object(2, "gadget", "Ramp") + ',' + twin);
        row("letter case", Object(9, "solver", "A"), Object(9, "solver", "A").toLower());
        row("kind", ramp, Object(2, "type", "Ramp"));
        Contents const twins = {{"project/two.json", ramp}, {"project/x.json", '[' + twin + ']'}};
        QTest::newRow("its twin's file goes") << twins << Contents{{"project/two.json", ""}};
        QTest::newRow("its twin becomes another")
            << twins << Contents{{"project/two.json", Object(8, "compound", "Eight")}};
        QTest::newRow("to a later file")
            << Contents{{"project/a.json", '[' + ramp + ']'},
                        {"project/b.json", "[]"},
                        {"project/two.json", "[]"}}
            << Contents{{"project/a.json", "[]"}, {"project/b.json", '[' + ramp + ']'}};
        QTest::newRow("to an earlier file")
            << Contents{{"project/a.json", "[]"}, {"project/two.json", '[' + ramp + ']'}}
            << Contents{{"project/a.json", '[' + ramp + ']'}, {"project/two.json", "[]"}};
    }

    /// Also what makes no item: a later save leaves it as it is.
    void ReadsChangesAsOpeningDoes()
    {
        QFETCH(Contents, before);
        QFETCH(Contents, after);
        WriteAll(before);
        Open();
        WriteAll(after);
        ChangeRecorder recorder(m_Host->GetLibrary());
        m_Host->CheckFolder();
        QVERIFY(!recorder.Take().isEmpty());
        QStringList const items = ListItems();
        auto const contents = m_Folder->Read();

        m_User->Tag(Item(2), "ours");
        m_User->Save();
        m_Host->GetCommandManager().GetUndoStack().undo();
        m_User->Save();
        auto const saved = m_Folder->Read();
        for (auto file = contents.begin(); file != contents.end(); ++file)
            QCOMPARE(Compact(saved[file.key()]), Compact(file.value()));
        Open();
        QCOMPARE(items, ListItems());
    }

    /// As a pull does it: changed, renamed and removed files, and new ones.
    void FollowsOtherPrograms()
    {
        ChangeRecorder recorder(m_Host->GetLibrary());
        QByteArray glow = Content(kGlowFile);
        glow.replace("Glow", "Shine");
        QFile::remove(m_Folder->GetPath(kGlowFile));
        m_Folder->Write("project/below/shine.json", glow);
        m_Folder->Write("project/new.json", Object(9, "compound", "New"));
        m_Folder->Write("project/two.json",
                        '[' + Object(2, "compound", "Ramp", R"(, "tags": {"ApplicationTags": "x"})")
                            + ']');
        QTRY_VERIFY(Item(9).IsValid());
        QTRY_VERIFY(!Item(3).IsValid());
        QVERIFY(recorder.Take().contains("added New"));
        QCOMPARE(m_User->NameOf(Item(1)), std::string("Shine"));
        QCOMPARE(m_Host->GetLibrary().GetItemTags(Item(2), "ApplicationTags"), std::string("x"));
        QVERIFY(!m_Host->IsModified());
        QVERIFY2(Log().isEmpty(), qPrintable(Log()));
    }

    void KeepsUnsavedChangesWhenFilesChange()
    {
        m_User->Rename(Item(2), "Ours");
        m_Folder->Write("project/two.json", '[' + Object(3, "compound", "Fade Out") + ']');
        m_Host->CheckFolder();
        QCOMPARE(m_User->NameOf(Item(2)), std::string("Ours"));
        QCOMPARE(m_User->NameOf(Item(3)), std::string("Fade Out"));
        QVERIFY2(Log().contains("two.json"), qPrintable(Log()));
        QVERIFY(!m_User->Save());
    }

    void LooksWhileChangesGoOn()
    {
        m_Folder->Write("project/new.json", Object(9, "compound", "New"));
        QTRY_VERIFY_WITH_TIMEOUT((m_Folder->Write("project/busy", ""),
                                  QFile::remove(m_Folder->GetPath("project/busy")),
                                  Item(9).IsValid()),
                                 20000);
    }

    void TriesHalfWrittenFilesAgain()
    {
        m_Folder->Write("project/new.json", Object(9, "compound", "New").left(20));
        m_Host->CheckFolder();
        QVERIFY2(Log().isEmpty(), "it may be complete the next time");
        m_Folder->Write("project/new.json", Object(9, "compound", "New"));
        QTRY_VERIFY(Item(9).IsValid());
        m_Folder->Write("project/broken.json", "{");
        QTRY_COMPARE(Log().count("broken.json"), 1);
        m_Host->CheckFolder();
        QCOMPARE(Log().count("broken.json"), 1);
        m_Folder->Write("project/broken.json", "{,");
        m_Host->CheckFolder();
        QTRY_COMPARE(Log().count("broken.json"), 2);
    }

    void KeepsItemsOfAFolderThatIsGone_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("data source") << "/project";
        QTest::newRow("library") << "";
    }

    /// A missing folder is not a folder without files. What it is when it is back counts again.
    void KeepsItemsOfAFolderThatIsGone()
    {
        QFETCH(QString, name);
        QString const folder = m_Folder->GetPath() + name;
        QString const away = folder + ".away";
        QString const file = m_Folder->GetPath("project/two.json").replace(folder, away);
        QString const glow = m_Folder->GetPath(kGlowFile);
        ChangeRecorder recorder(m_Host->GetLibrary());
        for (int round = 1; round <= 2; ++round) {
            QVERIFY(QDir().rename(folder, away));
            // Whether or not the one around it is watched.
            m_Host->CheckFolder();
            m_Host->CheckFolder();
            QCOMPARE(Log().count("the folder is gone"), round);
            QVERIFY(recorder.Take().isEmpty());
            QVERIFY(!m_Host->TakeFileFromDisk(glow));

            QFile two(file);
            QVERIFY(two.open(QIODevice::WriteOnly));
            two.write(Object(10 + round, "compound", "New"));
            two.close();
            QVERIFY(QDir().rename(away, folder));
            QTRY_VERIFY(Item(10 + round).IsValid());
            QVERIFY(!Item(3).IsValid());
            recorder.Take();
        }
        QVERIFY(QDir().rename(m_Folder->GetPath("project"), m_Folder->GetPath("away")));
        QTRY_COMPARE(Log().count("the folder is gone"), 3);
        QVERIFY(QDir().rename(m_Folder->GetPath("away"), m_Folder->GetPath("project")));
    }

    /// A file that was not there when the folder was looked at last.
    void NoticesWhatGoesSoonAfterAMove()
    {
        m_Folder->Write("library.json", R"({"format": 1, "name": "Test", "dataSources": [
            {"uid": "AAAAAAAA-0000-0000-0000-000000000001", "name": "Project", "path": "project",
             "access": "read-write"},
            {"uid": "AAAAAAAA-0000-0000-0000-000000000003", "name": "Shared", "path": "factory",
             "access": "read-write"}]})");
        Open();
        auto* const helper = dynamic_cast<qorm::IRevisionControlUIHelper*>(
            wekGetSystem()->GetService("RevisionControlUIHelper"));
        auto const find = [&](std::string const& uid) {
            return helper->FindObject(qorm::DbObjectId(uid.c_str()));
        };
        auto const object = find(Uid(4));
        qorm::IHelper::GetHelper(object.GetInstance())
            ->MoveToDataSource(object, find("AAAAAAAA-0000-0000-0000-000000000003").GetDataSource(),
                               true);
        QVERIFY(QFile::remove(m_Folder->GetPath("factory/odd.json")));
        m_Host->CheckFolder();
        QVERIFY(Item(4).IsNull());
    }
};

NODEBROWSER_TEST_MAIN(tst_Saving)
#include "tst_saving.moc"
