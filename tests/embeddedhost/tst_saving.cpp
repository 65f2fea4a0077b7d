#include "hosttest.h"
#include "storage/filedigest.h"

#include <limits>

using namespace tarno::datamodel;

/// What a save writes, and what it leaves alone.
class TestSaving : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow"));
        m_Folder->Write("project/two.json", '[' + Object(2, "compound", "Ramp") + ", 7, "
                                                + Object(3, "compound", "Fade") + ']');
        m_Folder->Write("project/odd.json", "  " + Object(4, "solver", "Odd") + "   \n\n");
    }

private:
    QString const kGlowFile = QStringLiteral("project/glühen.json");
    QString const kStaging = QStringLiteral("project/.nodebrowser/");

private Q_SLOTS:
    void keepsTheBytesOfWhatDidNotChange_data()
    {
        AddColumns<QByteArray, QByteArray>("before", "after");
        // "..." stands for the object's uid and kind.
        auto const row = [](char const* name, QByteArray before, QByteArray after) {
            QByteArray const start =
                Object(9, "compound", "").split(',').mid(0, 2).join(',').mid(1);
            AddRow(name, before.replace("...", start), after.replace("...", start));
        };
        QByteArray const tags = R"("tags": {"ApplicationTags":"light"})";
        row("numbers that no double holds, and quotes",
            "{..., \"\\\"\": \"\\\"\", "
            R"("a": 12345678901234567890123, "name": "Old", "b": [1e-400, 1.50]})",
            "{..., " + tags + ", \"\\\"\": \"\\\"\", "
                + R"("a": 12345678901234567890123, "name": "New", "b": [1e-400, 1.50]})");
        QByteArray const odd =
            "\xEF\xBB\xBF[ 7 ,{\"uid\":\"?\",\"n\":1,\"n\":1E5},\r\n\t{...,\n\t\t\"\\u006eame\" : "
            "\"Old\",\n\t\t\"tags\": {\"Other\": \"\\u0061\",  \"ApplicationTags\": \"dark\" }\n"
            "\t}\r\n ,\"\\/\"\t]";
        row("the layout of others, and other objects", odd,
            QByteArray(odd).replace("Old", "New").replace("dark", "light"));
        QByteArray const lines = Object(9, "compound", "Old", ", \"later\": 1")
                                     .replace(", ", ",\n  ")
                                     .replace("{", "{\n  ")
                                     .replace("}", "\n}\n");
        row("indented, without tags", lines,
            QByteArray(lines).replace("\"Old\",", "\"New\",\n  \"tags\": {\n"
                                                  "    \"ApplicationTags\": \"light\"\n  },"));
    }

    void keepsTheBytesOfWhatDidNotChange()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        m_Folder->Write("project/kept.json", before);
        auto contents = m_Folder->Read();
        contents[m_Folder->GetPath("project/kept.json")] = after;
        Open();
        m_User->Rename(Item(9), "New");
        m_User->Tag(Item(9), "light");
        QVERIFY(m_User->Save(Uid(99)) && m_User->IsModified(Item(9)));
        QVERIFY2(m_User->Save(Uid(9)), qPrintable(Log()));
        QCOMPARE(m_Folder->Read(), contents);
        QVERIFY(!m_User->IsModified(Item(9)) && !m_Host->IsModified());
    }

    void newItemsGetFilesAndLoseThem()
    {
        ItemID const id = m_User->Create("Über Ramp!");
        m_User->Create("Uber-Ramp");
        m_User->Create(QByteArray(300, 'n'));
        m_User->Create(QByteArray(300, 'n') + '2');
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QStringList const files = m_Folder->Read().keys();
        QCOMPARE(files.filter("/project/").size(), 7);
        Open();
        QVERIFY2(m_Host->FindItem(ItemIDUnlock::GetItemIDUID(id)) == id, qPrintable(Log()));

        // A link that leads nowhere takes a name, too.
        QVERIFY(QFile::link("nowhere", m_Folder->GetPath("project/short-lived.json")));
        m_User->Create("Short Lived");
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(Content("project/short-lived-2.json").contains("Short Lived"));
        Stack().undo();
        QVERIFY2(m_Host->IsModified(), "there is a file to remove");
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QCOMPARE(m_Folder->Read().keys(), files);
    }

    void linksStayInTheLibrary_data()
    {
        AddColumns<QString, bool>("target", "isSaved");
        AddRow("in the data source", "project/.real", true);
        AddRow("in the library", "shared.json", true);
        AddRow("in a read-only data source", "factory/.real", false);
        AddRow("outside", "", false);
    }

    /// The file became a link since it was read.
    void linksStayInTheLibrary()
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
        QCOMPARE(ReadFile(real) == content, !isSaved);
    }

    /// What a save left that was killed goes; what anybody else put there, or lost there, stays.
    void leftoversAreTidiedUp()
    {
        auto const staged = [&](int number) {
            QStringList const parts = {QString::number(number),
                                       embeddedhost::GetDigest("old").toHex(),
                                       embeddedhost::GetDigest("new").toHex(), "glow.json.staged"};
            return kStaging + parts.join('-');
        };
        QStringList const kept = {"project/o1.json.BackUp", kStaging + "mine.txt", staged(10),
                                  staged(std::numeric_limits<int>::max())};
        auto const before = m_Folder->Read();
        m_Folder->Write(kStaging + ".gitignore",
                        "# Made by a save of the node browser, which removes it.\n*\n");
        m_Folder->Write(staged(1), "old");
        m_Folder->Write(staged(2), "new");
        m_Folder->Write(kStaging + "4.new", "half");
        m_Folder->Write(kStaging + "lock", "");
        for (QString const& file : kept)
            m_Folder->Write(file, "theirs");
        Open();
        QCOMPARE(Log().count("holds what another program wrote"), 2);
        m_User->Rename(Item(1), "Soft Glow");
        QVERIFY2(m_User->Save(), "the numbers of its files go on");
        QCOMPARE(m_Folder->Read().size(), before.size() + kept.size() + 1);
        for (QString const& file : kept)
            QCOMPARE(Content(file), QByteArray("theirs"));
    }

    /// A user's own folder of that name is not ours to use.
    void ownFoldersAreLeftAlone()
    {
        m_User->Rename(Item(1), "Soft Glow");
        // An empty .gitignore is not ours, either.
        for (char const* name : {"mine.txt", ".gitignore", "3.new"}) {
            m_Folder->Write(kStaging + name, "");
            auto const before = m_Folder->Read();
            QVERIFY(!m_User->Save());
            QVERIFY2(Log().contains("rename it or remove it"), qPrintable(Log()));
            QCOMPARE(m_Folder->Read(), before);
            m_Host->GetMessages().ClearLog();
        }
    }
};

NODEBROWSER_TEST(TestSaving)
#include "tst_saving.moc"
