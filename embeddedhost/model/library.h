#ifndef EMBEDDEDHOST_LIBRARY_H
#define EMBEDDEDHOST_LIBRARY_H

#include "base/uidmap.h"
#include "framework/messagechannel.h"
#include "model/itemkinds.h"
#include "model/itemobject.h"
#include "model/libraryfile.h"
#include "model/libraryitem.h"
#include "model/objectdatabase.h"
#include "model/stablepool.h"
#include "objects/datasource.h"

#include <datamodel.h>
#include <QByteArray>
#include <QHash>

#include <array>
#include <memory>
#include <memory_resource>
#include <string>
#include <vector>

namespace embeddedhost {

class CLibraryNotifier;
struct MemoryStore;

/// An open library: its data sources, its items in the order of the table of contents, and the
/// files they come from. One that is kept in memory has no folder; its files have no place on disk.
class CLibrary
{
public:
    typedef std::vector<CLibraryItem*> Items;

    /// `folder` is the canonical path; empty for a library in memory. The message channel has to
    /// outlive the open library.
    CLibrary(QString const& folder, QString const& name, CMessageChannel& messages);
    /// Closes the library.
    ~CLibrary();
    CLibrary(CLibrary const&) = delete;
    CLibrary& operator=(CLibrary const&) = delete;

    QString const& GetFolder() const;
    QString const& GetName() const;
    bool IsInMemory() const;
    CMessageChannel& GetMessages() const;
    CObjectDatabase& GetDatabase() const;
    CLibraryNotifier& GetNotifier() const;
    tarno::datamodel::ItemLibraryAccessor GetAccessor() const;

    std::vector<DataSourcePtr> const& GetSources() const;
    void AddSource(DataSourcePtr const& source);

    /// How a library in memory is saved; null for one in a folder.
    std::shared_ptr<MemoryStore> const& GetMemoryStore() const;
    void SetMemoryStore(std::shared_ptr<MemoryStore> const& store);

    Items const& GetItems(KindIndex kind) const;
    std::size_t GetItemCount() const;
    /// Null when there is none.
    CLibraryItem* FindItem(char const* uid) const;
    /// An item, a data source or an application component has the uid.
    bool HasUid(char const* uid) const;
    /// Some item has the name, ignoring ASCII case.
    bool HasName(char const* name) const;
    /// Makes an item of the object, which has a kind, a name and a free uid, and appends it to the
    /// items of its kind.
    CLibraryItem& AddItem(LibraryFile& file, ItemObject object);
    /// The same for an object that stays in the text of its file.
    CLibraryItem& AddItem(LibraryFile& file, ListedObject const& listed, ObjectPlace const& place);

    LibraryFile& AddFile(LibraryFile file);
    std::vector<std::unique_ptr<LibraryFile>> const& GetFiles() const;
    /// Null when there is none.
    LibraryFile* FindFile(QString const& path) const;

    // Changes, each with its notifications. A listener may close the library: afterwards items and
    // files have to be looked up again.

    void ChangeObject(CLibraryItem& item, ItemObject object);
    /// Adds an item in a file of its own, which the next save makes.
    void AddNewItem(DataSourcePtr const& source, QString const& path, ItemObject object);
    /// Adds an item whose object is in the file on disk already.
    void AddSavedItem(LibraryFile& file, ItemObject object);
    /// Adds an item for an entry that was left out until now because its uid was taken.
    void AddLeftOutItem(LibraryFile& file, std::size_t entry);
    void RemoveItem(CLibraryItem& item);
    /// The item's file, which holds no other entry, was moved.
    void MoveFile(CLibraryItem& item, DataSourcePtr const& source, QString const& path);

    /// Whether the file is a link into a read-only data source. False when a listener has closed
    /// the library.
    bool SetReadOnly(LibraryFile& file, bool isReadOnly);

    /// Accessors and handles return empty values from now on.
    void Close();

private:
    CLibraryItem& List(CLibraryItem& item);
    void TakeOut(CLibraryItem& item);

    QString const m_Folder;
    QString const m_Name;
    CMessageChannel& m_Messages;
    std::shared_ptr<MemoryStore> m_MemoryStore;
    /// Keeps the context.
    tarno::datamodel::UnspecifiedAccessor const m_Self;
    ObjectDatabasePtr const m_Database;

    std::vector<DataSourcePtr> m_Sources;
    /// Texts and items lie contiguously, so that iterating a large library is fast. Removed ones
    /// are freed with the library.
    std::pmr::monotonic_buffer_resource m_Arena;
    StablePool<CLibraryItem> m_Pool;
    /// May hold removed items, which GetItems erases all at once: erasing each by itself would be
    /// quadratic when a large file loses its items.
    mutable std::array<Items, kKindCount> m_Items;
    mutable std::array<bool, kKindCount> m_HasTakenOutItems = {};
    std::vector<std::unique_ptr<LibraryFile>> m_Files;
    /// A cache: the path of a file may have changed since.
    mutable QHash<QString, LibraryFile*> m_FilesByPath;
};

} // namespace embeddedhost

#endif
