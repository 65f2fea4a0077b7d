#ifndef EMBEDDEDHOST_FOLDERLAYOUT_H
#define EMBEDDEDHOST_FOLDERLAYOUT_H

#include "model/newlibrary.h"

#include <QString>

namespace embeddedhost {

/// Makes the library in the folder, which is missing or empty. False, with the path and the reason
/// as a sentence without the full stop, when that fails; some of it may be there then, but nothing
/// when the reason is a data source that could not be opened.
bool MakeLibraryFolder(QString const& folder, NewLibrary const& library, QString* fault);

/// A library with one writable data source, named after its folder.
NewLibrary MakeEmptyLibrary(QString const& folder);

} // namespace embeddedhost

#endif
