#include "base/uidmap.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace embeddedhost {

namespace {

/// Each bit of the number decides on all bits of the result (the finalizer of splitmix64).
std::uint64_t Mix(std::uint64_t number)
{
    number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9u;
    number = (number ^ number >> 27) * 0x94D049BB133111EBu;
    return number ^ number >> 31;
}

} // namespace

std::uint64_t GetUidSeed()
{
    static std::uint64_t const seed = [] {
        std::random_device random;
        return std::uint64_t(random()) << 32 | random();
    }();
    return seed;
}

std::uint64_t HashUid(UidKey const& key, std::uint64_t seed)
{
    // One half after the other: halves that are equal, or change places, do not cancel out.
    return Mix(Mix(key.high ^ seed) + key.low);
}

std::uint64_t HashText(std::string_view text, std::uint64_t seed)
{
    std::uint64_t hash = Mix(text.size() ^ seed);
    while (!text.empty()) {
        std::uint64_t part = 0;
        std::size_t const size = std::min(text.size(), sizeof(part));
        std::memcpy(&part, text.data(), size);
        hash = Mix(hash + part);
        text.remove_prefix(size);
    }
    return hash;
}

} // namespace embeddedhost
