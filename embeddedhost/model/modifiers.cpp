#include "model/accessorcontext.h"
#include "model/library.h"
#include "model/libraryitem.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using embeddedhost::CLibraryItem;

namespace {

char const* const kReadingOnly = "The library is opened for reading only.";

void RefuseChange(UnspecifiedAccessor const& accessor)
{
    if (accessor.Revalidate()) {
        accessor.GetContext()->GetLibrary()->GetMessages().Post(
            eSeverity::kWarning, QString::fromLatin1(kReadingOnly));
    }
}

} // namespace

LowLevelItemLibraryAccessor::LowLevelItemLibraryAccessor()
    : UnspecifiedAccessor(kLowLevelItemLibraryInterface)
{
}

void LowLevelItemLibraryAccessor::PrepareForSave() const {}

ItemLibraryModifierAccessor::ItemLibraryModifierAccessor()
    : UnspecifiedAccessor(kItemLibraryModifierInterface)
{
}

bool ItemLibraryModifierAccessor::SetItemTags(ItemID const&, char const*, char const*,
                                              wek::fwk::ICommandManager*)
{
    RefuseChange(*this);
    return false;
}

void ItemLibraryModifierAccessor::CommitToDisk(bool& succeeded, std::list<std::string>* messages,
                                               bool, qorm::UID const&)
{
    RefuseChange(*this);
    succeeded = false;
    if (messages)
        messages->push_back(kReadingOnly);
}

CompoundModifierAccessor::CompoundModifierAccessor()
    : UnspecifiedAccessor(kCompoundModifierInterface)
{
}

ItemID CompoundModifierAccessor::CreateAndSetFromNewCompound(ItemLibraryAccessor const& library,
                                                             char const*, bool, char const*,
                                                             char const*,
                                                             wek::fwk::ICommandManager*)
{
    RefuseChange(library);
    SetFrom(UnspecifiedAccessor());
    return ItemID();
}

bool CompoundModifierAccessor::Initialize()
{
    return CanModifyCompound(true);
}

bool CompoundModifierAccessor::CanModifyCompound(bool) const
{
    CLibraryItem const* const item = GetContext() ? GetContext()->FindItem(GetHandle()) : nullptr;
    return item && !item->IsReadOnly();
}

bool CompoundModifierAccessor::RenameCompound(char const*, wek::fwk::ICommandManager*)
{
    RefuseChange(*this);
    return false;
}

LoopCompoundModifierAccessor::LoopCompoundModifierAccessor()
    : UnspecifiedAccessor(kLoopCompoundModifierInterface)
{
}

ItemID LoopCompoundModifierAccessor::CreateAndSetFromNewLoopCompound(
    ItemLibraryAccessor const& library, char const*, char const*, char const*,
    wek::fwk::ICommandManager*)
{
    RefuseChange(library);
    SetFrom(UnspecifiedAccessor());
    return ItemID();
}

} // namespace datamodel
} // namespace tarno
