#ifndef EMBEDDEDHOST_GRAPHWRITER_H
#define EMBEDDEDHOST_GRAPHWRITER_H

#include "model/graphbody.h"

#include <nlohmann/json.hpp>

namespace embeddedhost {

/// Puts the body into an object of a library file. Ports, nodes and connections that the object
/// has already keep the keys that a body does not know.
void WriteGraphBody(GraphBody const& body, nlohmann::ordered_json& object);

} // namespace embeddedhost

#endif
