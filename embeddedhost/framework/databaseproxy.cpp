#include "framework/databaseproxy.h"

namespace embeddedhost {

using tarno::datamodel::ItemLibraryAccessor;
using wek::fwk::IQormDBProxy_Signal;

ItemLibraryAccessor CDatabaseProxy::GetItemLibrary()
{
    return m_Library;
}

void CDatabaseProxy::AddListener(IQormDBProxy_Signal* listener)
{
    m_Listeners.Add(listener);
}

void CDatabaseProxy::RemoveListener(IQormDBProxy_Signal* listener)
{
    m_Listeners.Remove(listener);
}

void CDatabaseProxy::SetItemLibrary(ItemLibraryAccessor const& library)
{
    m_Library = library;
    m_Listeners.ForEach([](IQormDBProxy_Signal& listener) { listener.OnItemLibraryChange(); });
}

} // namespace embeddedhost
