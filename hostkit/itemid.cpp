// Identifiers compare by the address of their identity, which the host keeps for the whole process.
// GetType, Serialize and GetItemIDUID are the host's: they look into the identity.

#include <datamodel.h>

#include <functional>

namespace tarno {
namespace datamodel {

ItemID::ItemID()
    : m_Identity(nullptr)
{}

ItemID::ItemID(ItemIdentity const* identity)
    : m_Identity(identity)
{}

bool ItemID::IsNull() const
{
    return !m_Identity;
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
    // Unlike the operator, std::less is defined for pointers to unrelated objects.
    return std::less<ItemIdentity const*>()(m_Identity, other.m_Identity);
}

ItemIdentity const* ItemIDUnlock::GetIdentity(ItemID const& id)
{
    return id.m_Identity;
}

} // namespace datamodel
} // namespace tarno
