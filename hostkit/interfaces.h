#ifndef HOSTKIT_INTERFACES_H
#define HOSTKIT_INTERFACES_H

/// @file
/// Which interfaces an open library, its table of contents and its items support.

#include <nodebrowser/hostapi/datamodel.h>

namespace hostkit {

/// @{

/// Whether an open library, or its table of contents, supports the interface, for
/// tarno::datamodel::UnspecifiedAccessor::SetFrom.
bool LibrarySupports(tarno::datamodel::eInterfaceID interfaceID);
bool TocSupports(tarno::datamodel::eInterfaceID interfaceID);
/// @}

/// Whether an item of the kind supports the interface, likewise. A `kind` that is null or not one
/// of the kind constants supports what all items do; `isLoop` is true for a loop compound.
bool ItemSupports(tarno::datamodel::eInterfaceID interfaceID, char const* kind, bool isLoop);

} // namespace hostkit

#endif
