#ifndef EMBEDDEDHOST_LIBRARY_H
#define EMBEDDEDHOST_LIBRARY_H

#include "framework/messagechannel.h"
#include "model/itemkinds.h"
#include "model/libraryitem.h"
#include "model/stablepool.h"
#include "objects/datasource.h"
#include "objects/objectdatabase.h"
#include "objects/uidmap.h"

#include <datamodel.h>
#include <nlohmann/json.hpp>

#include <array>
#include <memory>
#include <memory_resource>
#include <string>
#include <vector>

namespace embeddedhost {

class CLibraryNotifier;

/// One file of a data source: one object, or an array of them. What could not be loaded stays
/// in its place, so that it is there again when the file is written.
struct LibraryFile
{
    struct Entry
    {
        /// Null for what is no item.
        CLibraryItem* item;
        /// What is no item.
        nlohmann::ordered_json other;
    };

    QString path;
    DataSourcePtr source;
    bool isArray;
    std::vector<Entry> entries;
};

/// An open library: its data sources, its items in the order of the table of contents, and the
/// files they come from.
class CLibrary
{
public:
    typedef std::vector<CLibraryItem*> Items;

    /// `folder` is the canonical path. The message channel has to outlive the open library.
    CLibrary(QString const& folder, QString const& name, CMessageChannel& messages);
    /// Closes the library.
    ~CLibrary();
    CLibrary(CLibrary const&) = delete;
    CLibrary& operator=(CLibrary const&) = delete;

    QString const& GetFolder() const;
    QString const& GetName() const;
    CMessageChannel& GetMessages() const;
    CObjectDatabase& GetDatabase() const;
    CLibraryNotifier& GetNotifier() const;
    tarno::datamodel::ItemLibraryAccessor GetAccessor() const;

    std::vector<DataSourcePtr> const& GetSources() const;
    void AddSource(DataSourcePtr const& source);

    Items const& GetItems(KindIndex kind) const;
    std::size_t GetItemCount() const;
    /// Null when there is none.
    CLibraryItem* FindItem(char const* uid) const;
    /// Some item has the name, but for the case of ASCII letters.
    bool HasName(char const* name) const;
    /// Makes an item of the object, which has a kind, a name, and a uid that is free, and puts
    /// it at the end of its kind.
    CLibraryItem& AddItem(DataSourcePtr const& source, nlohmann::ordered_json object);

    LibraryFile& AddFile(LibraryFile file);

    /// Accessors and handles answer empty from now on.
    void Close();

private:
    QString const m_Folder;
    QString const m_Name;
    CMessageChannel& m_Messages;
    /// Keeps the context.
    tarno::datamodel::UnspecifiedAccessor const m_Self;
    ObjectDatabasePtr const m_Database;

    std::vector<DataSourcePtr> m_Sources;
    /// What items are made of lies together, so that walking a large library is fast. Nothing
    /// of it is freed before the library is.
    std::pmr::monotonic_buffer_resource m_Arena;
    StablePool<CLibraryItem> m_Pool;
    std::array<Items, kKindCount> m_Items;
    UidMap<CLibraryItem> m_ItemsByUid;
    std::vector<std::unique_ptr<LibraryFile>> m_Files;
};

} // namespace embeddedhost

#endif
