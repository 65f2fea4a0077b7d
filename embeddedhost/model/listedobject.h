#ifndef EMBEDDEDHOST_LISTEDOBJECT_H
#define EMBEDDEDHOST_LISTEDOBJECT_H

#include <nlohmann/json.hpp>

#include <string_view>
#include <utility>
#include <vector>

namespace embeddedhost {

/// What is listed and searched of an object that makes an item, and what it refers to. Texts are
/// UTF-8 and belong to what the object was read from; what is absent or of the wrong type is empty.
struct ListedObject
{
    /// The kind constant.
    char const* kind = nullptr;
    std::string_view uid;
    std::string_view name;
    std::string_view parent;
    std::string_view specializes;
    std::string_view implements;
    /// Tag strings by category, in the order of the object.
    std::vector<std::pair<std::string_view, std::string_view>> tags;
    bool isSignature = false;
    bool isLoop = false;
    bool isLocked = false;
};

/// Refers to the texts of the object.
ListedObject ListObject(nlohmann::ordered_json const& object);

} // namespace embeddedhost

#endif
