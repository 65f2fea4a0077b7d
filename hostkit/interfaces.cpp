#include "interfaces.h"

namespace hostkit {

using namespace tarno::datamodel;

bool LibrarySupports(eInterfaceID interfaceID)
{
    return interfaceID == kUnspecifiedInterface || interfaceID == kItemLibraryInterface
           || interfaceID == kItemLibraryModifierInterface
           || interfaceID == kLowLevelItemLibraryInterface;
}

bool TocSupports(eInterfaceID interfaceID)
{
    return interfaceID == kUnspecifiedInterface || interfaceID == kItemTOCInterface;
}

bool ItemSupports(eInterfaceID interfaceID, char const* kind, bool isLoop)
{
    bool const isCompound = kind == TarnoType::gCompound;
    switch (interfaceID) {
    case kUnspecifiedInterface:
    case kItemInterface:
        return true;
    case kCompoundInterface:
    case kCompoundModifierInterface:
        return isCompound;
    case kLoopCompoundInterface:
    case kLoopCompoundModifierInterface:
        return isCompound && isLoop;
    case kFunctionInterface:
        return isCompound || kind == TarnoType::gSolver || kind == TarnoType::gPolymorphicSolver;
    case kTypeDescriptorInterface:
        return kind == LibType::gType;
    default:
        return false;
    }
}

} // namespace hostkit
