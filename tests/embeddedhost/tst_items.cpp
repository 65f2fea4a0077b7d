#include "hosttest.h"

using namespace qorm;
using namespace tarno::datamodel;

namespace {

/// The text in Latin-1, with '?' for what does not fit.
std::string Latin1(char const* utf8)
{
    return QString::fromUtf8(utf8).toLatin1().toStdString();
}

template <class Accessor>
bool Supports(UnspecifiedAccessor const& accessor)
{
    Accessor narrowed;
    narrowed.SetFrom(accessor);
    return narrowed.IsValid();
}

template <class T>
QormHandle<T> FindAs(std::string const& uid)
{
    QormHandle<T> handle;
    handle.AssignCast(FindObject(uid));
    return handle;
}

} // namespace

/// Items as accessors and as database objects show them.
class TestItems : public HostTest
{
    Q_OBJECT

protected:
    void Fill() override
    {
        QByteArrayList const objects = {
            Object(1, "solver", "Solver"),
            Object(2, "polymorphicSolver", "Polymorphic"),
            Object(3, "compound", "Compound"),
            Object(4, "compound", "Loop", R"(, "loop": true)"),
            Object(5, "constant", "Constant"),
            Object(6, "type", "Type"),
            Object(7, "compound", "Nested",
                   R"(, "parent": "BBBBBBBB-0000-0000-0000-000000000003")"),
            Object(8, "solver", "Special",
                   R"(, "specializes": "BBBBBBBB-0000-0000-0000-000000000002")"),
            Object(9, "compound", "Signature", R"(, "signature": true)"),
            Object(10, "solver", "No signature", R"(, "signature": true)"),
            Object(11, "type", "Locked", R"(, "readOnly": true)"),
            Object(13, "solver", "Größe Ω 🙂",
                   R"(, "tags": {"ApplicationTags": "maß; 大", "Other": "second", "大": "third"})"),
            R"({"uid": "any text", "kind": "solver", "name": "Free"})",
        };
        m_Folder->Write("project/all.json", '[' + objects.join(',') + ']');
        m_Folder->Write("factory/one.json", Object(12, "type", "Factory type"));
    }

private:
    ItemAccessor GetItem(int number)
    {
        ItemAccessor item;
        item.SetFrom(m_Host->GetLibrary().GetModel(Item(number), nullptr));
        return item;
    }

private Q_SLOTS:
    void modelsSupportTheInterfacesOfTheirKind()
    {
        QVERIFY2(Log().isEmpty(), qPrintable(Log()));
        ItemLibraryAccessor const library = m_Host->GetLibrary();
        for (int number = 1; number <= 6; ++number) {
            UnspecifiedAccessor const model = library.GetModel(Item(number), nullptr);
            bool const isCompound = number == 3 || number == 4;
            QCOMPARE(Supports<CompoundModifierAccessor>(model), isCompound);
            QCOMPARE(Supports<FunctionAccessor>(model), number <= 4);
            QCOMPARE(Supports<LoopCompoundAccessor>(model), number == 4);
            QCOMPARE(Supports<TypeDescriptorAccessor>(model), number == 6);
            QVERIFY(Supports<ItemAccessor>(model) && !Supports<ItemLibraryAccessor>(model));
        }
        std::string error;
        QVERIFY(!library.GetModel(Item(99), &error).IsValid() && error == "No item was named.");
        QVERIFY(Supports<LowLevelItemLibraryAccessor>(library) && !Supports<ItemAccessor>(library));
        QVERIFY(GetTOC(library).GetItems(nullptr).IsDone());
        auto const items = GetTOC(library).GetItems(TarnoType::gCompound);
        auto assigned = items;
        assigned = items;
        assigned.Next();
        QVERIFY(items.GetCurrent().GetItemID() != assigned.GetCurrent().GetItemID());
        assigned.GetCurrent() = ItemAccessor();
        assigned.Next();
        QVERIFY2(assigned.GetCurrent().Revalidate(), "whatever the last item was bound to");
    }

    void itemsTellWhatListsDependOn()
    {
        ItemAccessor nested = GetItem(7);
        QCOMPARE(nested.GetValue("Parent").GetText(), Uid(3));
        QVERIFY(!nested.GetValue("parent").IsValid() && !nested.GetValue("Specializes").IsValid());
        QVERIFY(nested.GetValue("Specializes").GetText().empty());
        QVERIFY(GetItem(8).GetValue("Specializes").IsValid());
        ItemAccessor signature = GetItem(9);
        ItemAccessor solver = GetItem(10);
        QVERIFY(Helpers::IsAbstractFunction(signature) && !Helpers::IsAbstractFunction(nested));
        QVERIFY2(!Helpers::IsAbstractFunction(solver), "a solver is no signature");
        QVERIFY(Helpers::IsValidGraphItemType(TarnoType::gCompound, signature));
        QVERIFY(!Helpers::IsValidGraphItemType(TarnoType::gSolver, signature));
        for (int number : {6, 11, 12})
            QCOMPARE(m_Host->GetLibrary().ItemIsReadOnly(Item(number)), number != 6);
    }

