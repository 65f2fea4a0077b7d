#include "model/accessorcontext.h"
#include "model/library.h"
#include "model/libraryedits.h"
#include "model/libraryitem.h"
#include "storage/commit.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using namespace embeddedhost;

namespace {

char const* OrEmpty(char const* text)
{
    return text ? text : "";
}

/// Binds the modifier to the new item, or unbinds it when there is none.
ItemID Create(UnspecifiedAccessor& modifier, ItemLibraryAccessor const& libraryAccessor,
              NewCompound const& compound, wek::fwk::ICommandManager* manager)
{
    modifier.SetFrom(UnspecifiedAccessor());
    CLibrary* const library = FindLibrary(libraryAccessor);
    CLibraryItem const* const item =
        library ? CreateCompound(*library, compound, manager) : nullptr;
    if (!item)
        return ItemID();
    modifier.SetFrom(
        ItemAccessor(libraryAccessor.GetContext(), GetItemHandle(item->GetIdentity())));
    return ItemID(&item->GetIdentity());
}

} // namespace

/// Objects are always in the form in which they are written.
void LowLevelItemLibraryAccessor::PrepareForSave() const {}

bool ItemLibraryModifierAccessor::SetItemTags(ItemID const& id, char const* category,
                                              char const* tags,
                                              wek::fwk::ICommandManager* commandManager)
{
    CLibrary* const library = FindLibrary(*this);
    CLibraryItem* const item =
        library ? library->FindItem(ItemIDUnlock::GetItemIDUID(id)) : nullptr;
    return item && category
           && embeddedhost::SetItemTags(*library, *item, category, OrEmpty(tags), commandManager);
}

void ItemLibraryModifierAccessor::CommitToDisk(bool& succeeded, std::list<std::string>* messages,
                                               bool /*onlyChecked*/, qorm::UID const& item)
{
    CLibrary* const library = FindLibrary(*this);
    bool const isWhole = item == qorm::UID_Null();
    succeeded = library && CommitLibrary(*library, isWhole ? nullptr : item.GetStr(), messages);
}

ItemID CompoundModifierAccessor::CreateAndSetFromNewCompound(
    ItemLibraryAccessor const& library, char const* name, bool isSignature,
    char const* signatureUid, char const* category, wek::fwk::ICommandManager* commandManager)
{
    NewCompound const compound = {OrEmpty(name), OrEmpty(category), isSignature, false,
                                  signatureUid};
    return Create(*this, library, compound, commandManager);
}

bool CompoundModifierAccessor::Initialize()
{
    return CanModifyCompound(true);
}

bool CompoundModifierAccessor::CanModifyCompound(bool /*askHost*/) const
{
    CLibraryItem const* const item = FindItem(*this);
    return item && !item->IsReadOnly();
}

bool CompoundModifierAccessor::RenameCompound(char const* newName,
                                              wek::fwk::ICommandManager* commandManager)
{
    CLibraryItem* const item = FindItem(*this);
    return item && RenameItem(*GetContext()->GetLibrary(), *item, OrEmpty(newName), commandManager);
}

ItemID LoopCompoundModifierAccessor::CreateAndSetFromNewLoopCompound(
    ItemLibraryAccessor const& library, char const* name, char const* signatureUid,
    char const* category, wek::fwk::ICommandManager* commandManager)
{
    NewCompound const compound = {OrEmpty(name), OrEmpty(category), false, true, signatureUid};
    return Create(*this, library, compound, commandManager);
}

} // namespace datamodel
} // namespace tarno
