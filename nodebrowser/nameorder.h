#ifndef NODEBROWSER_NAMEORDER_H
#define NODEBROWSER_NAMEORDER_H

#include "textblock.h"

#include <cstdint>
#include <vector>

namespace nodebrowser {

/// Merges entries of the block into others that are in order already. The order is that of
/// strcasecmp; names that differ in nothing but case are in the order of the block.
std::vector<std::uint32_t> MergeByName(TextBlock const& names,
                                       std::vector<std::uint32_t> const& ordered,
                                       std::vector<std::uint32_t> const& added);

} // namespace nodebrowser

#endif
