#ifndef EMBEDDEDHOST_DATABASEPROXY_H
#define EMBEDDEDHOST_DATABASEPROXY_H

#include <datamodel.h>
#include <hostkit/listenerlist.h>

namespace embeddedhost {

/// The service "QormDBProxy": the library that is open.
class CDatabaseProxy : public wek::fwk::IQormDBProxy
{
public:
    tarno::datamodel::ItemLibraryAccessor GetItemLibrary() override;
    void AddListener(wek::fwk::IQormDBProxy_Signal* listener) override;
    void RemoveListener(wek::fwk::IQormDBProxy_Signal* listener) override;

    /// Shows another library, or with an invalid accessor none, and notifies the listeners.
    void SetItemLibrary(tarno::datamodel::ItemLibraryAccessor const& library);

private:
    tarno::datamodel::ItemLibraryAccessor m_Library;
    hostkit::ListenerList<wek::fwk::IQormDBProxy_Signal> m_Listeners;
};

} // namespace embeddedhost

#endif
