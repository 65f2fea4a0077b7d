#ifndef EMBEDDEDHOST_COMMIT_H
#define EMBEDDEDHOST_COMMIT_H

#include "model/library.h"

#include <list>
#include <string>

namespace embeddedhost {

/// Saves what is modified in the library, or the one object with the uid. Listeners may refuse
/// beforehand. True when all of it was written; otherwise `messages`, unless null, and the
/// message channel have a line for each thing that was not, 8-bit in `messages`.
bool CommitLibrary(CLibrary& library, char const* uid, std::list<std::string>* messages);

} // namespace embeddedhost

#endif
