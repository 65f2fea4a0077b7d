#include "nameorder.h"

#include <algorithm>
#include <ctype.h>
#include <strings.h>

namespace nodebrowser {

namespace {

/// A name on its way into the order.
struct SNamed
{
    /// The first letters as a number that orders as strcasecmp orders the names.
    std::uint64_t prefix;
    char const* name;
    std::uint32_t entry;

    bool operator<(SNamed const& other) const
    {
        if (prefix != other.prefix)
            return prefix < other.prefix;
        int const order = strcasecmp(name, other.name);
        return order != 0 ? order < 0 : entry < other.entry;
    }
};

class Sorter
{
public:
    explicit Sorter(TextBlock const& names)
        : m_Names(names)
    {
        for (int letter = 0; letter < 256; ++letter)
            m_Lower[letter] = static_cast<unsigned char>(tolower(letter));
    }

    SNamed Get(std::uint32_t entry) const
    {
        char const* const name = m_Names.Get(entry);
        return SNamed{GetPrefix(name), name, entry};
    }

    std::vector<SNamed> Sort(std::vector<std::uint32_t> const& entries) const
    {
        std::vector<SNamed> sorted;
        sorted.reserve(entries.size());
        for (std::uint32_t const entry : entries)
            sorted.push_back(Get(entry));
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

private:
    std::uint64_t GetPrefix(char const* name) const
    {
        std::uint64_t prefix = 0;
        for (std::size_t letter = 0; letter < sizeof(prefix); ++letter) {
            prefix = prefix << 8 | m_Lower[static_cast<unsigned char>(*name)];
            if (*name)
                ++name;
        }
        return prefix;
    }

    TextBlock const& m_Names;
    unsigned char m_Lower[256];
};

} // namespace

std::vector<std::uint32_t> MergeByName(TextBlock const& names,
                                       std::vector<std::uint32_t> const& ordered,
                                       std::vector<std::uint32_t> const& added)
{
    Sorter const sorter(names);
    std::vector<std::uint32_t> all;
    all.reserve(ordered.size() + added.size());
    auto from = ordered.begin();
    // Few are added as a rule.
    for (SNamed const& name : sorter.Sort(added)) {
        auto const to = std::upper_bound(
            from, ordered.end(), name,
            [&](SNamed const& left, std::uint32_t right) { return left < sorter.Get(right); });
        all.insert(all.end(), from, to);
        all.push_back(name.entry);
        from = to;
    }
    all.insert(all.end(), from, ordered.end());
    return all;
}

} // namespace nodebrowser
