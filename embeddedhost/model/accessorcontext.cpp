#include "model/accessorcontext.h"

#include "model/library.h"
#include "model/libraryitem.h"

#include <hostkit/interfaces.h>

namespace embeddedhost {

using tarno::datamodel::ItemHandle;
using tarno::datamodel::ItemIdentity;

ItemHandle GetItemHandle(ItemIdentity const& identity)
{
    return reinterpret_cast<ItemHandle>(&identity);
}

ItemIdentity const* GetIdentity(ItemHandle handle)
{
    return handle > kTocHandle ? reinterpret_cast<ItemIdentity const*>(handle) : nullptr;
}

} // namespace embeddedhost

namespace tarno {
namespace datamodel {

using namespace embeddedhost;

AccessorContext::AccessorContext(CLibrary& library)
    : m_Library(&library)
    , m_Notifier(*this)
{}

CLibrary* AccessorContext::GetLibrary() const
{
    return m_Library;
}

CLibraryItem* AccessorContext::FindItem(ItemHandle handle) const
{
    ItemIdentity const* const identity = GetIdentity(handle);
    return m_Library && identity ? identity->item : nullptr;
}

bool AccessorContext::Supports(eInterfaceID interfaceID, ItemHandle handle) const
{
    if (!m_Library || !handle)
        return false;
    if (interfaceID == kUnspecifiedInterface)
        return true;
    if (handle == kLibraryHandle)
        return hostkit::LibrarySupports(interfaceID);
    if (handle == kTocHandle)
        return hostkit::TocSupports(interfaceID);
    CLibraryItem const* const item = FindItem(handle);
    return item && hostkit::ItemSupports(interfaceID, item->GetIdentity().kind, item->IsLoop());
}

CLibraryNotifier& AccessorContext::GetNotifier()
{
    return m_Notifier;
}

void AccessorContext::Close()
{
    m_Library = nullptr;
}

CLibrary* FindLibrary(UnspecifiedAccessor const& accessor)
{
    return accessor.Revalidate() ? accessor.GetContext()->GetLibrary() : nullptr;
}

} // namespace datamodel
} // namespace tarno

hostkit::CSharedContext& hostkit::GetShared(tarno::datamodel::AccessorContext& context)
{
    return context;
}
