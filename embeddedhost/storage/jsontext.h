#ifndef EMBEDDEDHOST_JSONTEXT_H
#define EMBEDDEDHOST_JSONTEXT_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace embeddedhost {

/// A member of an object or an entry of an array, as it is written.
struct JsonPart
{
    /// The blanks before it, and the comma that parts it from the one before.
    std::string_view separator;
    /// The key as it is written, in its quotes; empty in an array.
    std::string_view key;
    /// The colon and the blanks around it; empty in an array.
    std::string_view colon;
    std::string_view value;
};

/// An object or array, as it is written.
struct JsonParts
{
    std::vector<JsonPart> all;
    /// The blanks before the closing bracket.
    std::string_view end;
};

// All of them take text that is JSON, and walk it once.

/// The value without the blanks, or the byte-order mark, around it.
std::string_view TrimJson(std::string_view text);

/// Takes an object or array without blanks around it.
JsonParts SplitJson(std::string_view text);

/// The position of the first bracket that opens more than `levels` levels; the text's length for
/// none. The text after it need not be JSON.
std::size_t FindJsonDepth(std::string_view text, int levels);

} // namespace embeddedhost

#endif
