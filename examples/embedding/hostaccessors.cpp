// Identifiers and accessors: what they are bound to.

#include "parts.h"

#include <hostkit/interfaces.h>

namespace {

using namespace tarno::datamodel;

bool Supports(UnspecifiedAccessor const& accessor, eInterfaceID interfaceID)
{
    if (Part const* const part = PartOf(accessor))
        return hostkit::ItemSupports(interfaceID, part->kind, false);
    if (accessor.GetHandle() == kTOCHandle)
        return hostkit::TocSupports(interfaceID);
    return accessor.GetHandle() == kLibraryHandle && hostkit::LibrarySupports(interfaceID);
}

} // namespace

hostkit::CSharedContext& hostkit::GetShared(AccessorContext& context)
{
    return context;
}

namespace tarno {
namespace datamodel {

char const* ItemID::GetType() const
{
    return m_Identity ? m_Identity->kind : nullptr;
}
std::string ItemID::Serialize() const
{
    return m_Identity ? m_Identity->uid : std::string();
}
char const* ItemIDUnlock::GetItemIDUID(ItemID const& id)
{
    return id.m_Identity ? id.m_Identity->uid.c_str() : "";
}

void UnspecifiedAccessor::SetFrom(UnspecifiedAccessor const& other)
{
    *this = Supports(other, m_InterfaceID) ? other : UnspecifiedAccessor();
}
bool UnspecifiedAccessor::Revalidate() const
{
    return IsValid();
}
ItemID UnspecifiedAccessor::GetItemID() const
{
    return ItemID(PartOf(*this));
}

} // namespace datamodel
} // namespace tarno
