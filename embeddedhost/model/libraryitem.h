#ifndef EMBEDDEDHOST_LIBRARYITEM_H
#define EMBEDDEDHOST_LIBRARYITEM_H

#include "model/itemidentity.h"
#include "objects/datasource.h"

#include <nlohmann/json.hpp>

#include <memory_resource>
#include <string>

namespace embeddedhost {

/// One item: its object as the file has it, and the 8-bit views of it that are asked for often.
class CLibraryItem
{
public:
    /// `object` holds a kind and a name; other keys whose value is not of the right type are
    /// kept but count as absent. `cacheIndex` is the item's place in the object database, -1
    /// for none. `texts` outlives the item.
    CLibraryItem(tarno::datamodel::ItemIdentity& identity, DataSourcePtr const& source,
                 nlohmann::ordered_json object, int cacheIndex,
                 std::pmr::memory_resource& texts);
    CLibraryItem(CLibraryItem const&) = delete;
    CLibraryItem& operator=(CLibraryItem const&) = delete;

    tarno::datamodel::ItemIdentity& GetIdentity() const;
    DataSourcePtr const& GetSource() const;
    nlohmann::ordered_json const& GetObject() const;
    int GetCacheIndex() const;

    char const* GetName() const;
    /// Empty when there are none.
    char const* GetTags(char const* category) const;
    bool IsSignature() const;
    bool IsLoop() const;
    /// The item's own lock.
    bool IsLocked() const;
    /// Locked, or from a data source that is not to be written.
    bool IsReadOnly() const;
    /// Null unless the item has a text of that name: "Parent" or "Specializes".
    std::string const* GetNamedValue(char const* name) const;

private:
    void ReadObject();
    void ReadTexts();

    tarno::datamodel::ItemIdentity& m_Identity;
    DataSourcePtr m_Source;
    nlohmann::ordered_json m_Object;

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
