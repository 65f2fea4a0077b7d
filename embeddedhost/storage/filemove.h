#ifndef EMBEDDEDHOST_FILEMOVE_H
#define EMBEDDEDHOST_FILEMOVE_H

#include "model/library.h"

#include <framework.h>

namespace embeddedhost {

/// Moves the item's file into the folder of another data source, through git when both lie in
/// one work tree, as one command. Refused, with the reason on the message channel: a null or
/// read-only target, a read-only item, an item that shares its file with others, and a file of
/// the same name in the target.
bool MoveItem(CLibrary& library, CLibraryItem& item, DataSourcePtr const& target,
              wek::fwk::ICommandManager* manager);

} // namespace embeddedhost

#endif
