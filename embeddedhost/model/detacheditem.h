#ifndef EMBEDDEDHOST_DETACHEDITEM_H
#define EMBEDDEDHOST_DETACHEDITEM_H

#include "model/itemobject.h"
#include "objects/datasource.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <string>

namespace embeddedhost {

class CLibrary;
class CLibraryItem;
struct LibraryFile;

/// An item that can be put into a library and taken out of it any number of times. Put back before
/// a save, it and its file are as they were, so that nothing is modified that was not; after a save
/// it is unsaved, at its old place in the file.
class DetachedItem
{
public:
    /// A new item; `path` is the file that a save will make.
    DetachedItem(DataSourcePtr const& source, QString const& path, ItemObject object);
    /// An item that is still in its library.
    explicit DetachedItem(CLibraryItem const& item);

    /// Does nothing when the library has an item of the same uid.
    void PutInto(CLibrary& library) const;
    /// Keeps the item as it is now, with all later changes. Does nothing when it is gone.
    void TakeOutOf(CLibrary& library);

private:
    void Record(CLibraryItem const& item);
    void Add(CLibrary& library) const;
    void RestoreFile(CLibraryItem& item) const;

    std::string m_Uid;
    DataSourcePtr m_Source;
    QString m_Path;
    ItemObject m_Object;
    /// The saved version of the item; null for a new one.
    ItemObject m_SavedObject;
    /// The file's when the item was taken out; empty for a file that is not there yet.
    QByteArray m_Digest;
    bool m_HadOtherEntries = true;
    /// Position among the entries of the file.
    std::ptrdiff_t m_Place = 0;
};

} // namespace embeddedhost

#endif
