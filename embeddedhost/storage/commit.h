#ifndef EMBEDDEDHOST_COMMIT_H
#define EMBEDDEDHOST_COMMIT_H

#include "model/library.h"

#include <list>
#include <string>

namespace embeddedhost {

/// Saves the modified files of the library, or the one object with the uid; a library in memory is
/// always saved as a whole. Listeners may refuse
/// beforehand. True if everything was written; otherwise the message channel has a line for each
/// file that was not, as has `messages` (8-bit) unless it is null.
bool CommitLibrary(CLibrary& library, char const* uid, std::list<std::string>* messages);

} // namespace embeddedhost

#endif
