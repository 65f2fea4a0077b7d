#ifndef HOSTKIT_UIDTEXT_H
#define HOSTKIT_UIDTEXT_H

/// @file
/// UIDs as numbers.

#include <cstdint>
#include <string_view>

namespace hostkit {

/// A well-formed UID as a number of 128 bits.
struct UidKey
{
    /// The first 16 digits.
    std::uint64_t high;
    /// The last 16 digits.
    std::uint64_t low;

    /// The same number.
    bool operator==(UidKey const& other) const
    {
        return high == other.high && low == other.low;
    }
};

/// Writes the number of the text. False unless it is a well-formed UID, in either case; the key has
/// no meaning then.
bool ParseUid(std::string_view text, UidKey& key);

} // namespace hostkit

#endif
