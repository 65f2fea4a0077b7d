#ifndef EMBEDDEDHOST_LIBRARYITEM_H
#define EMBEDDEDHOST_LIBRARYITEM_H

#include "model/itemidentity.h"
#include "model/itemobject.h"
#include "model/libraryfile.h"
#include "model/listedobject.h"
#include "model/objectsource.h"

#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>

namespace embeddedhost {

/// One item: its object, which stays in the text of its file until it is needed, and 8-bit copies
/// of the members that are queried often.
class CLibraryItem
{
public:
    /// `listed` has a kind, a uid and a name. The object stands in the file's source at the place.
    /// `cacheIndex` is the item's place in the object database, -1 for none. `texts` outlives the
    /// item.
    CLibraryItem(tarno::datamodel::ItemIdentity& identity, LibraryFile& file,
                 ListedObject const& listed, ObjectPlace const& place, int cacheIndex,
                 std::pmr::memory_resource& texts);
    /// Takes an object that is not in a file's text. Values of the wrong type are kept but count as
    /// absent.
    CLibraryItem(tarno::datamodel::ItemIdentity& identity, LibraryFile& file, ItemObject object,
                 int cacheIndex, std::pmr::memory_resource& texts);
    ~CLibraryItem();
    CLibraryItem(CLibraryItem const&) = delete;
    CLibraryItem& operator=(CLibraryItem const&) = delete;

    tarno::datamodel::ItemIdentity& GetIdentity() const
    {
        return m_Identity;
    }
    /// The file that the item is stored in, or will be.
    LibraryFile& GetFile() const
    {
        return m_File;
    }
    DataSourcePtr const& GetSource() const
    {
        return m_File.source;
    }
    int GetCacheIndex() const
    {
        return m_CacheIndex;
    }

    /// The object, which the first call parses and caches: for changes and for the graph.
    ItemObject const& GetObject() const;
    /// The object without caching it: for passes over many items.
    ItemObject CopyObject() const;
    bool HasObject(ItemObject const& object) const;
    /// The object, one that makes an item, has the item's kind and its uid in the same case.
    bool HasIdentityOf(ItemObject const& object) const;
    /// Replaces the object by one with the same identity. Unchanged after an exception.
    void SetObject(ItemObject object, std::pmr::memory_resource& texts);

    /// The object differs from the one on disk.
    bool IsModified() const;
    /// The object is the one that was read or saved last.
    bool HasSavedObject(ItemObject const& object) const;
    /// The object that was read or saved last; null for an item that is not on disk.
    ItemObject const& GetSavedObject() const;
    void SetSavedObject(ItemObject saved);
    /// The object is on disk as it is now.
    void MarkSaved();

    char const* GetName() const
    {
        return m_Texts;
    }
    std::string_view GetNameView() const
    {
        return std::string_view(m_Texts, m_NameSize);
    }
    /// Empty when there are none.
    char const* GetTags(char const* category) const;
    bool IsSignature() const
    {
        return m_IsSignature;
    }
    bool IsLoop() const;
    /// The item's own lock.
    bool IsLocked() const;
    /// Locked, or in a read-only file or data source.
    bool IsReadOnly() const;
    /// UTF-8; null unless the item has a text of that name: "Parent" or "Specializes".
    char const* GetNamedValue(char const* name) const
    {
        // Few items have any.
        return m_HasParent || m_HasSpecializes ? FindNamedValue(name) : nullptr;
    }

private:
    struct Trees
    {
        ItemObject object;
        /// The object on disk, once it differs from `object`; null before.
        std::unique_ptr<ItemObject> saved;
    };

    Trees& GetTrees() const;
    void SetTexts(std::string const& texts, std::pmr::memory_resource& memory);
    void SetFlags(ListedObject const& listed);
    char const* FindNamedValue(char const* name) const;
    char const* GetFirstCategory() const;

    tarno::datamodel::ItemIdentity& m_Identity;
    LibraryFile& m_File;
    /// Null until the object is parsed.
    mutable std::unique_ptr<Trees> m_Trees;
    ObjectPlace const m_Place;

    /// Zero-terminated texts in one block: the name, the uids of parent and specialized item if
    /// there are such, then pairs of tag category and tags.
    char* m_Texts = nullptr;
    unsigned m_TextsSize = 0;
    unsigned m_TextsCapacity = 0;

    int const m_CacheIndex;
    /// kMaxTextLength keeps it far below what fits.
    unsigned m_NameSize : 27;
    bool m_IsSignature : 1;
    bool m_IsLoop : 1;
    bool m_IsLocked : 1;
    bool m_HasParent : 1;
    bool m_HasSpecializes : 1;
};

} // namespace embeddedhost

#endif
