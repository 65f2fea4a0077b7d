#ifndef EMBEDDEDHOST_ITEMKINDS_H
#define EMBEDDEDHOST_ITEMKINDS_H

#include <hostkit/kindtable.h>

#include <string_view>

namespace embeddedhost {

/// A kind's index in hostkit::GetKinds, which is the host's table of kinds. In library files kinds
/// have the texts of their constants.
typedef int KindIndex;
using hostkit::kKindCount;
constexpr KindIndex kNoKind = -1;

/// The index of a kind constant, compared by identity.
KindIndex GetKindIndex(char const* kind);
/// The kind constant with the text; null for an unknown one.
char const* FindItemKind(std::string_view text);
/// The texts of all kinds, "solver, compound", for messages.
char const* GetKindList();

} // namespace embeddedhost

#endif
