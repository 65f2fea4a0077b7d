#ifndef HOSTKIT_INTERFACES_H
#define HOSTKIT_INTERFACES_H

#include <nodebrowser/hostapi/datamodel.h>

namespace hostkit {

// Which interfaces an open library, its table of contents and an item of a kind support, for
// UnspecifiedAccessor::SetFrom.

bool LibrarySupports(tarno::datamodel::eInterfaceID interfaceID);
bool TocSupports(tarno::datamodel::eInterfaceID interfaceID);
/// `isLoop` is true for a loop compound.
bool ItemSupports(tarno::datamodel::eInterfaceID interfaceID, char const* kind, bool isLoop);

} // namespace hostkit

#endif
