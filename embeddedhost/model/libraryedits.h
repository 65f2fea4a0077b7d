#ifndef EMBEDDEDHOST_LIBRARYEDITS_H
#define EMBEDDEDHOST_LIBRARYEDITS_H

#include "model/graphbody.h"
#include "model/library.h"

#include <framework.h>

#include <string>

namespace embeddedhost {

// Changes of an open library. Each is checked first, refused with a reason on the message channel,
// or run as a command by the manager, without undo if that is null. Texts are 8-bit.

struct NewCompound
{
    char const* name;
    char const* category;
    bool isSignature;
    bool isLoop;
    /// The signature to implement; null or empty for none.
    char const* signatureUid;
};

/// The first one that can be written; null when there is none.
DataSourcePtr FindWritableSource(CLibrary const& library);
/// A file name for a new item, made from the item's.
QString FindFreePath(CLibrary const& library, DataSourcePtr const& source, char const* name);

/// Null when it is refused.
CLibraryItem* CreateCompound(CLibrary& library, NewCompound const& compound,
                             wek::fwk::ICommandManager* manager);
bool RenameItem(CLibrary& library, CLibraryItem& item, char const* name,
                wek::fwk::ICommandManager* manager);
/// An empty text removes the category.
bool SetItemTags(CLibrary& library, CLibraryItem& item, char const* category, char const* tags,
                 wek::fwk::ICommandManager* manager);
/// Texts of the body are UTF-8, positions finite; anything else is refused.
bool SetItemBody(CLibrary& library, CLibraryItem& item, GraphBody const& body,
                 std::string const& text, wek::fwk::ICommandManager* manager);

} // namespace embeddedhost

#endif
