#include <framework.h>

namespace wek {

IBase::~IBase() = default;

namespace fwk {

ISystem::~ISystem() = default;
ICommand::~ICommand() = default;
ICommandManager::~ICommandManager() = default;
IQormDBProxy_Signal::~IQormDBProxy_Signal() = default;

} // namespace fwk
} // namespace wek
