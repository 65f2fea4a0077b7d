#include "changerecorder.h"
#include "hosttest.h"

using namespace tarno::datamodel;

/// Files that other programs change while the library is open, with and without changes of ours.
class TestFollowing : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        m_Folder->Write(kGlowFile, Object(1, "compound", "Glow"));
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Ramp") + ", 7, "
                                      + Object(3, "compound", "Fade") + ']');
        m_Folder->Write("project/odd.json", Object(4, "solver", "Odd"));
    }

    void Open() override
    {
        HostTest::Open();
        m_Host->GetMessages().ClearLog();
    }

private:
    /// The JSON of files by path; no file where it is empty.
    typedef QMap<QString, QByteArray> Contents;

    QString const kGlowFile = QStringLiteral("project/glow.json");
    QString const kTwoFile = QStringLiteral("project/two.json");

    void WriteAll(Contents const& contents)
    {
        for (auto file = contents.begin(); file != contents.end(); ++file) {
            QFile::remove(m_Folder->GetPath(file.key()));
            if (!file.value().isEmpty())
                m_Folder->Write(file.key(), file.value());
        }
    }

    bool Decide(QString const& file, bool takesTheirs)
    {
        QString const path = m_Folder->GetPath(file);
        return takesTheirs ? m_Host->TakeFileFromDisk(path) : m_Host->OverwriteFileOnDisk(path);
    }

