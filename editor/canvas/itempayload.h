#ifndef EDITOR_CANVAS_ITEMPAYLOAD_H
#define EDITOR_CANVAS_ITEMPAYLOAD_H

#include <string>

class QByteArray;
class QMimeData;

/// The format in which the panel drags items.
extern char const* const kItemMimeType;

/// The identifier of the item, as ItemID::Serialize() gives it, that a drag carries. Empty if it
/// carries no such text, or more than one.
std::string ReadItemPayload(QMimeData const* data);

/// The uid within a serialised identifier, "kind:uid"; empty for something else.
std::string GetPayloadUid(std::string const& serialized);

#endif
