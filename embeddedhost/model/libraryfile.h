#ifndef EMBEDDEDHOST_LIBRARYFILE_H
#define EMBEDDEDHOST_LIBRARYFILE_H

#include "model/itemobject.h"
#include "model/objectsource.h"
#include "objects/datasource.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

namespace embeddedhost {

class CLibraryItem;

/// One file of a data source: one object, or an array of them. Entries that could not be loaded are
/// kept in their place, so that a save writes them again.
struct LibraryFile
{
    struct Entry
    {
        /// Null for an entry that is not an item.
        CLibraryItem* item;
        /// The raw entry, if it is not an item.
        ItemObject other;
    };

    QString path;
    DataSourcePtr source;
    bool isArray;
    std::vector<Entry> entries;
    /// The digest of the file on disk when it was read or written last; empty for a missing file.
    QByteArray digest = QByteArray();
    /// Entries were added or removed since the file was read or written.
    bool hasOtherEntries = false;
    /// It is a link into a read-only data source.
    bool isReadOnly = false;
    /// The text of items that were listed from it; null for a file that was never listed.
    std::unique_ptr<ObjectSource const> objects = nullptr;

    /// A save would write or remove the file.
    bool IsModified() const;
};

} // namespace embeddedhost

#endif
