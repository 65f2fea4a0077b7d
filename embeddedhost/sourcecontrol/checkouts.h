#ifndef EMBEDDEDHOST_CHECKOUTS_H
#define EMBEDDEDHOST_CHECKOUTS_H

#include "sourcecontrol/gitworktree.h"

#include <QString>

#include <set>
#include <string>

namespace embeddedhost {

// Files are checked out until they are committed next, that is, as long as HEAD has the content
// that it had at the check out. The list is kept in the git folder and outlives the process.
// These functions may be called on any thread.

/// Why the file cannot be made writable for its owner; empty when it is.
QString MakeFileWritable(QString const& file);
/// Makes the file writable and marks it as checked out, unless cancelled before. Why not; empty
/// when it is checked out.
QString CheckOutFile(QString const& file, CancelFlag const& cancel);

/// False when the list cannot be written.
bool MarkCheckedOut(CGitWorkTree const& tree, std::string const& file);

/// The files that are checked out. Those that were committed leave the list for good.
std::set<std::string> ReadCheckOuts(CGitWorkTree const& tree);

} // namespace embeddedhost

#endif
