#ifndef HOSTKIT_UIDTEXT_H
#define HOSTKIT_UIDTEXT_H

#include <cstdint>
#include <string_view>

namespace hostkit {

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

/// False unless the text is a well-formed UID, in either case.
bool ParseUid(std::string_view text, UidKey& key);

} // namespace hostkit

#endif
