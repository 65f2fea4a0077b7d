#ifndef EMBEDDEDHOST_UIDMAP_H
#define EMBEDDEDHOST_UIDMAP_H

#include <hostkit/uidtext.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embeddedhost {

using hostkit::ParseUid;
using hostkit::UidKey;

/// A random seed per process, so that a crafted library cannot make all of its UIDs collide.
std::uint64_t GetUidSeed();

/// Spreads UIDs over all 64 bits, even if they share most of their digits.
std::uint64_t HashUid(UidKey const& key, std::uint64_t seed);
/// The same for other texts.
std::uint64_t HashText(std::string_view text, std::uint64_t seed);

/// Pointers by uid: well-formed UIDs ignoring case, other texts exactly. Entries are never removed.
///
/// UIDs lie in one hash table with open addressing and linear probing: in a large library each
/// memory block that a look-up touches costs a cache miss.
template <class T>
class UidMap
{
public:
    /// Null when there is none.
    T* Find(char const* uid) const
    {
        UidKey key;
        if (ParseUid(uid, key))
            return m_Places.empty() ? nullptr : m_Places[FindPlace(key)].value;
        auto const found = m_ByText.find(uid);
        return found == m_ByText.end() ? nullptr : found->second;
    }

    /// `value` is not null.
    void Insert(char const* uid, T* value)
    {
        UidKey key;
        if (!ParseUid(uid, key)) {
            m_ByText[uid] = value;
            return;
        }
        if (2 * (m_Used + 1) > m_Places.size())
            Grow();
        Place& place = m_Places[FindPlace(key)];
        m_Used += place.value ? 0 : 1;
        place = {key, value};
    }

private:
    struct Place
    {
        UidKey key;
        /// Null where the place is free.
        T* value;
    };

    /// Where the key is, or would be put. The size is a power of two, and there are free places.
    std::size_t FindPlace(UidKey const& key) const
    {
        std::size_t const mask = m_Places.size() - 1;
        std::size_t place = std::size_t(HashUid(key, m_Seed)) & mask;
        while (m_Places[place].value && !(m_Places[place].key == key))
            place = (place + 1) & mask;
        return place;
    }

    void Grow()
    {
        std::vector<Place> previous(m_Places.empty() ? 64 : 2 * m_Places.size());
        previous.swap(m_Places);
        for (Place const& place : previous) {
            if (place.value)
                m_Places[FindPlace(place.key)] = place;
        }
    }

    std::uint64_t const m_Seed = GetUidSeed();
    std::vector<Place> m_Places;
    std::size_t m_Used = 0;
    std::unordered_map<std::string, T*> m_ByText;
};

} // namespace embeddedhost

#endif