private Q_SLOTS:
    void conflictsAreKeptApart_data()
    {
        QTest::addColumn<bool>("takesTheirs");
        QTest::newRow("take theirs") << true;
        QTest::newRow("overwrite") << false;
    }

    /// Both sides changed the object: nothing is lost, and the user decides.
    void conflictsAreKeptApart()
    {
        QFETCH(bool, takesTheirs);
        m_User->Rename(Item(1), "Ours");
        QByteArray const theirs = Object(1, "compound", "Theirs");
        m_Folder->Write(kGlowFile, theirs);
        QVERIFY(!m_User->Save());
        QVERIFY2(Log().contains(kGlowFile), qPrintable(Log()));
        QCOMPARE(Content(kGlowFile), theirs);
        QCOMPARE(NameOf(1), QString("Ours"));
        QVERIFY(m_User->IsModified(Item(1)) && Decide(kGlowFile, takesTheirs));
        QCOMPARE(NameOf(1), QString(takesTheirs ? "Theirs" : "Ours"));
        if (takesTheirs) {
            QVERIFY(!m_User->IsModified(Item(1)));
            QCOMPARE(Stack().undoText(), QString("Take from disk glow.json"));
            Stack().undo();
            QCOMPARE(NameOf(1), QString("Ours"));
        }
        QVERIFY(m_User->Save());
        QVERIFY(Content(kGlowFile).contains("Ours"));

        // We are to remove a file that they change.
        QString const file = QStringLiteral("project/fresh.json");
        m_User->Create("Fresh");
        QVERIFY(m_User->Save());
        Stack().undo();
        m_Folder->Write(file, Content(file) + "\n\n");
        m_Host->CheckFolder();
        QCOMPARE(m_Host->FindConflicts(), QStringList(m_Folder->GetPath(file)));
        QVERIFY(Decide(file, takesTheirs) && m_User->Save());
        QCOMPARE(Content(file).isEmpty(), !takesTheirs);
        QVERIFY(!m_Host->IsModified());
        QVERIFY(!m_Host->OverwriteFileOnDisk(m_Folder->GetPath("project/nowhere.json")));
    }

    /// Without changes of ours the file is followed again.
    void takesWhatIsOnDiskOnceUndone()
    {
        m_User->Rename(Item(2), "Ours");
        m_User->Rename(Item(4), "Ours");
        m_Folder->Write("project/odd.json", "{}");
        m_Folder->Write(kTwoFile, '[' + Object(3, "compound", "Fade Out") + ']');
        m_Host->CheckFolder();
        QCOMPARE(NameOf(2), QString("Ours"));
        QVERIFY2(NameOf(3) == "Fade Out", "what only they have changed is followed at once");
        QVERIFY2(Log().contains("two.json") && !m_User->Save(), qPrintable(Log()));
        m_Folder->Write(kTwoFile, '[' + Object(2, "compound", "Theirs") + ']');
        m_Host->CheckFolder();
        Stack().setIndex(0);
        QTRY_COMPARE(NameOf(2), QString("Theirs"));
        QVERIFY(Item(3).IsNull() && Item(4).IsNull() && !m_Host->IsModified());
    }

    void takesWhatIsGone_data()
    {
        AddColumns<Contents, bool>("theirs", "isThere");
        QTest::newRow("the object") << Contents{{kTwoFile, "[7]"}} << false;
        QTest::newRow("the file") << Contents{{kTwoFile, ""}} << false;
        QTest::newRow("for another kind")
            << Contents{{kTwoFile, Object(2, "solver", "Theirs")}} << true;
        QTest::newRow("to another file")
            << Contents{{kTwoFile, ""}, {"project/moved.json", Object(2, "compound", "Theirs")}}
            << true;
    }

    /// What we changed is no longer on disk, or no longer there. Undone, it goes back to where it
    /// was.
    void takesWhatIsGone()
    {
        QFETCH(Contents, theirs);
        QFETCH(bool, isThere);
        m_User->Rename(Item(2), "Ours");
        m_User->Rename(Item(3), "Ours As Well");
        WriteAll(theirs);
        m_Host->CheckFolder();
        QVERIFY(!m_User->Save() && Decide(kTwoFile, true));
        QVERIFY2(!m_Host->IsModified() && Item(3).IsNull(), qPrintable(Log()));
        QCOMPARE(NameOf(2), QString(isThere ? "Theirs" : ""));

        Stack().undo();
        QCOMPARE(NameOf(2), QString("Ours"));
        Stack().redo();
        QCOMPARE(Item(2).IsNull(), !isThere);
        Stack().setIndex(0);
        Stack().setIndex(Stack().count());
        Stack().setIndex(2);
        QVERIFY(m_User->Save());
        bool const isArray = !theirs.value(kTwoFile).startsWith('{');
        QVERIFY2(Content(kTwoFile).contains("Ours As Well") == isArray, "in no other file");
        Open();
        QVERIFY2(Log().isEmpty(), qPrintable(Log()));
        QCOMPARE(NameOf(2), QString("Ours"));
        QCOMPARE(NameOf(3), QString("Ours As Well"));
    }

    /// As a pull does it: changed, renamed and removed files, and new ones.
    void followsOtherPrograms()
    {
        ChangeRecorder recorder(m_Host->GetLibrary());
        WriteAll(
            {{kGlowFile, ""},
             {"project/below/shine.json", Object(1, "compound", "Shine")},
             {"project/new.json", Object(9, "compound", "New")},
             {kTwoFile, Object(2, "compound", "Ramp", R"(, "tags": {"ApplicationTags": "x"})")}});
        QTRY_VERIFY(Item(9).IsValid());
        QTRY_VERIFY(!Item(3).IsValid());
        QVERIFY(recorder.Take().contains("added New"));
        QCOMPARE(NameOf(1), QString("Shine"));
        QCOMPARE(TagsOf(2), QString("x"));
        QVERIFY(QDir(m_Folder->GetPath("project/below")).removeRecursively());
        QTRY_VERIFY(!Item(1).IsValid());
        QVERIFY2(!m_Host->IsModified() && Log().isEmpty(), qPrintable(Log()));

        m_Folder->Write(kTwoFile, "half of");
        for (int look = 1; look < 8; ++look)
            m_Host->CheckFolder();
        QCOMPARE(Log().count("cannot be read"), 1);
    }

    /// Though no look at the folder has seen the file.
    void noticesWhatGoesSoonAfterASave()
    {
        ItemID const id = m_User->Create("Brand New");
        QVERIFY2(m_User->Save(), qPrintable(Log()));
        QVERIFY(QFile::remove(m_Folder->GetPath("project/brand-new.json")));
        QTRY_VERIFY(m_User->NameOf(id).empty());
    }

    /// A missing folder is not a folder without files. What it is when it is back counts again.
    void keepsItemsOfAFolderThatIsGone()
    {
        ChangeRecorder recorder(m_Host->GetLibrary());
        for (int round = 1; round <= 2; ++round) {
            QString const folder = m_Folder->GetPath() + (round == 1 ? "/project" : "");
            QString const away = folder + ".away";
            QVERIFY(QDir().rename(folder, away));
            // Whether or not the one around it is watched: in the first round without being told.
            for (int i = 1; round > 1 && i <= 2; ++i)
                m_Host->CheckFolder();
            QTRY_COMPARE(Log().count("the folder is gone"), round);
            QVERIFY(recorder.Take().isEmpty() && !Decide(kGlowFile, true));

            QVERIFY(WriteFile(m_Folder->GetPath(kTwoFile).replace(folder, away),
                              Object(10 + round, "compound", "New")));
            QVERIFY(QDir().rename(away, folder));
            QTRY_VERIFY(Item(10 + round).IsValid());
            QVERIFY(!Item(3).IsValid());
            recorder.Take();
        }
    }
};

NODEBROWSER_TEST(TestFollowing)
#include "tst_following.moc"
