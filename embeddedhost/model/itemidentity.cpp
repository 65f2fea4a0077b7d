#include "model/itemidentity.h"

#include "model/stablepool.h"

#include <string_view>
#include <unordered_map>

namespace embeddedhost {

using tarno::datamodel::ItemIdentity;

namespace {

std::string Serialize(char const* kind, std::string const& uid)
{
    return std::string(kind) + ':' + uid;
}

class IdentityTable
{
public:
    ItemIdentity& Get(char const* kind, std::string const& uid)
    {
        auto const found = m_BySerialized.find(Serialize(kind, uid));
        if (found != m_BySerialized.end())
            return *found->second;
        ItemIdentity& identity = m_Pool.Add(kind, uid);
        m_BySerialized.emplace(identity.serialized, &identity);
        return identity;
    }

private:
    StablePool<ItemIdentity> m_Pool;
    std::unordered_map<std::string_view, ItemIdentity*> m_BySerialized;
};

} // namespace

ItemIdentity& GetItemIdentity(char const* kind, std::string const& uid)
{
    // Never destroyed: identifiers may be used while the process ends.
    static IdentityTable& table = *new IdentityTable;
    return table.Get(kind, uid);
}

} // namespace embeddedhost

namespace tarno {
namespace datamodel {

ItemIdentity::ItemIdentity(char const* itemKind, std::string const& itemUid)
    : kind(itemKind)
    , serialized(embeddedhost::Serialize(itemKind, itemUid))
    , uid(serialized.c_str() + (serialized.size() - itemUid.size()))
{}

char const* ItemID::GetType() const
{
    return m_Identity ? m_Identity->kind : nullptr;
}

std::string ItemID::Serialize() const
{
    return m_Identity ? m_Identity->serialized : std::string();
}

char const* ItemIDUnlock::GetItemIDUID(ItemID const& id)
{
    return id.m_Identity ? id.m_Identity->uid : "";
}

} // namespace datamodel
} // namespace tarno
