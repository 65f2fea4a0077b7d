// Changes to the library: this host's parts are fixed, so each is refused. Nothing of it is
// offered to the user either, because all parts are read-only.

#include "parts.h"

namespace tarno {
namespace datamodel {

LowLevelItemLibraryAccessor::LowLevelItemLibraryAccessor()
    : UnspecifiedAccessor(kLowLevelItemLibraryInterface)
{}
void LowLevelItemLibraryAccessor::PrepareForSave() const {}

ItemLibraryModifierAccessor::ItemLibraryModifierAccessor()
    : UnspecifiedAccessor(kItemLibraryModifierInterface)
{}
bool ItemLibraryModifierAccessor::SetItemTags(ItemID const&, char const*, char const*,
                                              wek::fwk::ICommandManager*)
{
    return false;
}
void ItemLibraryModifierAccessor::CommitToDisk(bool& succeeded, std::list<std::string>*, bool,
                                               qorm::UID const&)
{
    // There is never anything to write.
    succeeded = IsValid();
}

CompoundModifierAccessor::CompoundModifierAccessor()
    : UnspecifiedAccessor(kCompoundModifierInterface)
{}
ItemID CompoundModifierAccessor::CreateAndSetFromNewCompound(ItemLibraryAccessor const&,
                                                             char const*, bool, char const*,
                                                             char const*,
                                                             wek::fwk::ICommandManager*)
{
    return ItemID();
}
bool CompoundModifierAccessor::Initialize()
{
    return false;
}
bool CompoundModifierAccessor::CanModifyCompound(bool) const
{
    return false;
}
bool CompoundModifierAccessor::RenameCompound(char const*, wek::fwk::ICommandManager*)
{
    return false;
}

LoopCompoundModifierAccessor::LoopCompoundModifierAccessor()
    : UnspecifiedAccessor(kLoopCompoundModifierInterface)
{}
ItemID LoopCompoundModifierAccessor::CreateAndSetFromNewLoopCompound(ItemLibraryAccessor const&,
                                                                     char const*, char const*,
                                                                     char const*,
                                                                     wek::fwk::ICommandManager*)
{
    return ItemID();
}

wek::fwk::ICommandManager* GetApplicationCommandManager()
{
    return nullptr;
}

} // namespace datamodel
} // namespace tarno
