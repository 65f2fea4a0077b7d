#ifndef EMBEDDEDHOST_ITEMKINDS_H
#define EMBEDDEDHOST_ITEMKINDS_H

#include <array>
#include <string_view>

namespace embeddedhost {

/// A kind's place among the kinds.
typedef int KindIndex;
constexpr KindIndex kKindCount = 5;
constexpr KindIndex kNoKind = -1;

/// The kind constants; their texts are what library files call the kinds.
std::array<char const*, kKindCount> const& GetItemKinds();

/// The place of a kind constant, compared by identity.
KindIndex GetKindIndex(char const* kind);
/// The kind constant that a library file means; null for another text.
char const* FindItemKind(std::string_view text);

} // namespace embeddedhost

#endif
