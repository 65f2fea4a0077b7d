#ifndef EMBEDDEDHOST_UIDMAP_H
#define EMBEDDEDHOST_UIDMAP_H

#include <cstdint>
#include <string>
#include <unordered_map>

namespace embeddedhost {

/// A well-formed UID as a number.
struct UidKey
{
    std::uint64_t high;
    std::uint64_t low;

    bool operator==(UidKey const& other) const
    {
        return high == other.high && low == other.low;
    }
};

/// False unless the text is a well-formed UID.
bool ParseUid(char const* text, UidKey& key);

/// Values by uid: well-formed UIDs in either case, other texts exactly.
template <class T>
class UidMap
{
public:
    /// Null when there is none.
    T const* Find(char const* uid) const
    {
        UidKey key;
        return ParseUid(uid, key) ? FindIn(m_ByKey, key) : FindIn(m_ByText, uid);
    }

    void Insert(char const* uid, T const& value)
    {
        UidKey key;
        if (ParseUid(uid, key))
            m_ByKey[key] = value;
        else
            m_ByText[uid] = value;
    }

private:
    struct Hash
    {
        std::size_t operator()(UidKey const& key) const
        {
            // An odd factor keeps UIDs apart that differ in one half only.
            return std::size_t(key.high * 0x9E3779B97F4A7C15u ^ key.low);
        }
    };

    template <class Map, class Key>
    static T const* FindIn(Map const& map, Key const& key)
    {
        auto const found = map.find(key);
        return found == map.end() ? nullptr : &found->second;
    }

    std::unordered_map<UidKey, T, Hash> m_ByKey;
    std::unordered_map<std::string, T> m_ByText;
};

} // namespace embeddedhost

#endif
