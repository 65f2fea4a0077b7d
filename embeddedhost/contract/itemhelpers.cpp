#include "embeddedhost.h"
#include "model/accessorcontext.h"
#include "model/library.h"
#include "model/libraryitem.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using embeddedhost::CLibraryItem;

bool IsNameInNodeLibraryHierarchy(ItemLibraryAccessor const& library, char const* name)
{
    return library.Revalidate() && name && library.GetContext()->GetLibrary()->HasName(name);
}

wek::fwk::ICommandManager* GetApplicationCommandManager()
{
    CEmbeddedHost* const host = CEmbeddedHost::GetInstance();
    return host ? &host->GetCommandManager() : nullptr;
}

namespace Helpers {

bool IsValidGraphItemType(char const* kind, ItemAccessor& item)
{
    CLibraryItem const* const found = kind ? FindItem(item) : nullptr;
    return found && found->GetIdentity().kind == kind;
}

bool IsAbstractFunction(ItemAccessor& item)
{
    CLibraryItem const* const found = FindItem(item);
    return found && found->GetIdentity().kind == TarnoType::gCompound && found->IsSignature();
}

void SetGlobalTarnoCompoundTarget(CompoundAccessor compound, CompoundAccessor)
{
    if (CEmbeddedHost* const host = CEmbeddedHost::GetInstance())
        host->SetCompoundTarget(compound);
}

} // namespace Helpers

} // namespace datamodel
} // namespace tarno
