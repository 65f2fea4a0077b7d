#ifndef EMBEDDEDHOST_JSONFORMAT_H
#define EMBEDDEDHOST_JSONFORMAT_H

#include "storage/objectformat.h"

namespace embeddedhost {

/// Files of objects in JSON. The manifest of a library is JSON as well.
ObjectFormat const& GetJsonFormat();

} // namespace embeddedhost

#endif
