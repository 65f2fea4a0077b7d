#include "model/accessorcontext.h"

#include "model/library.h"
#include "model/libraryitem.h"

#include <hostkit/interfaces.h>

namespace tarno {
namespace datamodel {

using namespace embeddedhost;

AccessorContext::AccessorContext(CLibrary& library)
    : m_Library(&library)
    , m_Notifier(*this)
{}

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
