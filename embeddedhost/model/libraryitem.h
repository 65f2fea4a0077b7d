#ifndef EMBEDDEDHOST_LIBRARYITEM_H
#define EMBEDDEDHOST_LIBRARYITEM_H

#include "model/itemidentity.h"
#include "model/libraryfile.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <memory_resource>
#include <string>

namespace embeddedhost {

struct LibraryFile;

/// One item: its object as the file has it, and the 8-bit views of it that are asked for often.
class CLibraryItem
{
public:
    /// `object` holds a kind and a name; other keys whose value is not of the right type are
    /// kept but count as absent. `cacheIndex` is the item's place in the object database, -1
    /// for none. `texts` outlives the item.
    CLibraryItem(tarno::datamodel::ItemIdentity& identity, LibraryFile& file,
                 nlohmann::ordered_json object, int cacheIndex, std::pmr::memory_resource& texts);
    CLibraryItem(CLibraryItem const&) = delete;
    CLibraryItem& operator=(CLibraryItem const&) = delete;

    tarno::datamodel::ItemIdentity& GetIdentity() const;
    /// The file that the item is stored in, or will be.
    LibraryFile& GetFile() const;
    DataSourcePtr const& GetSource() const;
    nlohmann::ordered_json const& GetObject() const;
    /// The object, one that makes an item, has the item's kind and the very text of its uid.
    bool HasIdentityOf(nlohmann::ordered_json const& object) const;
    /// Takes a changed object with this identity, unless it raises.
    void SetObject(nlohmann::ordered_json object);

    /// The object differs from what is on disk.
    bool IsModified() const;
    /// The object is what was on disk when it was read or saved last.
    bool HasSavedObject(nlohmann::ordered_json const& object) const;
    /// What is on disk of it; null for an item that is not there.
    nlohmann::ordered_json const& GetSavedObject() const;
    void SetSavedObject(nlohmann::ordered_json saved);
    int GetCacheIndex() const;

    char const* GetName() const;
    /// Empty when there are none.
    char const* GetTags(char const* category) const;
    bool IsSignature() const;
    bool IsLoop() const;
    /// The item's own lock.
    bool IsLocked() const;
    /// Locked, or from a file or data source that is not to be written.
    bool IsReadOnly() const;
    /// Null unless the item has a text of that name: "Parent" or "Specializes".
    std::string const* GetNamedValue(char const* name) const;

private:
    void ReadFlags();

    tarno::datamodel::ItemIdentity& m_Identity;
    LibraryFile& m_File;
    nlohmann::ordered_json m_Object;
    /// What is on disk, once the object has been changed; null before.
    std::unique_ptr<nlohmann::ordered_json> m_SavedObject;

    /// Zero-terminated texts in one piece: the name, then category and tags by turns.
    std::pmr::string m_Texts;
    int const m_CacheIndex;
    bool m_IsSignature = false;
    bool m_IsLoop = false;
    bool m_IsLocked = false;
    bool m_HasParent = false;
    bool m_HasSpecializes = false;
};

} // namespace embeddedhost

#endif
