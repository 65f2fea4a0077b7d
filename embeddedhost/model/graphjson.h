#ifndef EMBEDDEDHOST_GRAPHJSON_H
#define EMBEDDEDHOST_GRAPHJSON_H

#include "../embeddedhost_export.h"
#include "graphbody.h"
#include "itemobject.h"

#include <functional>
#include <string>

namespace embeddedhost {

/// Called with the key of a fault, "nodes[3].position", and the reason.
typedef std::function<void(std::string const& key, std::string const& reason)> BodyFault;

/// The ports and graph of an item's object. Malformed entries are left out and reported.
EMBEDDEDHOST_EXPORT GraphBody ReadGraphBody(ItemObject const& object, BodyFault const& fault);

} // namespace embeddedhost

#endif
