#include "hosttest.h"

/// Items that are deleted, and brought back.
class TestItemDeletion : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        m_Folder->Write("project/alone.json", Object(1, "compound", "Alone"));
        QByteArray const several = Object(2, "compound", "First") + ",\n"
                                   + Object(3, "compound", "Second", R"(, "nodes": [
            {"id": "a", "item": "BBBBBBBB-0000-0000-0000-000000000001", "position": [0, 0]},
            {"id": "b", "item": "BBBBBBBB-0000-0000-0000-000000000003", "position": [0, 0]}])")
                                   + ",\n" + Object(4, "compound", "Third");
        m_Folder->Write("project/several.json", "[" + several + "]");
        QByteArrayList fixed;
        for (char const* const key : {"parent", "specializes", "implements"})
            fixed << Object(5 + fixed.size(), "compound", "Fixed",
                            R"(, ")" + QByteArray(key)
                                + R"(": "BBBBBBBB-0000-0000-0000-000000000001")");
        m_Folder->Write("factory/fixed.json", '[' + fixed.join(',') + ']');
    }

private Q_SLOTS:
    void comesBackAsItWas_data()
    {
        AddColumns<int, bool, bool>("number", "isRenamed", "isSaved");
        for (int const number : {1, 2, 3, 4})
            for (bool const isRenamed : {false, true})
                for (bool const isSaved : {false, true})
                    QTest::addRow("%d %d %d", number, isRenamed, isSaved)
                        << number << isRenamed << isSaved;
    }

    /// With an unsaved change as well, and whether it is saved that the item is gone or not.
    void comesBackAsItWas()
    {
        QFETCH(int, number);
        QFETCH(bool, isRenamed);
        QFETCH(bool, isSaved);
        // Once, so that the object is as the program writes it.
        QVERIFY(m_Host->DeleteItem(Item(number)) && m_User->Save());
        Stack().undo();
        QVERIFY(m_User->Save());
        if (isRenamed)
            m_User->Rename(Item(number), "Another");
        auto const before = m_Folder->Read();
        std::string const name = m_User->NameOf(Item(number));
        bool const wasModified = m_Host->IsModified();
        QVERIFY(m_Host->DeleteItem(Item(number)));
        QVERIFY(Item(number).IsNull() && m_Host->IsModified());
        if (isSaved) {
            QVERIFY(m_User->Save());
            QCOMPARE(QFile::exists(m_Folder->GetPath("project/alone.json")), number != 1);
            QVERIFY(m_Folder->Read() != before);
        }
        Stack().undo();
        QVERIFY(m_User->NameOf(Item(number)) == name);
        QCOMPARE(m_Host->IsModified(), isSaved || wasModified);
        if (isRenamed)
            Stack().undo();
        QVERIFY(m_User->Save());
        QCOMPARE(m_Folder->Read(), before);
    }

    void tellsWhereItIsUsed()
    {
        QVERIFY(m_Host->FindUsers(Item(1))
                == (std::vector<ItemID>{Item(3), Item(5), Item(6), Item(7)}));
        QVERIFY(m_Host->FindUsers(Item(3)).empty());
        QVERIFY(!m_Host->DeleteItem(Item(5)) && !m_Host->DeleteItem(ItemID()));
        QVERIFY(Log().contains("\"Fixed\""));
    }
};

NODEBROWSER_TEST(TestItemDeletion)

#include "tst_itemdeletion.moc"
