#ifndef EMBEDDEDHOST_JSONCHILDREN_H
#define EMBEDDEDHOST_JSONCHILDREN_H

#include "storage/jsontext.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embeddedhost {

/// A member of an object or an entry of an array.
struct JsonChild
{
    /// Finds the child in an older text: a member's key; the uid, id or name of an array's entry,
    /// which it keeps if something else in it changes; otherwise the whole entry.
    std::string id;
    nlohmann::ordered_json const* value;
};

typedef std::vector<JsonChild> JsonChildren;

JsonChild MakeEntry(nlohmann::ordered_json const& entry);
/// The children of an object or array. They refer to it.
JsonChildren ListChildren(nlohmann::ordered_json const& container);

/// The children of an object or array in an older text, to be taken one by one. Refers to both.
class OldChildren
{
public:
    static constexpr std::size_t kNone = std::size_t(-1);

    /// `text` is the text of the container.
    OldChildren(nlohmann::ordered_json const& container, std::string_view text);

    JsonParts const& GetParts() const;
    /// The first part of this id that was not taken yet; kNone when there is none.
    std::size_t Take(std::string const& id);
    /// The value of a part that was taken.
    nlohmann::ordered_json const& GetValue(std::size_t part) const;

private:
    void IndexMembers(JsonChildren const& members);
    void IndexEntries(JsonChildren const& entries);

    JsonParts const m_Parts;
    std::vector<nlohmann::ordered_json const*> m_Values;
    std::vector<std::size_t> m_NextAlike;
    std::unordered_map<std::string, std::size_t> m_First;
};

} // namespace embeddedhost

#endif
