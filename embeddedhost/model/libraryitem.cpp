#include "model/libraryitem.h"

#include "model/text8.h"

#include <cstring>

namespace embeddedhost {

using nlohmann::ordered_json;
using tarno::datamodel::ItemIdentity;

namespace {

std::string const* FindText(ordered_json const& object, char const* key)
{
    auto const found = object.find(key);
    if (found == object.end() || !found->is_string())
        return nullptr;
    return found->get_ptr<std::string const*>();
}

bool HasText(ordered_json const& object, char const* key)
{
    std::string const* const text = FindText(object, key);
    return text && !text->empty();
}

bool IsSet(ordered_json const& object, char const* key)
{
    auto const found = object.find(key);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

} // namespace

CLibraryItem::CLibraryItem(ItemIdentity& identity, DataSourcePtr const& source,
                           ordered_json object)
    : m_Identity(identity)
    , m_Source(source)
    , m_Object(std::move(object))
{
    ReadObject();
}

void CLibraryItem::ReadObject()
{
    std::string const* const name = FindText(m_Object, "name");
    m_Name = name ? ToLatin1(*name) : std::string();
    m_IsSignature = IsSet(m_Object, "signature");
    m_IsLoop = IsSet(m_Object, "loop");
    m_IsLocked = IsSet(m_Object, "readOnly");
    m_HasParent = HasText(m_Object, "parent");
    m_HasSpecializes = HasText(m_Object, "specializes");

    m_Tags.clear();
    auto const tags = m_Object.find("tags");
    if (tags == m_Object.end() || !tags->is_object())
        return;
    for (auto const& [category, text] : tags->items()) {
        if (text.is_string())
            m_Tags.emplace_back(ToLatin1(category), ToLatin1(text.get_ref<std::string const&>()));
    }
    m_Tags.shrink_to_fit();
}

ItemIdentity& CLibraryItem::GetIdentity() const
{
    return m_Identity;
}

DataSourcePtr const& CLibraryItem::GetSource() const
{
    return m_Source;
}

ordered_json const& CLibraryItem::GetObject() const
{
    return m_Object;
}

std::string const& CLibraryItem::GetName() const
{
    return m_Name;
}

std::string const& CLibraryItem::GetTags(char const* category) const
{
    static std::string const none;
    for (auto const& [name, tags] : m_Tags) {
        if (name == category)
            return tags;
    }
    return none;
}

bool CLibraryItem::IsSignature() const
{
    return m_IsSignature;
}

bool CLibraryItem::IsLoop() const
{
    return m_IsLoop;
}

bool CLibraryItem::IsLocked() const
{
    return m_IsLocked;
}

bool CLibraryItem::IsReadOnly() const
{
    return m_IsLocked || m_Source->GetAccessMode() == qorm::IDataSource::kReadOnlyAccess;
}

std::string const* CLibraryItem::GetNamedValue(char const* name) const
{
    if (m_HasParent && std::strcmp(name, "Parent") == 0)
        return FindText(m_Object, "parent");
    if (m_HasSpecializes && std::strcmp(name, "Specializes") == 0)
        return FindText(m_Object, "specializes");
    return nullptr;
}

} // namespace embeddedhost
