#ifndef EMBEDDEDHOST_OBJECTCHANGE_H
#define EMBEDDEDHOST_OBJECTCHANGE_H

#include <nlohmann/json.hpp>

namespace embeddedhost {

/// What becomes of `current` when the change from one object to the other is made to it. Keys
/// that the change does not touch keep what they have, so that a change can be undone although
/// others have been made since.
nlohmann::ordered_json ApplyChange(nlohmann::ordered_json const& current,
                                   nlohmann::ordered_json const& from,
                                   nlohmann::ordered_json const& to);

/// Puts the key where objects of library files have it, or replaces its value.
void SetKey(nlohmann::ordered_json& object, char const* key, nlohmann::ordered_json value);

} // namespace embeddedhost

#endif
