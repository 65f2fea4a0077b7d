#ifndef EMBEDDEDHOST_SERVICEREGISTRY_H
#define EMBEDDEDHOST_SERVICEREGISTRY_H

#include "../embeddedhost_export.h"

#include <nodebrowser/hostapi/framework.h>

#include <map>
#include <string>

namespace embeddedhost {

/// The system object of the process: services by name. It owns none of them: a
/// service has to be removed before it is destroyed.
class EMBEDDEDHOST_EXPORT CServiceRegistry : public wek::fwk::ISystem
{
public:
    /// The one that wekGetSystem() gives; it is never destroyed.
    static CServiceRegistry& GetInstance();

    wek::IBase* GetService(char const* name) override;

    /// Registers the service under the name and returns the one registered before; null removes
    /// it.
    wek::IBase* SetService(std::string const& name, wek::IBase* service);
    /// Removes the service unless another one is registered in its place.
    void RemoveService(std::string const& name, wek::IBase const* service);

private:
    CServiceRegistry() = default;

    std::map<std::string, wek::IBase*, std::less<>> m_Services;
};

} // namespace embeddedhost

#endif
