#ifndef EMBEDDEDHOST_LIBRARYITEM_H
#define EMBEDDEDHOST_LIBRARYITEM_H

#include "model/itemidentity.h"
#include "objects/datasource.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace embeddedhost {

struct LibraryFile;

/// One item: its object as the file has it, and the 8-bit views of it that are asked for often.
class CLibraryItem
{
public:
    /// `object` holds a kind and a name; other keys whose value is not of the right type are
    /// kept but count as absent.
    CLibraryItem(tarno::datamodel::ItemIdentity& identity, DataSourcePtr const& source,
                 nlohmann::ordered_json object);
    CLibraryItem(CLibraryItem const&) = delete;
    CLibraryItem& operator=(CLibraryItem const&) = delete;

    tarno::datamodel::ItemIdentity& GetIdentity() const;
    DataSourcePtr const& GetSource() const;
    nlohmann::ordered_json const& GetObject() const;

    std::string const& GetName() const;
    /// Empty when there are none.
    std::string const& GetTags(char const* category) const;
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

    tarno::datamodel::ItemIdentity& m_Identity;
    DataSourcePtr m_Source;
    nlohmann::ordered_json m_Object;

    std::string m_Name;
    std::vector<std::pair<std::string, std::string>> m_Tags;
    bool m_IsSignature = false;
    bool m_IsLoop = false;
    bool m_IsLocked = false;
    bool m_HasParent = false;
    bool m_HasSpecializes = false;
};

} // namespace embeddedhost

#endif
