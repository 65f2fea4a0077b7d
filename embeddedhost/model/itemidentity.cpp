#include "model/itemidentity.h"

#include "model/itemkinds.h"

#include <functional>
#include <memory>
#include <string_view>
#include <unordered_map>

namespace embeddedhost {

using tarno::datamodel::ItemIdentity;

ItemIdentity& GetItemIdentity(char const* kind, std::string const& uid)
{
    // Never destroyed: identifiers may be used while the process ends.
    static auto& identities
        = *new std::unordered_map<std::string_view, std::unique_ptr<ItemIdentity>>;

    std::string serialized = std::string(kind) + ':' + uid;
    auto const found = identities.find(serialized);
    if (found != identities.end())
        return *found->second;

    std::unique_ptr<ItemIdentity> identity(
        new ItemIdentity{kind, std::move(serialized), nullptr, nullptr});
    identity->uid = identity->serialized.c_str() + (identity->serialized.size() - uid.size());
    std::string_view const key = identity->serialized;
    return *identities.emplace(key, std::move(identity)).first->second;
}

} // namespace embeddedhost

namespace tarno {
namespace datamodel {

ItemID::ItemID()
    : m_Identity(nullptr)
{
}

ItemID::ItemID(ItemIdentity const* identity)
    : m_Identity(identity)
{
}

bool ItemID::IsNull() const
{
    return !m_Identity;
}

bool ItemID::IsValid() const
{
    return m_Identity && embeddedhost::GetKindIndex(m_Identity->kind) != embeddedhost::kNoKind;
}

char const* ItemID::GetType() const
{
    return m_Identity ? m_Identity->kind : nullptr;
}

std::string ItemID::Serialize() const
{
    return m_Identity ? m_Identity->serialized : std::string();
}

bool ItemID::operator==(ItemID const& other) const
{
    return m_Identity == other.m_Identity;
}

bool ItemID::operator!=(ItemID const& other) const
{
    return m_Identity != other.m_Identity;
}

bool ItemID::operator<(ItemID const& other) const
{
    if (!m_Identity || !other.m_Identity)
        return !m_Identity && other.m_Identity;
    return std::less<ItemIdentity const*>()(m_Identity, other.m_Identity);
}

char const* ItemIDUnlock::GetItemIDUID(ItemID const& id)
{
    return id.m_Identity ? id.m_Identity->uid : "";
}

ItemIdentity const* ItemIDUnlock::GetIdentity(ItemID const& id)
{
    return id.m_Identity;
}

} // namespace datamodel
} // namespace tarno
