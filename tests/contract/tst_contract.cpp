#include "contractlibrary.h"
#include "loggedtest.h"

using namespace tarno::datamodel;

class TestContract : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    /// An accessor's interface stays with its class, however the accessor is copied.
    void plainCopiesTakeEverything()
    {
        ItemLibraryAccessor const library = m_Library.accessor;
        CompoundAccessor compound;
        compound.SetFrom(FindItem(TarnoType::gCompound, "Wave"));
        QVERIFY(compound.IsValid());
        UnspecifiedAccessor plain(compound);
        QVERIFY(plain.IsValid() && plain.GetItemID() == compound.GetItemID());
        QVERIFY(compound.GetAccessorInterfaceID() == 4 && plain.GetAccessorInterfaceID() == 0);
        for (UnspecifiedAccessor const& other :
             {UnspecifiedAccessor(library), UnspecifiedAccessor(GetTOC(library)),
              UnspecifiedAccessor(FindItem(LibType::gType, "Number"))}) {
            plain.SetFrom(other);
            QVERIFY(plain.IsValid() && plain.GetHandle() == other.GetHandle());
        }
        compound.SetFrom(plain);
        QVERIFY(!compound.IsValid());
    }

    /// Of Latin-1, in which letters past ASCII keep their case.
    void namesAreComparedWithoutCase()
    {
        for (char const* const name : {"wAVE", "NUMBER", "MOIR\xE9"})
            QVERIFY2(IsNameInNodeLibraryHierarchy(m_Library.accessor, name), name);
        for (char const* const name : {"Waves", "Moiré", "MOIR\xC9"})
            QVERIFY2(!IsNameInNodeLibraryHierarchy(m_Library.accessor, name), name);
    }

    void deadAccessors_data()
    {
        AddColumns<bool>("wasBound");
        AddRow("never bound", false);
        AddRow("library closed", true);
    }

    /// They answer empty and change nothing.
    void deadAccessors()
    {
        QFETCH(bool, wasBound);
        ItemLibraryAccessor library;
        ItemTOCAccessor toc;
        ItemAccessor item;
        ItemLibraryModifierAccessor modifier;
        CompoundModifierAccessor compound;
        LowLevelItemLibraryAccessor lowLevel;
        ItemAccessor const wave = FindItem(TarnoType::gCompound, "Wave");
        ItemID const id = wave.GetItemID();
        auto items = GetTOC(m_Library.accessor).GetItems(TarnoType::gCompound);
        QCOMPARE(library.GetContextID(), ContextID(0));
        if (wasBound) {
            library = m_Library.accessor;
            toc = GetTOC(library);
            item = wave;
            modifier.SetFrom(library);
            compound.SetFrom(wave);
            lowLevel.SetFrom(library);
            if (!m_Library.close)
                QSKIP("this host's library is always there");
            m_Library.close();
        }
        QVERIFY(!library.Revalidate() && !toc.Revalidate() && !item.Revalidate());
        QVERIFY(library.GetItemName(id, true, nullptr).empty());
        QVERIFY(library.GetItemTags(id, "ApplicationTags").empty());
        QVERIFY(!library.ItemIsReadOnly(id) && !library.ItemIsModified(id));
        QVERIFY(!library.GetModel(id, nullptr).IsValid() && !GetTOC(library).IsValid());
        QVERIFY(!IsNameInNodeLibraryHierarchy(library, "Wave"));
        QVERIFY(toc.GetItems(TarnoType::gCompound).IsDone());
        QVERIFY(item.GetItemID().IsNull());
        QVERIFY(item.GetName(true, nullptr).empty() && !item.GetValue("Parent").IsValid());
        QVERIFY(!Helpers::IsAbstractFunction(item));
        QVERIFY(!Helpers::IsValidGraphItemType(TarnoType::gCompound, item));
        for (; wasBound && !items.IsDone(); items.Next())
            QVERIFY(!items.GetCurrent().Revalidate());

        QVERIFY(!compound.CanModifyCompound(true) && !compound.Initialize());
        QVERIFY(!compound.RenameCompound("Other", nullptr));
        QVERIFY(compound.CreateAndSetFromNewCompound(library, "New", true, nullptr, "", nullptr)
                    .IsNull());
        LoopCompoundModifierAccessor loop;
        QVERIFY(loop.CreateAndSetFromNewLoopCompound(library, "New", "", "", nullptr).IsNull());
        QVERIFY(!loop.IsValid());
        QVERIFY(!modifier.SetItemTags(id, "ApplicationTags", "x", nullptr));
        bool isWritten = true;
        modifier.CommitToDisk(isWritten, nullptr, false, qorm::UID_Null());
        QVERIFY(!isWritten);
        lowLevel.PrepareForSave();
        Helpers::SetGlobalTarnoCompoundTarget(CompoundAccessor(), CompoundAccessor());
    }

    void nullIdentifiers()
    {
        ItemLibraryAccessor const library = m_Library.accessor;
        ItemID const id = FindItem(TarnoType::gCompound, "Wave").GetItemID();
        QVERIFY(ItemID().IsNull() && !ItemID().IsValid() && !ItemID().GetType());
        QCOMPARE(ItemID().Serialize(), std::string());
        QCOMPARE(ItemIDUnlock::GetItemIDUID(ItemID()), "");
        QVERIFY(ItemID() < id && !(id < ItemID()) && !(ItemID() < ItemID()));
        QVERIFY(!library.GetModel(ItemID(), nullptr).IsValid());
        QVERIFY(!library.ItemIsReadOnly(ItemID()) && !library.ItemIsModified(ItemID()));
        QVERIFY(library.GetItemName(ItemID(), true, nullptr).empty());
        QVERIFY(library.GetItemTags(ItemID(), "ApplicationTags").empty());
    }

    void invalidHandles()
    {
        qorm::QormHandle<qorm::IDbObject> const object;
        qorm::QormHandle<qorm::IValueAsset> resource;
        resource.AssignCast(object);
        QVERIFY(!object.IsValid() && !resource.IsValid());
        QCOMPARE(object.GetDbObjectId().GetStr(), "");
        QVERIFY(object.GetDataSource().IsNull() && object.GetManager().IsNull());
        QVERIFY(object.GetInstance().IsNull() && object.GetCacheIndex() == -1);
        QVERIFY(qorm::IHelper::GetHelper(object.GetInstance()).IsNull());
        QVERIFY(qorm::GetDataSourceFromResource(resource).IsNull());
        QVERIFY(qorm::GetResourceExpandedURI(object).empty());
        QVERIFY(!qorm::IsSameUri(object.GetDataSource(), resource));
        QVERIFY(!qorm::DbObjectId::IsUID(nullptr) && !qorm::DbObjectId::IsUID(""));
    }

private:
    /// Invalid when the library has no such item.
    ItemAccessor FindItem(char const* kind, std::string const& name) const
    {
        auto items = GetTOC(m_Library.accessor).GetItems(kind);
        while (!items.IsDone() && items.GetCurrent().GetName(true, nullptr) != name)
            items.Next();
        return items.IsDone() ? ItemAccessor() : items.GetCurrent();
    }

    void SetUp() override
    {
        m_Library = MakeContractLibrary();
    }

    void TearDown() override
    {
        m_Library = ContractLibrary();
    }

    ContractLibrary m_Library;
};

NODEBROWSER_TEST(TestContract)
#include "tst_contract.moc"
