#ifndef EMBEDDEDHOST_OBJECTSOURCE_H
#define EMBEDDEDHOST_OBJECTSOURCE_H

#include <nlohmann/json.hpp>

#include <cstdint>

namespace embeddedhost {

/// Where an object stands in the text that it was read from, in bytes.
struct ObjectPlace
{
    std::uint32_t begin = 0;
    std::uint32_t size = 0;
};

/// Keeps the objects of a file as they were read, and makes trees of those that are needed. What
/// happens to the file on disk meanwhile does not matter to it.
class ObjectSource
{
public:
    virtual ~ObjectSource() = default;

    /// Raises when there is no object at the place.
    virtual nlohmann::ordered_json Read(ObjectPlace const& place) const = 0;
};

} // namespace embeddedhost

#endif
