#include "testhost.h"

#include <strings.h>

using namespace tarno::datamodel;

namespace {

QString NameOf(wek::fwk::ICommandManager* manager)
{
    return manager == &TestHost::Get().m_CommandManager ? "manager" : "none or another";
}

/// Adds a compound with that mark, unless changes are refused, and binds the modifier to it.
template <class Modifier>
ItemID Create(Modifier& modifier, ItemLibraryAccessor const& library, char const* name,
              bool TestItem::*mark, bool isMarked)
{
    if (TestHost::Get().m_RefusesChanges || !LibraryOf(library))
        return ItemID();
    TestItem& item = LibraryOf(library)->Add(TarnoType::gCompound, name);
    item.*mark = isMarked;
    modifier.SetFrom(LibraryOf(library)->GetAccessor(item));
    return item.id;
}

} // namespace

namespace tarno {
namespace datamodel {

void LowLevelItemLibraryAccessor::PrepareForSave() const
{
    Record("PrepareForSave", {TextOf(LibraryOf(*this))});
}

bool ItemLibraryModifierAccessor::SetItemTags(ItemID const& id, char const* category,
                                              char const* tags,
                                              wek::fwk::ICommandManager* commandManager)
{
    TestItem* const item = ItemOf(*this, id);
    Record("SetItemTags", {TextOf(item), Quoted(category), Quoted(tags), NameOf(commandManager)});
    if (!item || TestHost::Get().m_RefusesChanges)
        return false;
    item->tags[category] = tags;
    LibraryOf(*this)->Tell(
        [&](auto& listener, auto& library) { listener.ItemTagsChanged(library, id, category); });
    return true;
}

void ItemLibraryModifierAccessor::CommitToDisk(bool& succeeded, std::list<std::string>* messages,
                                               bool onlyChecked, qorm::UID const& item)
{
    Record("CommitToDisk",
           {TextOf(LibraryOf(*this)), messages && messages->empty() ? "empty list" : "null",
            TextOf(onlyChecked), item.GetStr()});
    succeeded = LibraryOf(*this) && !TestHost::Get().m_RefusesChanges;
}

ItemID CompoundModifierAccessor::CreateAndSetFromNewCompound(
    ItemLibraryAccessor const& library, char const* name, bool isSignature,
    char const* signatureUid, char const* category, wek::fwk::ICommandManager* commandManager)
{
    Record("CreateAndSetFromNewCompound",
           {TextOf(LibraryOf(library)), Quoted(name), TextOf(isSignature), Quoted(signatureUid),
            Quoted(category), NameOf(commandManager)});
    return Create(*this, library, name, &TestItem::isAbstract, isSignature);
}

bool CompoundModifierAccessor::Initialize()
{
    Record("Initialize", {TextOf(ItemOf(*this))});
    return ItemOf(*this);
}

bool CompoundModifierAccessor::CanModifyCompound(bool askHost) const
{
    Query("CanModifyCompound", {TextOf(ItemOf(*this)), TextOf(askHost)});
    return ItemOf(*this) && ItemOf(*this)->canModify && askHost;
}

bool CompoundModifierAccessor::RenameCompound(char const* newName,
                                              wek::fwk::ICommandManager* commandManager)
{
    TestItem* const item = ItemOf(*this);
    Record("RenameCompound", {TextOf(item), Quoted(newName), NameOf(commandManager)});
    if (!item || TestHost::Get().m_RefusesChanges)
        return false;
    item->name = newName;
    LibraryOf(*this)->Tell(
        [item](auto& listener, auto& library) { listener.ItemNameChanged(library, item->id); });
    return true;
}

ItemID LoopCompoundModifierAccessor::CreateAndSetFromNewLoopCompound(
    ItemLibraryAccessor const& library, char const* name, char const* signatureUid,
    char const* category, wek::fwk::ICommandManager* commandManager)
{
    Record("CreateAndSetFromNewLoopCompound",
           {TextOf(LibraryOf(library)), Quoted(name), Quoted(signatureUid), Quoted(category),
            NameOf(commandManager)});
    return Create(*this, library, name, &TestItem::isLoop, true);
}

ItemTOCAccessor GetTOC(ItemLibraryAccessor const& library)
{
    Query("GetTOC", {TextOf(LibraryOf(library))});
    bool const exists = LibraryOf(library) && LibraryOf(library)->m_HasTOC;
    return exists ? ItemTOCAccessor(library.GetContext(), kTOCHandle) : ItemTOCAccessor();
}

bool IsNameInNodeLibraryHierarchy(ItemLibraryAccessor const& library, char const* name)
{
    Query("IsNameInNodeLibraryHierarchy", {Quoted(name)});
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
    return &TestHost::Get().m_CommandManager;
}

namespace Helpers {

bool IsValidGraphItemType(char const* kind, ItemAccessor& item)
{
    Query("IsValidGraphItemType", {kind, TextOf(ItemOf(item))});
    return ItemOf(item) && ItemOf(item)->isValidGraphItem;
}

bool IsAbstractFunction(ItemAccessor& item)
{
    Query("IsAbstractFunction", {TextOf(ItemOf(item))});
    return ItemOf(item) && ItemOf(item)->isAbstract;
}

void SetGlobalTarnoCompoundTarget(CompoundAccessor compound, CompoundAccessor context)
{
    Record("SetGlobalTarnoCompoundTarget", {TextOf(ItemOf(compound)), TextOf(ItemOf(context))});
}

} // namespace Helpers

} // namespace datamodel
} // namespace tarno
