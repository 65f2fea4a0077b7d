#ifndef EMBEDDEDHOST_STATEPASS_H
#define EMBEDDEDHOST_STATEPASS_H

#include "sourcecontrol/gitworktree.h"

#include <QString>

#include <vector>

namespace embeddedhost {

/// The state bits of each file, which is given by its absolute path. Makes one pass over each work
/// tree that has some of the files. A file outside of all work trees has no state bits. Runs on any
/// thread; after a cancellation the result is incomplete.
std::vector<unsigned> ReadFileStates(std::vector<QString> const& files, CancelFlag const& cancel);

} // namespace embeddedhost

#endif
