#include "model/listedobject.h"

#include "model/itemkinds.h"

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

std::string_view GetText(ordered_json const& object, char const* key)
{
    auto const found = object.find(key);
    bool const isText = found != object.end() && found->is_string();
    return isText ? std::string_view(found->get_ref<std::string const&>()) : std::string_view();
}

bool IsSet(ordered_json const& object, char const* key)
{
    auto const found = object.find(key);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

} // namespace

ListedObject ListObject(ordered_json const& object)
{
    ListedObject listed;
    listed.kind = FindItemKind(GetText(object, "kind"));
    listed.uid = GetText(object, "uid");
    listed.name = GetText(object, "name");
    listed.parent = GetText(object, "parent");
    listed.specializes = GetText(object, "specializes");
    listed.implements = GetText(object, "implements");
    listed.isSignature = IsSet(object, "signature");
    listed.isLoop = IsSet(object, "loop");
    listed.isLocked = IsSet(object, "readOnly");
    auto const tags = object.find("tags");
    if (tags == object.end() || !tags->is_object())
        return listed;
    for (auto const& [category, text] : tags->get_ref<ordered_json::object_t const&>()) {
        if (text.is_string())
            listed.tags.emplace_back(category, text.get_ref<std::string const&>());
    }
    return listed;
}

} // namespace embeddedhost
