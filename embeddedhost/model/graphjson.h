#ifndef EMBEDDEDHOST_GRAPHJSON_H
#define EMBEDDEDHOST_GRAPHJSON_H

#include "model/graphbody.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <string>

namespace embeddedhost {

/// Takes the key that is wrong, "nodes[3].position", and what is wrong with it.
typedef std::function<void(std::string const& key, std::string const& reason)> BodyFault;

/// The body that an object of a library file describes. What is not of the right form is left
/// out and reported.
GraphBody ReadGraphBody(nlohmann::ordered_json const& object, BodyFault const& fault);

} // namespace embeddedhost

#endif
