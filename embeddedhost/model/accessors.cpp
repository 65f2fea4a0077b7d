// Binding of accessors, and ItemAccessor.

#include "model/accessorcontext.h"
#include "model/libraryitem.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

using embeddedhost::CLibraryItem;

void UnspecifiedAccessor::SetFrom(UnspecifiedAccessor const& other)
{
    bool const isSupported =
        other.m_Context && other.m_Context->Supports(m_InterfaceID, other.m_Handle);
    *this = isSupported ? other : UnspecifiedAccessor();
}

bool UnspecifiedAccessor::Revalidate() const
{
    return m_Context && m_Context->Exists(m_Handle);
}

ItemID UnspecifiedAccessor::GetItemID() const
{
    // A removed item still has its identifier.
    bool const isOpen = m_Context && m_Context->GetLibrary();
    return isOpen ? ItemID(embeddedhost::GetIdentity(m_Handle)) : ItemID();
}

CSimpleValue ItemAccessor::GetValue(char const* name) const
{
    CLibraryItem const* const item = FindItem(*this);
    char const* const value = item && name ? item->GetNamedValue(name) : nullptr;
    return value ? CSimpleValue(value) : CSimpleValue();
}

std::string ItemAccessor::GetName(bool, char const*) const
{
    CLibraryItem const* const item = FindItem(*this);
    return item ? std::string(item->GetNameView()) : std::string();
}

} // namespace datamodel
} // namespace tarno
