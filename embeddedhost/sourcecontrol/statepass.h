#ifndef EMBEDDEDHOST_STATEPASS_H
#define EMBEDDEDHOST_STATEPASS_H

#include "sourcecontrol/gitworktree.h"

#include <QString>

#include <vector>

namespace embeddedhost {

/// The state bits of each file, given with its absolute path, with one pass over each work tree
/// that files lie in. A file outside of all work trees has no state. Runs on any thread; what is
/// returned after it was cancelled is of no use.
std::vector<unsigned> ReadFileStates(std::vector<QString> const& files, CancelFlag const& cancel);

} // namespace embeddedhost

#endif
