#ifndef EMBEDDEDHOST_LIBRARY_H
#define EMBEDDEDHOST_LIBRARY_H

#include "base/uidmap.h"
#include "framework/messagechannel.h"
#include "model/itemkinds.h"
#include "model/libraryfile.h"
#include "model/libraryitem.h"
#include "model/objectdatabase.h"
#include "model/stablepool.h"
#include "objects/datasource.h"

#include <datamodel.h>
#include <nlohmann/json.hpp>

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
    /// An item has the uid, or what the library is made of.
    bool HasUid(char const* uid) const;
    /// Some item has the name, ignoring ASCII case.
    bool HasName(char const* name) const;
    /// Makes an item of the object, which has a kind, a name, and a uid that is free, and puts
    /// it at the end of its kind.
    CLibraryItem& AddItem(LibraryFile& file, nlohmann::ordered_json object);
    /// The same of an object that stays where it is in the file's source.
    CLibraryItem& AddItem(LibraryFile& file, ListedObject const& listed, ObjectPlace const& place);

    LibraryFile& AddFile(LibraryFile file);
    std::vector<std::unique_ptr<LibraryFile>> const& GetFiles() const;
    /// Null when there is none.
    LibraryFile* FindFile(QString const& path) const;

    // Changes, each with its notifications. A listener may close the library: nothing of it may
    // be used after they return without looking it up again.

    void ChangeObject(CLibraryItem& item, nlohmann::ordered_json object);
    /// The item goes into a file of its own, which a save will make.
    void AddNewItem(DataSourcePtr const& source, QString const& path,
                    nlohmann::ordered_json object);
    /// An object that the file has on disk already.
    void AddSavedItem(LibraryFile& file, nlohmann::ordered_json object);
    /// An entry of the file that has been left out so far; its uid is free now.
    void AddLeftOutItem(LibraryFile& file, std::size_t entry);
    void RemoveItem(CLibraryItem& item);
    /// The item's file, which holds nothing else, is somewhere else now.
    void MoveFile(CLibraryItem& item, DataSourcePtr const& source, QString const& path);

    /// The file leads into a data source that is not to be written, or does so no more. False when
    /// a listener has closed the library.
    bool SetReadOnly(LibraryFile& file, bool isReadOnly);

    /// Accessors and handles answer empty from now on.
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
    /// What items are made of lies together, so that walking a large library is fast. Nothing
    /// of it is freed before the library is.
    std::pmr::monotonic_buffer_resource m_Arena;
    StablePool<CLibraryItem> m_Pool;
    /// With those that were taken out since the kind was asked for last: dropping each by itself
    /// would take too long when a large file loses its items.
    mutable std::array<Items, kKindCount> m_Items;
    mutable std::array<bool, kKindCount> m_HasTakenOutItems = {};
    std::vector<std::unique_ptr<LibraryFile>> m_Files;
    /// Where a file was found last; it may have another path since.
    mutable QHash<QString, LibraryFile*> m_FilesByPath;
};

} // namespace embeddedhost

#endif
