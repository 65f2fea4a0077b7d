#ifndef NODEBROWSER_HOSTSERVICES_H
#define NODEBROWSER_HOSTSERVICES_H

#include "hostapi/framework.h"

namespace nodebrowser {

/// The host's service of that name and type, null when it is missing or of another type. Looked
/// up at each use: services come and go.
template <class Service>
Service* FindHostService(char const* name)
{
    return dynamic_cast<Service*>(wekGetSystem()->GetService(name));
}

} // namespace nodebrowser

#endif
