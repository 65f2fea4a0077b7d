#include "libraryfolder.h"
#include "loggedtest.h"

#include <QTest>

#include <set>

using namespace tarno::datamodel;

namespace {

/// The text in Latin-1, with '?' for what does not fit.
std::string Latin1(char const* utf8)
{
    return QString::fromUtf8(utf8).toLatin1().toStdString();
}

template <class T>
bool Supports(UnspecifiedAccessor const& accessor)
{
    T narrowed;
    narrowed.SetFrom(accessor);
    return narrowed.IsValid();
}

/// The identifiers of the accessors that can be set from this one.
std::set<int> GetInterfaces(UnspecifiedAccessor const& accessor)
{
    std::set<int> interfaces;
    auto const insertIf = [&](bool isSupported, eInterfaceID interfaceID) {
        if (isSupported)
            interfaces.insert(interfaceID);
    };
    insertIf(Supports<CompoundAccessor>(accessor), kCompoundInterface);
    insertIf(Supports<CompoundModifierAccessor>(accessor), kCompoundModifierInterface);
    insertIf(Supports<FunctionAccessor>(accessor), kFunctionInterface);
    insertIf(Supports<TypeDescriptorAccessor>(accessor), kTypeDescriptorInterface);
    insertIf(Supports<LoopCompoundModifierAccessor>(accessor), kLoopCompoundModifierInterface);
    insertIf(Supports<ItemLibraryAccessor>(accessor), kItemLibraryInterface);
    insertIf(Supports<ItemLibraryModifierAccessor>(accessor), kItemLibraryModifierInterface);
    insertIf(Supports<LowLevelItemLibraryAccessor>(accessor), kLowLevelItemLibraryInterface);
    insertIf(Supports<ItemAccessor>(accessor), kItemInterface);
    insertIf(Supports<ItemTOCAccessor>(accessor), kItemTOCInterface);
    insertIf(Supports<LoopCompoundAccessor>(accessor), kLoopCompoundInterface);
    return interfaces;
}

ItemAccessor GetItem(CEmbeddedHost& host, int uid)
{
    ItemAccessor item;
    item.SetFrom(host.GetLibrary().GetModel(host.FindItem(Uid(uid)), nullptr));
    return item;
}

} // namespace

