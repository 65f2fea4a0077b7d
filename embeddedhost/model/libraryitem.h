#ifndef EMBEDDEDHOST_LIBRARYITEM_H
#define EMBEDDEDHOST_LIBRARYITEM_H

#include "model/itemidentity.h"
#include "model/libraryfile.h"
#include "model/listedobject.h"
#include "model/objectsource.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <memory_resource>
#include <string>

namespace embeddedhost {

/// One item: the 8-bit views of its object that are asked for often, and the object itself, which
/// stays in the text that it was read from until it is needed.
class CLibraryItem
{
public:
    /// `listed` has a kind, a uid and a name. The object stands in the file's source at the place.
    /// `cacheIndex` is the item's place in the object database, -1 for none. `texts` outlives the
    /// item.
    CLibraryItem(tarno::datamodel::ItemIdentity& identity, LibraryFile& file,
                 ListedObject const& listed, ObjectPlace const& place, int cacheIndex,
                 std::pmr::memory_resource& texts);
    /// With an object that no text has. Keys whose value is not of the right type are kept but
    /// count as absent.
    CLibraryItem(tarno::datamodel::ItemIdentity& identity, LibraryFile& file,
                 nlohmann::ordered_json object, int cacheIndex, std::pmr::memory_resource& texts);
    ~CLibraryItem();
    CLibraryItem(CLibraryItem const&) = delete;
    CLibraryItem& operator=(CLibraryItem const&) = delete;

    tarno::datamodel::ItemIdentity& GetIdentity() const;
    /// The file that the item is stored in, or will be.
    LibraryFile& GetFile() const;
    DataSourcePtr const& GetSource() const;
    int GetCacheIndex() const;

    /// The object as a tree, which is made when it is asked for first and kept: for changing it and
    /// for its graph.
    nlohmann::ordered_json const& GetObject() const;
    /// The object as a tree that is not kept: for what looks at many items once.
    nlohmann::ordered_json CopyObject() const;
    bool HasObject(nlohmann::ordered_json const& object) const;
    /// The object, one that makes an item, has the item's kind and the very text of its uid.
    bool HasIdentityOf(nlohmann::ordered_json const& object) const;
    /// Takes a changed object with this identity, unless it raises.
    void SetObject(nlohmann::ordered_json object, std::pmr::memory_resource& texts);

    /// The object differs from what is on disk.
    bool IsModified() const;
    /// The object is what was on disk when it was read or saved last.
    bool HasSavedObject(nlohmann::ordered_json const& object) const;
    /// What is on disk of it; null for an item that is not there.
    nlohmann::ordered_json const& GetSavedObject() const;
    void SetSavedObject(nlohmann::ordered_json saved);
    /// The object is on disk as it is now.
    void MarkSaved();

    char const* GetName() const;
    /// Empty when there are none.
    char const* GetTags(char const* category) const;
    bool IsSignature() const;
    bool IsLoop() const;
    /// The item's own lock.
    bool IsLocked() const;
    /// Locked, or from a file or data source that is not to be written.
    bool IsReadOnly() const;
    /// UTF-8; null unless the item has a text of that name: "Parent" or "Specializes".
    char const* GetNamedValue(char const* name) const;

private:
    struct Trees
    {
        nlohmann::ordered_json object;
        /// What is on disk, once the object has been changed; null before.
        std::unique_ptr<nlohmann::ordered_json> saved;
    };

    Trees& GetTrees() const;
    void SetTexts(std::string const& texts, std::pmr::memory_resource& memory);
    void SetFlags(ListedObject const& listed);
    char const* GetFirstCategory() const;

    tarno::datamodel::ItemIdentity& m_Identity;
    LibraryFile& m_File;
    /// Null until they are needed.
    mutable std::unique_ptr<Trees> m_Trees;
    ObjectPlace const m_Place;

    /// Zero-terminated texts in one piece: the name, parent and what is specialized where there are
    /// such, then category and tags by turns.
    char* m_Texts = nullptr;
    unsigned m_TextsSize = 0;
    unsigned m_TextsCapacity = 0;

    int const m_CacheIndex;
    bool m_IsSignature : 1;
    bool m_IsLoop : 1;
    bool m_IsLocked : 1;
    bool m_HasParent : 1;
    bool m_HasSpecializes : 1;
};

} // namespace embeddedhost

#endif
