#include "libraryfolder.h"
#include "loggedtest.h"
#include "base/uidmap.h"

#include <QSet>
#include <QTest>

using namespace qorm;

namespace {

IRevisionControlUIHelper* GetHelper()
{
    return dynamic_cast<IRevisionControlUIHelper*>(
        wekGetSystem()->GetService("RevisionControlUIHelper"));
}

QormHandle<IDbObject> Find(std::string const& uid)
{
    return GetHelper()->FindObject(DbObjectId(uid.c_str()));
}

template <class T>
QormHandle<T> FindAs(std::string const& uid)
{
    QormHandle<T> handle;
    handle.AssignCast(Find(uid));
    return handle;
}

QByteArray ResourceQuery()
{
    return QByteArray("select object where IS_OF_TYPE_VERSION( {") + UID_Resource().GetStr()
           + " } )";
}

QStringList gPrinted;

void Print(QtMsgType, QMessageLogContext const&, QString const& text)
{
    gPrinted << text;
}

} // namespace

class TestObjectDatabase : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void WellFormedUids_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isUid");
        QByteArray const uid = "01234567-89AB-CDEF-abcd-ef0123456789";
        QTest::newRow("both cases") << uid << true;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("too short") << uid.left(35) << false;
        QTest::newRow("too long") << uid + '0' << false;
        QTest::newRow("no hexadecimal digit") << QByteArray(uid).replace('f', 'g') << false;
        QTest::newRow("hyphen elsewhere")
            << QByteArray("0123456-789AB-CDEF-ABCD-EF0123456789") << false;
        QTest::newRow("hyphen for a digit")
            << QByteArray("01234567-89AB-CDEF-ABCD-EF01234567-9") << false;
        QTest::newRow("braces") << '{' + uid + '}' << false;
        QTest::newRow("past ASCII") << QByteArray(uid).replace('0', '\xE9') << false;
    }

    void WellFormedUids()
    {
        QFETCH(QByteArray, text);
        QTEST(DbObjectId::IsUID(text.constData()), "isUid");
        QCOMPARE(DbObjectId(text.constData()).GetStr(), text.constData());
    }

    void IdentifiersCompareAsUids()
    {
        QVERIFY(!DbObjectId::IsUID(nullptr));
        QVERIFY(DbObjectId("ABCDEF00-0000-0000-0000-000000000000")
                == DbObjectId("abcdef00-0000-0000-0000-000000000000"));
        QVERIFY(!(DbObjectId("name") == DbObjectId("Name")));
        QVERIFY(DbObjectId::IsUID(UID_Null().GetStr()));
        QVERIFY(!(UID_Null() == UID_Resource()));
    }

    void SimilarUidsAreSpread_data()
    {
        QTest::addColumn<quint64>("high");
        QTest::addColumn<quint64>("low");
        QTest::newRow("equal halves") << quint64(1) << quint64(1);
        QTest::newRow("other halves") << ~quint64(0) << quint64(1);
        QTest::newRow("last digits") << quint64(0) << quint64(1);
        QTest::newRow("first digits") << quint64(1) << quint64(0);
        QTest::newRow("first digits of all") << (quint64(1) << 48) << quint64(0);
    }

    /// Places of a table are chosen by the last bits.
    void SimilarUidsAreSpread()
    {
        QFETCH(quint64, high);
        QFETCH(quint64, low);
        QSet<quint64> places;
        for (quint64 number = 0; number < 1000; ++number)
            places.insert(embeddedhost::HashUid({number * high, number * low}, 7) % 0x100000);
        QVERIFY2(places.size() > 980, qPrintable(QString::number(places.size())));
        QVERIFY(embeddedhost::HashUid({high, low}, 7) != embeddedhost::HashUid({high, low}, 8));
    }

    void ItemsWithAUidAreObjects()
    {
        QormHandle<IDbObject> const solver = Find(Uid(1));
        QVERIFY(solver.IsValid());
        QCOMPARE(solver.GetDbObjectId().GetStr(), Uid(1).c_str());
        QVERIFY(Find(QString::fromStdString(Uid(1)).toLower().toStdString()).IsValid());
        QVERIFY(!Find("any text").IsValid());
        QVERIFY(!Find(Uid(99)).IsValid());
        QCOMPARE(Find(Uid(1)).GetCacheIndex(), solver.GetCacheIndex());
        QVERIFY(solver->GetDataModelMgr() == solver.GetManager());
        QVERIFY(solver.GetManager()->GetInstance() == solver.GetInstance());
    }

    void ObjectsAreSeenAsWhatTheyAre()
    {
        QVERIFY(!FindAs<ITypeAsset>(Uid(1)).IsValid() && !FindAs<ITypeAsset>(Uid(1)).IsLoaded());
        QVERIFY(!FindAs<IValueAsset>(Uid(1)).IsValid());
        QVERIFY(!FindAs<ITypeAsset>(kProjectUid).IsValid());
        QVERIFY(!FindAs<IValueAsset>(kFactoryComponent).IsValid());

        QormHandle<ITypeAsset> const type = FindAs<ITypeAsset>(Uid(2));
        QVERIFY(type.IsValid() && type.IsLoaded());
        QVERIFY(!type->IsReadOnly());
        QVERIFY(FindAs<ITypeAsset>(Uid(3))->IsReadOnly());
        QVERIFY2(!FindAs<ITypeAsset>(Uid(4))->IsReadOnly(), "its data source is, its asset not");
        QormHandle<IDbObject> back;
        QVERIFY(back.AssignCast(type).IsValid());
        QVERIFY(!back.AssignCast(QormHandle<IValueAsset>()).IsValid());
    }

    void DataSources()
    {
        QormPtr<IDataSource> const project = Find(Uid(1)).GetDataSource();
        QormPtr<IDataSource> const factory = Find(Uid(4)).GetDataSource();
        QVERIFY(project->GetAccessMode() != IDataSource::kReadOnlyAccess);
        QCOMPARE(factory->GetAccessMode(), 1);
        QVERIFY(!(project == factory));
        QVERIFY(Find(Uid(2)).GetDataSource() == project);
        QVERIFY2(Find(kFactoryComponent).GetDataSource() == factory, "where the component lives");
        QVERIFY(!Find("34F315D3-58CF-4019-9BE3-381FCED0E983").IsValid());
    }

    void Resources()
    {
        Vector<CQueryResult> results;
        QVERIFY(Find(Uid(1)).GetManager()->RunQuery(ResourceQuery(), results));
        QCOMPARE(results.size(), std::size_t(2));
        QCOMPARE(results[0].GetObjectId().GetStr(), kProjectUid);
        QCOMPARE(results[1].GetObjectId().GetStr(), kFactoryUid);

        auto const project = FindAs<IValueAsset>(kProjectUid);
        QCOMPARE(project->GetName(), "Project");
        QCOMPARE(project->GetDbObjectId().GetStr(), kProjectUid);
        auto const source = GetDataSourceFromResource(project->GetAssetHandle());
        QVERIFY(source == Find(Uid(1)).GetDataSource());
        QVERIFY(IsSameUri(source, project));
        QVERIFY(!IsSameUri(source, FindAs<IValueAsset>(kFactoryUid)));
        QVERIFY(!IsSameUri(QormPtr<IDataSource>(), project));
        QCOMPARE(QString::fromStdString(GetResourceExpandedURI(Find(kProjectUid))),
                 m_Folder->GetPath("project"));
    }

    void Queries_data()
    {
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<int>("errorAt");
        QByteArray const good = ResourceQuery();
        QTest::newRow("as the panel writes it") << good << 0;
        QTest::newRow("keywords in other case, no blanks")
            << "SELECT Object WHERE is_of_type_version({" + QByteArray(UID_Resource().GetStr())
                   + "})"
            << 0;
        QTest::newRow("many blanks") << QByteArray(good).replace(" ", " \n\t ") << 0;
        QTest::newRow("empty") << QByteArray("") << 1;
        QTest::newRow("other verb") << QByteArray(good).replace("select", "delete") << 1;
        QTest::newRow("words run together") << QByteArray(good).replace("select ", "select") << 1;
        QTest::newRow("other function")
            << QByteArray(good).replace("IS_OF_TYPE_VERSION", "IS_OF_TYPE") << 21;
        QTest::newRow("no UID") << QByteArray("select object where IS_OF_TYPE_VERSION( {%1} )")
                                << 42;
        QTest::newRow("cut off") << good.left(41) << 42;
        QTest::newRow("more behind") << good + " or" << good.size() + 2;
    }

    void Queries()
    {
        QFETCH(QByteArray, query);
        QFETCH(int, errorAt);
        Vector<CQueryResult> results(1, CQueryResult(DbObjectId("before")));
        QCOMPARE(Find(Uid(1)).GetManager()->RunQuery(query.constData(), results), errorAt == 0);
        QCOMPARE(results.size(), std::size_t(errorAt == 0 ? 3 : 1));
        QString const place = QStringLiteral(" at character %1.").arg(errorAt);
        QCOMPARE(GetMessages(*m_Host).size(), errorAt == 0 ? 0 : 1);
        if (errorAt != 0)
            QVERIFY2(GetMessages(*m_Host)[0].endsWith(place), qPrintable(GetMessages(*m_Host)[0]));
    }

    void QueryForAnUnknownTypeFindsNothing()
    {
        Vector<CQueryResult> results;
        QByteArray const query = ResourceQuery().replace(UID_Resource().GetStr(), Uid(99).c_str());
        QVERIFY(Find(Uid(1)).GetManager()->RunQuery(query.constData(), results));
        QVERIFY(results.empty());
        QVERIFY(!Find(Uid(1)).GetManager()->RunQuery(nullptr, results));
    }

    void NothingIsFoundInAClosedLibrary_data()
    {
        QTest::addColumn<bool>("isHostDestroyed");
        QTest::newRow("closed") << false;
        QTest::newRow("host destroyed") << true;
    }

    void NothingIsFoundInAClosedLibrary()
    {
        QFETCH(bool, isHostDestroyed);
        QormHandle<IDbObject> const solver = Find(Uid(1));
        QormHandle<IValueAsset> const resource = FindAs<IValueAsset>(kProjectUid);
        QormPtr<IDataSource> const source = solver.GetDataSource();
        QormPtr<IDataModelMgr> const manager = solver.GetManager();
        QormPtr<IDbObject> const object(solver.operator->());
        QormPtr<IHelper> const helper = IHelper::GetHelper(solver.GetInstance());
        IRevisionControlUIHelper* const service = GetHelper();

        if (isHostDestroyed) {
            m_Host.reset();
            QVERIFY(!wekGetSystem()->GetService("RevisionControlUIHelper"));
        } else {
            m_Host->CloseLibrary();
            QVERIFY(!service->FindObject(DbObjectId(Uid(1).c_str())).IsValid());
        }

        QVERIFY(!solver.IsValid() && solver.GetDataSource().IsNull());
        QVERIFY(solver.GetManager().IsNull() && solver.GetInstance().IsNull());
        QCOMPARE(solver.GetCacheIndex(), -1);
        QVERIFY(GetDataSourceFromResource(resource).IsNull());
        QVERIFY(object->GetDataModelMgr().IsNull());
        QCOMPARE(source->GetAccessMode(), 0);
        Vector<CQueryResult> results;
        QVERIFY(!manager->RunQuery(ResourceQuery(), results) && results.empty());
        QVERIFY(!manager->FindObject(DbObjectId(Uid(1).c_str())).IsValid());
        helper->MoveToDataSource(solver, source, true);
        QVERIFY_EXCEPTION_THROWN(solver->GetDataModelMgr(), ExBase::NullPtr);
    }

    /// Panels keep the handles of components as long as the process runs, and mark by them what
    /// the factory ships.
    void ComponentsAreFoundInTheNextLibrary_data()
    {
        QTest::addColumn<bool>("isHostReplaced");
        QTest::newRow("same host") << false;
        QTest::newRow("another host") << true;
    }

    void ComponentsAreFoundInTheNextLibrary()
    {
        QFETCH(bool, isHostReplaced);
        QormHandle<IDbObject> const component =
            GetHelper()->FindObject(DbObjectId(kFactoryComponent));
        QormPtr<IDataSource> const before = component.GetDataSource();
        m_Host->CloseLibrary();
        QVERIFY(!component.IsValid() && component.GetDataSource().IsNull());

        LibraryFolder next;
        next.Write("factory/other.json", Object(9, "type", "Other"));
        if (isHostReplaced) {
            m_Host.reset();
            m_Host.reset(new CEmbeddedHost);
        }
        QVERIFY(m_Host->OpenLibrary(next.GetPath()));
        QVERIFY(component.IsValid());
        QVERIFY(!(component.GetDataSource() == before));
        QVERIFY(component.GetDataSource()
                == GetHelper()->FindObject(DbObjectId(Uid(9).c_str())).GetDataSource());
        QVERIFY(QormPtr<IDbObject>(component.operator->())->GetDataModelMgr().Get());
    }

    void FollowingNullIsPrintedAndRaised()
    {
        QormPtr<IDataSource> const null;
        QormHandle<ITypeAsset> const invalid;
        gPrinted.clear();
        auto* const previous = qInstallMessageHandler(Print);
        QString text;
        try {
            null->GetAccessMode();
        } catch (ExBase const& error) {
            text = QString::fromStdString(error.GetErrorString());
        }
        {
            DisableErrorReportingGuard const outer;
            {
                DisableErrorReportingGuard const inner;
            }
            try {
                invalid->IsReadOnly();
                text.clear();
            } catch (ExBase::NullPtr const&) {
            }
        }
        qInstallMessageHandler(previous);
        QVERIFY2(text.contains("GetPointeeNotNull") && text.contains(":102"), qPrintable(text));
        QCOMPARE(gPrinted, QStringList(text));
    }

private:
    void SetUp() override
    {
        m_Folder.reset(new LibraryFolder);
        m_Folder->Write("project/all.json",
                        '[' + Object(1, "solver", "Solver") + ',' + Object(2, "type", "Type") + ','
                            + Object(3, "type", "Locked type", R"(, "readOnly": true)")
                            + R"(, {"uid": "any text", "kind": "solver", "name": "Free"}])");
        m_Folder->Write("factory/one.json", Object(4, "type", "Factory type"));
        m_Host.reset(new CEmbeddedHost);
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
    }

    void TearDown() override
    {
        m_Host.reset();
        m_Folder.reset();
    }

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
};

NODEBROWSER_TEST_MAIN(TestObjectDatabase)
#include "tst_objectdatabase.moc"
