#ifndef EMBEDDEDHOST_SERVICEREGISTRY_H
#define EMBEDDEDHOST_SERVICEREGISTRY_H

#include <framework.h>

#include <map>
#include <string>

/// The system object of the process: services by name. It owns none of them; whoever puts a
/// service in takes it out before the service dies.
class CServiceRegistry : public wek::fwk::ISystem
{
public:
    static CServiceRegistry& GetInstance();

    wek::IBase* GetService(char const* name) override;

    /// Puts the service in place of what the name stood for, which is returned; null removes.
    wek::IBase* SetService(std::string const& name, wek::IBase* service);
    /// Takes the service out unless something else has taken its place.
    void RemoveService(std::string const& name, wek::IBase const* service);

private:
    CServiceRegistry() = default;

    std::map<std::string, wek::IBase*, std::less<>> m_Services;
};

#endif
