#ifndef EMBEDDEDHOST_ITEMOBJECT_H
#define EMBEDDEDHOST_ITEMOBJECT_H

#include <nlohmann/json.hpp>

#include <string>

namespace embeddedhost {

/// An item's object as a value, with all of its keys: changes and saves keep those that the
/// program does not know. ListObject (listedobject.h) reads the known ones, ReadGraphBody
/// (graphjson.h) the lists of the graph.
typedef nlohmann::ordered_json ItemObject;

/// For objects that make items, which have both. UTF-8.
std::string const& GetUid(ItemObject const& object);
std::string const& GetName(ItemObject const& object);

/// Inserts the key at its place in the written order, or replaces its value.
void SetKey(ItemObject& object, char const* key, ItemObject value);

/// Applies the difference between `from` and `to` to `current`. Keys on which the two agree keep
/// their current value, so that a change can be undone although others have been made since.
ItemObject ApplyChange(ItemObject const& current, ItemObject const& from, ItemObject const& to);

} // namespace embeddedhost

#endif
