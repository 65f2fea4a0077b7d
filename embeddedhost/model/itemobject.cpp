#include "model/itemobject.h"

#include "model/itemkeys.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>

namespace embeddedhost {

namespace {

std::size_t GetRank(std::string const& key)
{
    return std::size_t(std::find(Keys::kWritten.begin(), Keys::kWritten.end(), key)
                       - Keys::kWritten.begin());
}

/// The values of an object by key: the object itself looks through all of its keys for each.
typedef std::unordered_map<std::string_view, ItemObject const*> ValuesByKey;

ValuesByKey MapKeys(ItemObject const& object)
{
    ValuesByKey values;
    for (auto const& [key, value] : object.get_ref<ItemObject::object_t const&>())
        values.emplace(key, &value);
    return values;
}

} // namespace

std::string const& GetUid(ItemObject const& object)
{
    return object[Keys::kUid].get_ref<std::string const&>();
}

std::string const& GetName(ItemObject const& object)
{
    return object[Keys::kName].get_ref<std::string const&>();
}

ItemObject ApplyChange(ItemObject const& current, ItemObject const& from, ItemObject const& to)
{
    if (current == from)
        return to;
    ValuesByKey const before = MapKeys(from);
    ValuesByKey const after = MapKeys(to);
    ItemObject changed = current;
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

void SetKey(ItemObject& object, char const* key, ItemObject value)
{
    auto& members = object.get_ref<ItemObject::object_t&>();
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
    ItemObject::object_t ordered;
    for (auto member = members.begin(); member != next; ++member)
        ordered.emplace_back(member->first, std::move(member->second));
    ordered.emplace_back(key, std::move(value));
    for (auto member = next; member != members.end(); ++member)
        ordered.emplace_back(member->first, std::move(member->second));
    members = std::move(ordered);
}

} // namespace embeddedhost
