#ifndef EMBEDDEDHOST_LIBRARYFILE_H
#define EMBEDDEDHOST_LIBRARYFILE_H

#include "model/objectsource.h"
#include "objects/datasource.h"

#include <QByteArray>
#include <QString>

#include <nlohmann/json.hpp>

#include <memory>
#include <vector>

namespace embeddedhost {

class CLibraryItem;

/// One file of a data source: one object, or an array of them. What could not be loaded stays
/// in its place, so that it is there again when the file is written.
struct LibraryFile
{
    struct Entry
    {
        /// Null for an entry that is not an item.
        CLibraryItem* item;
        /// The raw entry, if it is not an item.
        nlohmann::ordered_json other;
    };

    QString path;
    DataSourcePtr source;
    bool isArray;
    std::vector<Entry> entries;
    /// Of what is on disk, as far as we know; empty for a file that is not there.
    QByteArray digest = QByteArray();
    /// Entries came or went since the file was read or written.
    bool hasOtherEntries = false;
    /// It is a link, and the file lies in a data source that is not to be written.
    bool isReadOnly = false;
    /// Of the items that have a place in it; null for a file that has never been read.
    std::unique_ptr<ObjectSource const> objects = nullptr;

    /// A save has something to write, or the file to remove.
    bool IsModified() const;
};

} // namespace embeddedhost

#endif
