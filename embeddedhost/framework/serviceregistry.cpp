#include "framework/serviceregistry.h"

namespace embeddedhost {

CServiceRegistry& CServiceRegistry::GetInstance()
{
    // Never destroyed: services may be looked up and removed while the process exits.
    static CServiceRegistry& registry = *new CServiceRegistry;
    return registry;
}

wek::IBase* CServiceRegistry::GetService(char const* name)
{
    if (!name)
        return nullptr;
    auto const found = m_Services.find(name);
    return found == m_Services.end() ? nullptr : found->second;
}

wek::IBase* CServiceRegistry::SetService(std::string const& name, wek::IBase* service)
{
    wek::IBase* const previous = GetService(name.c_str());
    if (service)
        m_Services[name] = service;
    else
        m_Services.erase(name);
    return previous;
}

void CServiceRegistry::RemoveService(std::string const& name, wek::IBase const* service)
{
    if (GetService(name.c_str()) == service)
        m_Services.erase(name);
}

} // namespace embeddedhost

wek::fwk::ISystem* wekGetSystem()
{
    return &embeddedhost::CServiceRegistry::GetInstance();
}
