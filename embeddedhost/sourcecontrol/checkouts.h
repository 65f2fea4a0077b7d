#ifndef EMBEDDEDHOST_CHECKOUTS_H
#define EMBEDDEDHOST_CHECKOUTS_H

#include "sourcecontrol/gitworktree.h"

#include <set>
#include <string>

namespace embeddedhost {

// Files are checked out until they are committed next, that is, as long as HEAD has the content
// that it had at the check out. The list is kept in the git folder and outlives the process.
// Both functions may be called on any thread.

/// False when the list cannot be written.
bool MarkCheckedOut(CGitWorkTree const& tree, std::string const& file);

/// The files that are checked out. Those that were committed leave the list for good.
std::set<std::string> ReadCheckOuts(CGitWorkTree const& tree);

} // namespace embeddedhost

#endif
