// A host whose library never changes: it refuses each change and sends no notifications. Menus
// offer no changes of compounds and of items for which ItemIsReadOnly is true.

#include <datamodel.h>

namespace tarno {
namespace datamodel {

void ItemTOCAccessor::AddNotification(IItemTOCNotification* /*notification*/,
                                      eInterfaceID /*interfaceID*/, ContextID /*contextID*/) const
{}

void ItemTOCAccessor::RemoveNotification(IItemTOCNotification* /*notification*/,
                                         eInterfaceID /*interfaceID*/,
                                         ContextID /*contextID*/) const
{}

void ItemLibraryAccessor::AddNotification(IItemLibraryNotification* /*notification*/,
                                          eInterfaceID /*interfaceID*/,
                                          ContextID /*contextID*/) const
{}

void ItemLibraryAccessor::RemoveNotification(IItemLibraryNotification* /*notification*/,
                                             eInterfaceID /*interfaceID*/,
                                             ContextID /*contextID*/) const
{}

bool ItemLibraryAccessor::ItemIsModified(ItemID const& /*id*/) const
{
    return false;
}

void LowLevelItemLibraryAccessor::PrepareForSave() const {}

bool ItemLibraryModifierAccessor::SetItemTags(ItemID const& /*id*/, char const* /*category*/,
                                              char const* /*tags*/,
                                              wek::fwk::ICommandManager* /*commandManager*/)
{
    return false;
}

void ItemLibraryModifierAccessor::CommitToDisk(bool& succeeded,
                                               std::list<std::string>* /*messages*/,
                                               bool /*onlyChecked*/, qorm::UID const& /*item*/)
{
    // There is never anything to write.
    succeeded = IsValid();
}

ItemID CompoundModifierAccessor::CreateAndSetFromNewCompound(
    ItemLibraryAccessor const& /*library*/, char const* /*name*/, bool /*isSignature*/,
    char const* /*signatureUid*/, char const* /*category*/,
    wek::fwk::ICommandManager* /*commandManager*/)
{
    return ItemID();
}

bool CompoundModifierAccessor::Initialize()
{
    return false;
}

bool CompoundModifierAccessor::CanModifyCompound(bool /*askHost*/) const
{
    return false;
}

bool CompoundModifierAccessor::RenameCompound(char const* /*newName*/,
                                              wek::fwk::ICommandManager* /*commandManager*/)
{
    return false;
}

ItemID LoopCompoundModifierAccessor::CreateAndSetFromNewLoopCompound(
    ItemLibraryAccessor const& /*library*/, char const* /*name*/, char const* /*signatureUid*/,
    char const* /*category*/, wek::fwk::ICommandManager* /*commandManager*/)
{
    return ItemID();
}

wek::fwk::ICommandManager* GetApplicationCommandManager()
{
    return nullptr;
}

} // namespace datamodel
} // namespace tarno
