#include "model/objectchange.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_map>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// The order of the keys in a written object.
constexpr std::array<char const*, 15> kKeyOrder = {
    "uid",    "kind",        "name",     "category", "tags",    "signature", "implements", "loop",
    "parent", "specializes", "readOnly", "inputs",   "outputs", "nodes",     "connections"};

std::size_t GetRank(std::string const& key)
{
    return std::size_t(std::find(kKeyOrder.begin(), kKeyOrder.end(), key) - kKeyOrder.begin());
}

/// The values of an object by key: the object itself looks through all of its keys for each.
typedef std::unordered_map<std::string_view, ordered_json const*> ValuesByKey;

ValuesByKey MapKeys(ordered_json const& object)
{
    ValuesByKey values;
    for (auto const& [key, value] : object.get_ref<ordered_json::object_t const&>())
        values.emplace(key, &value);
    return values;
}

} // namespace

ordered_json ApplyChange(ordered_json const& current, ordered_json const& from,
                         ordered_json const& to)
{
    if (current == from)
        return to;
    ValuesByKey const before = MapKeys(from);
    ValuesByKey const after = MapKeys(to);
    ordered_json changed = current;
    for (auto const& [key, value] : from.items()) {
        if (after.count(key) == 0)
            changed.erase(key);
    }
    for (auto const& [key, value] : to.items()) {
        auto const old = before.find(key);
        if (old == before.end() || *old->second != value)
            SetKey(changed, key.c_str(), value);
    }
    return changed;
}

void SetKey(ordered_json& object, char const* key, ordered_json value)
{
    auto& members = object.get_ref<ordered_json::object_t&>();
    auto const present = std::find_if(members.begin(), members.end(),
                                      [key](auto const& member) { return member.first == key; });
    if (present != members.end()) {
        present->second = std::move(value);
        return;
    }
    // Keys that are not known rank last, so the new one comes before them.
    std::size_t const rank = GetRank(key);
    auto const next = std::find_if(members.begin(), members.end(), [rank](auto const& member) {
        return GetRank(member.first) > rank;
    });
    ordered_json::object_t ordered;
    for (auto member = members.begin(); member != next; ++member)
        ordered.emplace_back(member->first, std::move(member->second));
    ordered.emplace_back(key, std::move(value));
    for (auto member = next; member != members.end(); ++member)
        ordered.emplace_back(member->first, std::move(member->second));
    members = std::move(ordered);
}

} // namespace embeddedhost
