#ifndef HOSTKIT_INTERFACES_H
#define HOSTKIT_INTERFACES_H

#include <datamodel.h>

namespace hostkit {

// What can be seen through an interface, for UnspecifiedAccessor::SetFrom: something that is alive
// of the library, of its table of contents, or an item of the kind.

bool LibrarySupports(tarno::datamodel::eInterfaceID interfaceID);
bool TocSupports(tarno::datamodel::eInterfaceID interfaceID);
/// `isLoop` tells a loop compound from the others.
bool ItemSupports(tarno::datamodel::eInterfaceID interfaceID, char const* kind, bool isLoop);

} // namespace hostkit

#endif
