#include "model/itemidentity.h"

#include "base/text8.h"
#include "base/uidmap.h"

#include <qorm.h>

#include <cstring>
#include <functional>
#include <memory_resource>
#include <vector>

namespace embeddedhost {

using tarno::datamodel::ItemIdentity;

namespace {

/// The hash of a uid, which ignores the case of a well-formed one.
struct UidHash
{
    explicit UidHash(std::string_view uid)
    {
        UidKey key;
        isWellFormed = ParseUid(uid, key);
        value = isWellFormed ? HashUid(key, GetUidSeed()) : HashText(uid, GetUidSeed());
    }

    bool isWellFormed;
    std::uint64_t value;
};

/// All identities by their uids: a hash table with open addressing and linear probing, because in a
/// large library each memory block that a look-up touches costs a cache miss. Entries are never
/// removed.
class IdentityTable
{
public:
    ItemIdentity& Get(char const* kind, std::string_view uid)
    {
        UidHash const hash(uid);
        ItemIdentity* const known = Find(hash, [&](ItemIdentity const& identity) {
            return identity.kind == kind && uid == identity.uid;
        });
        return known ? *known : Add(hash, kind, uid);
    }

    CLibraryItem* FindItem(char const* uid) const
    {
        UidHash const hash(uid);
        ItemIdentity const* const found = Find(hash, [&](ItemIdentity const& identity) {
            return identity.item
                   && (hash.isWellFormed ? EqualIgnoringAsciiCase(uid, identity.uid)
                                         : std::strcmp(uid, identity.uid) == 0);
        });
        return found ? found->item : nullptr;
    }

private:
    struct Place
    {
        std::uint64_t hash;
        /// Null where the place is free.
        ItemIdentity* identity;
    };

    /// The first one with the hash for which the predicate is true; null for none.
    template <class IsWanted>
    ItemIdentity* Find(UidHash const& hash, IsWanted const& isWanted) const
    {
        if (m_Places.empty())
            return nullptr;
        std::size_t const mask = m_Places.size() - 1;
        for (std::size_t place = hash.value & mask; m_Places[place].identity;
             place = (place + 1) & mask) {
            if (m_Places[place].hash == hash.value && isWanted(*m_Places[place].identity))
                return m_Places[place].identity;
        }
        return nullptr;
    }

    ItemIdentity& Add(UidHash const& hash, char const* kind, std::string_view uid)
    {
        if (2 * (m_Used + 1) > m_Places.size())
            Grow();
        void* const memory = m_Arena.allocate(sizeof(ItemIdentity), alignof(ItemIdentity));
        char* const text = static_cast<char*>(m_Arena.allocate(uid.size() + 1, 1));
        uid.copy(text, uid.size());
        text[uid.size()] = '\0';
        ItemIdentity* const identity = new (memory) ItemIdentity(kind, text, hash.isWellFormed);
        Put({hash.value, identity});
        ++m_Used;
        return *identity;
    }

    void Put(Place const& added)
    {
        std::size_t const mask = m_Places.size() - 1;
        std::size_t place = added.hash & mask;
        while (m_Places[place].identity)
            place = (place + 1) & mask;
        m_Places[place] = added;
    }

    /// The size is a power of two, and half of the places are free.
    void Grow()
    {
        std::vector<Place> previous(m_Places.empty() ? 64 : 2 * m_Places.size());
        previous.swap(m_Places);
        for (Place const& place : previous) {
            if (place.identity)
                Put(place);
        }
    }

    std::pmr::monotonic_buffer_resource m_Arena;
    std::vector<Place> m_Places;
    std::size_t m_Used = 0;
};

IdentityTable& GetTable()
{
    // Never destroyed: identifiers may be used while the process exits.
    static IdentityTable& table = *new IdentityTable;
    return table;
}

/// The last identity whose uid was returned: callers usually look the item up with it next. The
/// address identifies the text, because uids are never freed or changed.
ItemIdentity const* gLastAsked = nullptr;

bool IsAskedUid(char const* text)
{
    return gLastAsked && gLastAsked->uid == text;
}

} // namespace

ItemIdentity& GetItemIdentity(char const* kind, std::string_view uid)
{
    return GetTable().Get(kind, uid);
}

CLibraryItem* FindItemByUid(char const* uid)
{
    bool const isAsked = gLastAsked && gLastAsked->item
                         && (gLastAsked->uid == uid || std::strcmp(gLastAsked->uid, uid) == 0);
    if (isAsked)
        return gLastAsked->item;
    return GetTable().FindItem(uid);
}

} // namespace embeddedhost

namespace tarno {
namespace datamodel {

ItemIdentity::ItemIdentity(char const* itemKind, char const* itemUid, bool isWellFormed)
    : kind(itemKind)
    , uid(itemUid)
    , hasUid(isWellFormed)
{}

std::string ItemIdentity::Serialize() const
{
    return std::string(kind) + ':' + uid;
}

char const* ItemID::GetType() const
{
    return m_Identity ? m_Identity->kind : nullptr;
}

std::string ItemID::Serialize() const
{
    return m_Identity ? m_Identity->Serialize() : std::string();
}

char const* ItemIDUnlock::GetItemIDUID(ItemID const& id)
{
    if (!id.m_Identity)
        return "";
    embeddedhost::gLastAsked = id.m_Identity;
    return id.m_Identity->uid;
}

} // namespace datamodel
} // namespace tarno

// A uid of an item was parsed when the item was read, and need not be copied.

namespace qorm {

DbObjectId::DbObjectId(char const* text)
    : m_Kept(embeddedhost::IsAskedUid(text) ? text : nullptr)
{
    if (!m_Kept && text)
        m_Text = text;
}

bool DbObjectId::IsUID(char const* text)
{
    if (embeddedhost::IsAskedUid(text))
        return embeddedhost::gLastAsked->hasUid;
    embeddedhost::UidKey key;
    return text && embeddedhost::ParseUid(text, key);
}

} // namespace qorm
