#ifndef EMBEDDEDHOST_GRAPHWRITER_H
#define EMBEDDEDHOST_GRAPHWRITER_H

#include "model/graphbody.h"

#include <nlohmann/json.hpp>

#include <QString>

namespace embeddedhost {

/// Why the body cannot be put into a file; empty when it can.
QString FindBodyFault(GraphBody const& body);

/// Puts the body, which has no fault, into an object of a library file. Ports, nodes and
/// connections that the object has already keep the keys that a body does not know.
void WriteGraphBody(GraphBody const& body, nlohmann::ordered_json& object);

} // namespace embeddedhost

#endif
