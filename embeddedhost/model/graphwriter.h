#ifndef EMBEDDEDHOST_GRAPHWRITER_H
#define EMBEDDEDHOST_GRAPHWRITER_H

#include "../embeddedhost_export.h"
#include "graphbody.h"
#include "itemobject.h"

#include <QString>

namespace embeddedhost {

/// Why the body cannot be written; empty when it can.
QString FindBodyFault(GraphBody const& body);

/// Writes the body, which has no fault, into an item's object. Ports, nodes and connections that
/// the object has already keep their unknown keys.
EMBEDDEDHOST_EXPORT void WriteGraphBody(GraphBody const& body, ItemObject& object);

} // namespace embeddedhost

#endif
