// A host without services: the panel shows no database objects and no states.

#include <framework.h>

namespace {

class CNoServices : public wek::fwk::ISystem
{
public:
    wek::IBase* GetService(char const* /*name*/) override
    {
        return nullptr;
    }
};

} // namespace

wek::fwk::ISystem* wekGetSystem()
{
    // Never destroyed: services may be looked up while the process exits.
    static CNoServices& system = *new CNoServices;
    return &system;
}
