#include "model/listedobject.h"

#include "model/itemkinds.h"

namespace embeddedhost {

namespace {

std::string_view FindText(ItemObject const& object, char const* key)
{
    auto const found = object.find(key);
    bool const isText = found != object.end() && found->is_string();
    return isText ? std::string_view(found->get_ref<std::string const&>()) : std::string_view();
}

bool IsSet(ItemObject const& object, char const* key)
{
    auto const found = object.find(key);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

} // namespace

ListedObject ListObject(ItemObject const& object)
{
    ListedObject listed;
    listed.kind = FindItemKind(FindText(object, Keys::kKind));
    for (auto const& [key, text] : kTextMembers)
        listed.*text = FindText(object, key.data());
    for (auto const& [key, flag] : kFlagMembers)
        listed.*flag = IsSet(object, key.data());
    auto const tags = object.find(Keys::kTags);
    if (tags == object.end() || !tags->is_object())
        return listed;
    for (auto const& [category, text] : tags->get_ref<ItemObject::object_t const&>()) {
        if (text.is_string())
            listed.tags.emplace_back(category, text.get_ref<std::string const&>());
    }
    return listed;
}

} // namespace embeddedhost
