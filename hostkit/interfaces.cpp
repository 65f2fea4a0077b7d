#include "interfaces.h"

#include "kindtable.h"

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
    Kind const* const known = FindKind(kind);
    bool const isCompound = known && known->isCompound;
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
        return known && known->isFunction;
    case kTypeDescriptorInterface:
        return known && known->isType;
    default:
        return false;
    }
}

} // namespace hostkit