class TestAccessors : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void ModelsSupportTheInterfacesOfTheirKind_data()
    {
        QTest::addColumn<int>("uid");
        QTest::addColumn<QList<int>>("interfaces");
        QTest::newRow("solver") << 1 << QList<int>{7, 36};
        QTest::newRow("polymorphic solver") << 2 << QList<int>{7, 36};
        QTest::newRow("compound") << 3 << QList<int>{4, 5, 7, 36};
        QTest::newRow("loop compound") << 4 << QList<int>{4, 5, 7, 22, 36, 47};
        QTest::newRow("constant") << 5 << QList<int>{36};
        QTest::newRow("type") << 6 << QList<int>{15, 36};
        QTest::newRow("unknown item") << 99 << QList<int>{};
    }

    void ModelsSupportTheInterfacesOfTheirKind()
    {
        QFETCH(int, uid);
        QFETCH(QList<int>, interfaces);
        UnspecifiedAccessor const model =
            m_Host->GetLibrary().GetModel(m_Host->FindItem(Uid(uid)), nullptr);
        QCOMPARE(GetInterfaces(model), std::set<int>(interfaces.begin(), interfaces.end()));
    }

    void LibraryAndTableOfContents()
    {
        ItemLibraryAccessor const library = m_Host->GetLibrary();
        QCOMPARE(GetInterfaces(library), (std::set<int>{32, 33, 34}));
        QCOMPARE(GetInterfaces(GetTOC(library)), std::set<int>{38});
        QVERIFY(library.GetItemID().IsNull());
        QVERIFY(GetTOC(library).GetItems(nullptr).IsDone());

        // What has been valid is not any more once it is set from something else.
        CompoundAccessor compound;
        compound.SetFrom(GetItem(*m_Host, 3));
        QVERIFY(compound.IsValid());
        compound.SetFrom(library);
        QVERIFY(!compound.IsValid());
        QCOMPARE(compound.GetContextID(), ContextID(0));
    }

    void UnknownModelSaysWhy()
    {
        std::string error;
        m_Host->GetLibrary().GetModel(ItemID(), &error);
        QVERIFY(!error.empty());
        error.clear();
        m_Host->GetLibrary().GetModel(m_Host->FindItem(Uid(1)), &error);
        QVERIFY(error.empty());
    }

    void Values()
    {
        ItemAccessor nested = GetItem(*m_Host, 7);
        QVERIFY(nested.GetValue("Parent").IsValid());
        QCOMPARE(nested.GetValue("Parent").GetText(), Uid(3));
        QVERIFY(nested.GetValue("Specializes").GetText().empty());
        QVERIFY(!nested.GetValue("Specializes").IsValid());
        QVERIFY(!nested.GetValue("parent").IsValid());
        QVERIFY(GetItem(*m_Host, 8).GetValue("Specializes").IsValid());
        QVERIFY(!GetItem(*m_Host, 1).GetValue("Parent").IsValid());

        ItemAccessor signature = GetItem(*m_Host, 9);
        ItemAccessor solver = GetItem(*m_Host, 10);
        QVERIFY(Helpers::IsAbstractFunction(signature));
        QVERIFY(!Helpers::IsAbstractFunction(nested));
        QVERIFY2(!Helpers::IsAbstractFunction(solver), "a solver is no signature");
        QVERIFY(Helpers::IsValidGraphItemType(TarnoType::gCompound, signature));
        QVERIFY(!Helpers::IsValidGraphItemType(TarnoType::gSolver, signature));
    }

    void ReadOnly()
    {
        ItemLibraryAccessor const library = m_Host->GetLibrary();
        auto const canModify = [&](int uid) {
            CompoundModifierAccessor compound;
            compound.SetFrom(GetItem(*m_Host, uid));
            return compound.CanModifyCompound(true);
        };
        auto const isReadOnly = [&](int uid) {
            return library.ItemIsReadOnly(m_Host->FindItem(Uid(uid)));
        };
        QVERIFY(!isReadOnly(3) && canModify(3));
        QVERIFY2(isReadOnly(11) && !canModify(11), "a locked object in a writable data source");
        QVERIFY2(isReadOnly(12) && !canModify(12), "an object in a read-only data source");
    }

    void TextsAreLatin1()
    {
        ItemLibraryAccessor const library = m_Host->GetLibrary();
        ItemID const id = m_Host->FindItem(Uid(13));
        QCOMPARE(library.GetItemName(id, true, nullptr), Latin1("Größe Ω 🙂"));
        QCOMPARE(library.GetItemTags(id, "ApplicationTags"), Latin1("maß; 大"));
        QCOMPARE(library.GetItemTags(id, "Other"), std::string("second"));
        QCOMPARE(library.GetItemTags(id, "Größe"), std::string());
        QCOMPARE(library.GetItemTags(m_Host->FindItem(Uid(1)), "ApplicationTags"), std::string());
    }

    void Identifiers()
    {
        ItemID const solver = m_Host->FindItem(Uid(1));
        ItemID const compound = m_Host->FindItem(Uid(3));
        QVERIFY(solver.IsValid() && solver.GetType() == TarnoType::gSolver);
        QCOMPARE(ItemIDUnlock::GetItemIDUID(solver), Uid(1).c_str());
        QVERIFY(solver.Serialize() != compound.Serialize());
        QVERIFY((solver < compound) != (compound < solver));
        QCOMPARE(ItemIDUnlock::GetItemIDUID(m_Host->FindItem("any text")), "any text");
    }

    void IdentifiersOutliveTheLibrary()
    {
        ItemID const solver = m_Host->FindItem(Uid(1));
        char const* const uid = ItemIDUnlock::GetItemIDUID(solver);
        m_Host->CloseLibrary();
        QCOMPARE(uid, Uid(1).c_str());
        QVERIFY(m_Host->FindItem(Uid(1)).IsNull());

        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        QVERIFY2(m_Host->FindItem(Uid(1)) == solver, "the same item after reopening");
        m_Folder->Write("project/all.json", Object(1, "type", "Now a type"));
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        QVERIFY2(m_Host->FindItem(Uid(1)) != solver, "another kind is another item");
        QVERIFY(m_Host->GetLibrary().GetItemName(solver, true, nullptr).empty());
    }

    void ClosedLibraryAnswersEmpty_data()
    {
        QTest::addColumn<bool>("isHostDestroyed");
        QTest::addColumn<bool>("isReopened");
        QTest::newRow("closed") << false << false;
        QTest::newRow("closed and opened again") << false << true;
        QTest::newRow("host destroyed") << true << false;
    }

    void ClosedLibraryAnswersEmpty()
    {
        QFETCH(bool, isHostDestroyed);
        QFETCH(bool, isReopened);
        ItemLibraryAccessor const library = m_Host->GetLibrary();
        ItemTOCAccessor const toc = GetTOC(library);
        ItemAccessor item = GetItem(*m_Host, 3);
        ItemID const id = item.GetItemID();
        auto items = toc.GetItems(TarnoType::gCompound);

        if (isHostDestroyed)
            m_Host.reset();
        else
            m_Host->CloseLibrary();
        if (isReopened)
            QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));

        QVERIFY(!library.Revalidate() && !toc.Revalidate() && !item.Revalidate());
        QVERIFY(item.GetItemID().IsNull());
        QVERIFY(item.GetName(true, nullptr).empty() && !item.GetValue("Parent").IsValid());
        QVERIFY(library.GetItemName(id, true, nullptr).empty());
        QVERIFY(!library.GetModel(id, nullptr).IsValid() && !library.ItemIsReadOnly(id));
        QVERIFY(library.GetItemTags(id, "ApplicationTags").empty());
        QVERIFY(!IsNameInNodeLibraryHierarchy(library, "Loop"));
        QVERIFY(!Helpers::IsAbstractFunction(item) && !GetTOC(library).IsValid());
        QVERIFY(toc.GetItems(TarnoType::gCompound).IsDone());
        QVERIFY(GetInterfaces(item).empty());
        for (; !items.IsDone(); items.Next())
            QVERIFY(!items.GetCurrent().Revalidate());
    }

    void AssigningRebindsTheContext()
    {
        ItemLibraryAccessor accessor;
        accessor = m_Host->GetLibrary();
        ContextID const first = accessor.GetContextID();
        QVERIFY(first != 0);
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        QVERIFY(m_Host->GetLibrary().GetContextID() != first);
        accessor = m_Host->GetLibrary();
        QVERIFY(accessor.Revalidate());
        accessor = *&accessor;
        QVERIFY(accessor.Revalidate());
        accessor = ItemLibraryAccessor();
        QVERIFY(!accessor.IsValid());
    }

private:
    void SetUp() override
    {
        m_Folder.reset(new LibraryFolder);
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
            Object(11, "compound", "Locked", R"(, "readOnly": true)"),
            Object(13, "solver", "Größe Ω 🙂",
                   R"(, "tags": {"ApplicationTags": "maß; 大", "Other": "second"})"),
            R"({"uid": "any text", "kind": "solver", "name": "Free"})",
        };
        m_Folder->Write("project/all.json", '[' + objects.join(',') + ']');
        m_Folder->Write("factory/one.json", Object(12, "compound", "Factory"));
        m_Host.reset(new CEmbeddedHost);
        QVERIFY(m_Host->OpenLibrary(m_Folder->GetPath()));
        QCOMPARE(GetMessages(*m_Host), QStringList());
    }

    void TearDown() override
    {
        m_Host.reset();
        m_Folder.reset();
    }

    std::unique_ptr<LibraryFolder> m_Folder;
    std::unique_ptr<CEmbeddedHost> m_Host;
};

NODEBROWSER_TEST_MAIN(TestAccessors)
#include "tst_accessors.moc"
