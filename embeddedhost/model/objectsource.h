#ifndef EMBEDDEDHOST_OBJECTSOURCE_H
#define EMBEDDEDHOST_OBJECTSOURCE_H

#include "model/itemobject.h"

#include <cstdint>

namespace embeddedhost {

/// The position of an object in the text of its file, in bytes.
struct ObjectPlace
{
    std::uint32_t begin = 0;
    std::uint32_t size = 0;
};

/// The text of a file as it was read, from which single objects can be parsed later. It does not
/// depend on the file on disk any more.
class ObjectSource
{
public:
    virtual ~ObjectSource() = default;

    /// Raises if the text at the place is not an object.
    virtual ItemObject Read(ObjectPlace const& place) const = 0;
};

} // namespace embeddedhost

#endif