    void textsAreLatin1OrUtf8()
    {
        ItemLibraryAccessor const library = m_Host->GetLibrary();
        QCOMPARE(library.GetItemName(Item(13), true, nullptr), Latin1("Größe Ω 🙂"));
        QCOMPARE(library.GetItemTags(Item(13), "ApplicationTags"), Latin1("maß; 大"));
        QCOMPARE(library.GetItemTags(Item(13), "Other"), std::string("second"));
        QCOMPARE(library.GetItemTags(Item(1), "ApplicationTags"), std::string());
        CEmbeddedHost::SetTextEncoding(CEmbeddedHost::eUtf8Texts);
        auto const goBack =
            qScopeGuard([] { CEmbeddedHost::SetTextEncoding(CEmbeddedHost::eLatin1Texts); });
        Open();
        QCOMPARE(m_User->NameOf(Item(13)), std::string("Größe Ω 🙂"));
        QVERIFY(m_User->Rename(Item(3), "Δ") && m_User->Save());
        QVERIFY(Content("project/all.json").contains("\"Δ\""));
    }

    void identifiersOutliveTheLibrary()
    {
        ItemID const solver = Item(1);
        QVERIFY(solver.IsValid() && solver.GetType() == TarnoType::gSolver);
        QVERIFY(solver.Serialize() != Item(3).Serialize());
        char const* const text = ItemIDUnlock::GetItemIDUID(m_Host->FindItem("any text"));
        QCOMPARE(text, "any text");
        QVERIFY(!DbObjectId::IsUID(text) && !(DbObjectId(text) == DbObjectId("any next")));
        char const* const uid = ItemIDUnlock::GetItemIDUID(solver);
        DbObjectId const object(uid);
        QVERIFY(DbObjectId::IsUID(uid) && object == DbObjectId(Uid(1).c_str()));
        QVERIFY(object == DbObjectId(QByteArray(uid).toLower()));
        for (std::size_t i = 0; i < Uid(1).size(); ++i) {
            std::string other = Uid(1);
            for (char const sign : {'/', ':', '@', 'G', '`', 'g', Uid(1)[i] == '-' ? '0' : '-'}) {
                other[i] = sign;
                QVERIFY2(!DbObjectId::IsUID(other.c_str()), other.c_str());
            }
            other[i] = 'f';
            QVERIFY2(!(object == DbObjectId(other.c_str())), other.c_str());
        }
        m_Host->CloseLibrary();
        QCOMPARE(uid, Uid(1).c_str());
        QCOMPARE(object.GetStr(), uid);
        QVERIFY(Item(1).IsNull());
    }

    void handlesOutliveTheLibrary_data()
    {
        QTest::addColumn<bool>("isOpenedAgain");
        QTest::newRow("opened again") << true;
        QTest::newRow("host destroyed") << false;
    }

