#ifndef EMBEDDEDHOST_ITEMDELETION_H
#define EMBEDDEDHOST_ITEMDELETION_H

#include "model/library.h"

#include <framework.h>

#include <vector>

namespace embeddedhost {

/// The other items that have it among their nodes, implement it or derive from it, in the order of
/// the table of contents.
std::vector<CLibraryItem*> FindUsers(CLibrary const& library, CLibraryItem const& item);

/// Takes the item out of the library and its file, which goes with the next save when it holds
/// nothing else. Where it is used, its uid stays. False, with a message, for an item that is
/// read-only. The manager may be null.
bool DeleteItem(CLibrary& library, CLibraryItem& item, wek::fwk::ICommandManager* manager);

} // namespace embeddedhost

#endif
