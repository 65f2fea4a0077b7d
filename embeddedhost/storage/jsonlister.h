#ifndef EMBEDDEDHOST_JSONLISTER_H
#define EMBEDDEDHOST_JSONLISTER_H

#include "storage/objectformat.h"

namespace embeddedhost {

/// Leaves JSON in an unusual form to ParseJson, as well as faults.
std::unique_ptr<ObjectLister> MakeJsonLister();

} // namespace embeddedhost

#endif