    /// Except that panels keep the handles of components as long as the process runs, and mark by
    /// them what the factory ships: such a handle finds the component of the next library.
    void handlesOutliveTheLibrary()
    {
        QFETCH(bool, isOpenedAgain);
        ItemLibraryAccessor library = m_Host->GetLibrary();
        ContextID const context = library.GetContextID();
        QormHandle<IDbObject> const solver = FindObject(Uid(1));
        QormHandle<IValueAsset> const resource = FindAs<IValueAsset>(kProjectUid);
        QormPtr<IDataSource> const source = solver.GetDataSource();
        QormPtr<IDataModelMgr> const manager = solver.GetManager();
        QormPtr<IDbObject> const object(solver.operator->());
        QormPtr<IHelper> const helper = IHelper::GetHelper(solver.GetInstance());
        QormHandle<IDbObject> const component = FindObject(kFactoryComponent);
        QormPtr<IDataSource> const factory = component.GetDataSource();
        m_Host->CloseLibrary();
        QVERIFY(!FindObject(Uid(1)).IsValid());
        if (isOpenedAgain)
            QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        else
            Close();

        QVERIFY(!library.Revalidate());
        QVERIFY(!solver.IsValid() && solver.GetDataSource().IsNull());
        QVERIFY(solver.GetManager().IsNull() && solver.GetInstance().IsNull());
        QVERIFY(solver.GetCacheIndex() == -1 && GetDataSourceFromResource(resource).IsNull());
        QVERIFY(object->GetDataModelMgr().IsNull() && source->GetAccessMode() == 0);
        Vector<CQueryResult> results;
        QVERIFY(!manager->RunQuery(ResourceQuery(), results) && results.empty());
        QVERIFY(!manager->FindObject(DbObjectId(Uid(1).c_str())).IsValid());
        helper->MoveToDataSource(solver, source, true);
        for (int i = 0; i < 2; ++i)
            QTest::ignoreMessage(QtDebugMsg, "Null pointer in GetPointeeNotNull (qormptr.h:102)");
        QVERIFY_EXCEPTION_THROWN(solver->GetDataModelMgr(), ExBase::NullPtr);
        QVERIFY_EXCEPTION_THROWN(solver.GetManager()->GetInstance(), ExBase::NullPtr);

        QCOMPARE(component.IsValid(), isOpenedAgain);
        QCOMPARE(component.GetDataSource().IsNull(), !isOpenedAgain);
        Open();
        QVERIFY(component.IsValid() && !(component.GetDataSource() == factory));
        QVERIFY(component.GetDataSource() == FindObject(Uid(12)).GetDataSource());
        QVERIFY(QormPtr<IDbObject>(component.operator->())->GetDataModelMgr().Get());
        QVERIFY(context != 0 && m_Host->GetLibrary().GetContextID() != context);
    }

    void objectsAreSeenAsWhatTheyAre()
    {
        QormHandle<IDbObject> const solver = FindObject(Uid(1));
        QVERIFY(solver.IsValid());
        QCOMPARE(solver.GetDbObjectId().GetStr(), Uid(1).c_str());
        QVERIFY(FindObject(QString::fromStdString(Uid(1)).toLower().toStdString()).IsValid());
        QVERIFY(!FindObject("any text").IsValid() && !FindObject(Uid(99)).IsValid());
        QVERIFY(solver->GetDataModelMgr() == solver.GetManager());
        QVERIFY(solver.GetManager()->GetInstance() == solver.GetInstance());

        QVERIFY(!solver.IsLoaded() && !FindAs<ITypeAsset>(Uid(1)).IsLoaded());
        QVERIFY(!FindAs<IValueAsset>(Uid(1)).IsValid());
        QormHandle<ITypeAsset> const type = FindAs<ITypeAsset>(Uid(6));
        QVERIFY(type.IsValid() && type.IsLoaded());
        QVERIFY(!type->IsReadOnly() && FindAs<ITypeAsset>(Uid(11))->IsReadOnly());
        QVERIFY2(!FindAs<ITypeAsset>(Uid(12))->IsReadOnly(), "its data source is, its asset not");
    }

    void dataSourcesAndResources()
    {
        QormPtr<IDataSource> const project = FindObject(Uid(1)).GetDataSource();
        QormPtr<IDataSource> const factory = FindObject(Uid(12)).GetDataSource();
        QVERIFY(project->GetAccessMode() != IDataSource::kReadOnlyAccess);
        QCOMPARE(factory->GetAccessMode(), 1);
        QVERIFY(!(project == factory) && FindObject(Uid(2)).GetDataSource() == project);
        QVERIFY2(FindObject(kFactoryComponent).GetDataSource() == factory, "it lives there");
        QVERIFY(!FindObject("34F315D3-58CF-4019-9BE3-381FCED0E983").IsValid());

        Vector<CQueryResult> results;
        QVERIFY(FindObject(Uid(1)).GetManager()->RunQuery(ResourceQuery(), results));
        QCOMPARE(results.size(), std::size_t(2));
        QCOMPARE(results[0].GetObjectId().GetStr(), kProjectUid);
        QCOMPARE(results[1].GetObjectId().GetStr(), kFactoryUid);
        QVERIFY2(!FindObject(Uid(1)).GetManager()->RunQuery("select", results)
                     && results.size() == 2 && Log().contains(" at character 7."),
                 qPrintable(Log()));
        auto const resource = FindAs<IValueAsset>(kProjectUid);
        QCOMPARE(resource->GetName(), "Project");
        QVERIFY(GetDataSourceFromResource(resource->GetAssetHandle()) == project);
        QVERIFY(IsSameUri(project, resource));
        QVERIFY(!IsSameUri(project, FindAs<IValueAsset>(kFactoryUid)));
        QCOMPARE(QString::fromStdString(GetResourceExpandedURI(FindObject(kProjectUid))),
                 m_Folder->GetPath("project"));
    }
};

NODEBROWSER_TEST(TestItems)
#include "tst_items.moc"
