#ifndef EMBEDDEDHOST_STATEBITS_H
#define EMBEDDEDHOST_STATEBITS_H

#include <sourcecontrol.h>

namespace embeddedhost {

/// Source-control state of an object's file: one of the first group, or kAdded together with
/// kModified, and kCheckedOut on top. 0 is no state.
namespace StateBits {

constexpr unsigned kClean = 0x1;       ///< tracked, and the same as in the last commit
constexpr unsigned kModified = 0x2;    ///< differs from the last commit, staged or not
constexpr unsigned kAdded = 0x4;       ///< staged for its first commit
constexpr unsigned kUntracked = 0x8;   ///< git does not know it
constexpr unsigned kConflicted = 0x10; ///< left over by a merge
constexpr unsigned kIgnored = 0x20;    ///< excluded from git
constexpr unsigned kUnknown = 0x40;    ///< git cannot be asked, or refuses to look

constexpr unsigned kCheckedOut = 0x100; ///< claimed by the user until it is committed next

/// Requested, no answer yet; set by the panel.
constexpr unsigned kWaiting = ScsUtils::kWaitingState;

} // namespace StateBits

} // namespace embeddedhost

#endif
