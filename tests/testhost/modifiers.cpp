#include "testcontext.h"
#include "testtext.h"

#include <algorithm>
#include <strings.h>

namespace {

QString TextOf(wek::fwk::ICommandManager* manager)
{
    if (manager == &TestHost::Get().m_CommandManager)
        return "manager";
    return manager ? "other manager" : "null";
}

} // namespace

namespace tarno {
namespace datamodel {

void LowLevelItemLibraryAccessor::PrepareForSave() const
{
    TestHost::Get().Record("PrepareForSave", {TextOf(LibraryOf(*this))});
}

bool ItemLibraryModifierAccessor::SetItemTags(ItemID const& id, char const* category,
                                              char const* tags,
                                              wek::fwk::ICommandManager* commandManager)
{
    TestLibrary* const library = LibraryOf(*this);
    TestItem* const item = library ? library->Find(id) : nullptr;
    TestHost::Get().Record("SetItemTags",
                           {TextOf(item), Quoted(category), Quoted(tags), TextOf(commandManager)});
    if (!item || TestHost::Get().m_RefusesChanges)
        return false;
    item->tags[category] = tags;
    library->Tell([&](IItemLibraryNotification& listener, ItemLibraryAccessor& accessor) {
        listener.ItemTagsChanged(accessor, id, category);
    });
    return true;
}

void ItemLibraryModifierAccessor::CommitToDisk(bool& succeeded, std::list<std::string>* messages,
                                               bool onlyChecked, qorm::UID const& item)
{
    TestHost::Get().Record("CommitToDisk", {TextOf(LibraryOf(*this)),
                                            messages && messages->empty() ? "empty list" : "null",
                                            TextOf(onlyChecked), item.GetStr()});
    succeeded = LibraryOf(*this) && !TestHost::Get().m_RefusesChanges;
}

ItemID CompoundModifierAccessor::CreateAndSetFromNewCompound(
    ItemLibraryAccessor const& library, char const* name, bool isSignature,
    char const* signatureUid, char const* category, wek::fwk::ICommandManager* commandManager)
{
    TestHost::Get().Record("CreateAndSetFromNewCompound",
                           {TextOf(LibraryOf(library)), Quoted(name), TextOf(isSignature),
                            Quoted(signatureUid), Quoted(category), TextOf(commandManager)});
    if (TestHost::Get().m_RefusesChanges || !LibraryOf(library))
        return ItemID();
    TestItem& item = LibraryOf(library)->Add(TarnoType::gCompound, name);
    item.isAbstract = isSignature;
    SetFrom(LibraryOf(library)->GetAccessor(item));
    return item.id;
}

bool CompoundModifierAccessor::Initialize()
{
    TestHost::Get().Record("Initialize", {TextOf(ItemOf(*this))});
    return IsValid();
}

bool CompoundModifierAccessor::CanModifyCompound(bool askHost) const
{
    TestHost::Get().Query("CanModifyCompound", {TextOf(ItemOf(*this)), TextOf(askHost)});
    return ItemOf(*this) && ItemOf(*this)->canModify && askHost;
}

bool CompoundModifierAccessor::RenameCompound(char const* newName,
                                              wek::fwk::ICommandManager* commandManager)
{
    TestItem* const item = ItemOf(*this);
    TestHost::Get().Record("RenameCompound",
                           {TextOf(item), Quoted(newName), TextOf(commandManager)});
    if (!item || TestHost::Get().m_RefusesChanges)
        return false;
    item->name = newName;
    LibraryOf(*this)->Tell(
        [item](IItemLibraryNotification& listener, ItemLibraryAccessor& accessor) {
            listener.ItemNameChanged(accessor, item->id);
        });
    return true;
}

ItemID LoopCompoundModifierAccessor::CreateAndSetFromNewLoopCompound(
    ItemLibraryAccessor const& library, char const* name, char const* signatureUid,
    char const* category, wek::fwk::ICommandManager* commandManager)
{
    TestHost::Get().Record("CreateAndSetFromNewLoopCompound",
                           {TextOf(LibraryOf(library)), Quoted(name), Quoted(signatureUid),
                            Quoted(category), TextOf(commandManager)});
    if (TestHost::Get().m_RefusesChanges || !LibraryOf(library))
        return ItemID();
    TestItem& item = LibraryOf(library)->Add(TarnoType::gCompound, name);
    item.isLoop = true;
    SetFrom(LibraryOf(library)->GetAccessor(item));
    return item.id;
}

ItemTOCAccessor GetTOC(ItemLibraryAccessor const& library)
{
    TestHost::Get().Query("GetTOC", {TextOf(LibraryOf(library))});
    bool const exists = LibraryOf(library) && LibraryOf(library)->m_HasTOC;
    return exists ? ItemTOCAccessor(library.GetContext(), kTOCHandle) : ItemTOCAccessor();
}

bool IsNameInNodeLibraryHierarchy(ItemLibraryAccessor const& library, char const* name)
{
    TestHost::Get().Query("IsNameInNodeLibraryHierarchy", {Quoted(name)});
    TestLibrary const* const items = LibraryOf(library);
    if (!items)
        return false;
    auto const isSame = [name](std::string const& taken) {
        return strcasecmp(taken.c_str(), name) == 0;
    };
    auto const& inherited = items->m_InheritedNames;
    return std::any_of(inherited.begin(), inherited.end(), isSame)
           || std::any_of(items->m_Listed.begin(), items->m_Listed.end(),
                          [&](TestItem const* item) { return isSame(item->name); });
}

wek::fwk::ICommandManager* GetApplicationCommandManager()
{
    return TestHost::Get().m_ApplicationCommandManager;
}

namespace Helpers {

bool IsValidGraphItemType(char const* kind, ItemAccessor& item)
{
    TestHost::Get().Query("IsValidGraphItemType", {kind, TextOf(ItemOf(item))});
    return ItemOf(item) && ItemOf(item)->isValidGraphItem;
}

bool IsAbstractFunction(ItemAccessor& item)
{
    TestHost::Get().Query("IsAbstractFunction", {TextOf(ItemOf(item))});
    return ItemOf(item) && ItemOf(item)->isAbstract;
}

void SetGlobalTarnoCompoundTarget(CompoundAccessor compound, CompoundAccessor context)
{
    TestHost::Get().Record("SetGlobalTarnoCompoundTarget",
                           {TextOf(ItemOf(compound)), TextOf(ItemOf(context))});
}

} // namespace Helpers

} // namespace datamodel
} // namespace tarno
