#include "model/libraryitem.h"

#include "base/text8.h"

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

void AppendText(std::string& texts, std::string const& utf8)
{
    // A zero within a text ends it, as it does for whoever is handed the text.
    texts.append(ToLatin1(utf8).c_str()).push_back('\0');
}

/// Name, then category and tags by turns.
std::string MakeTexts(ordered_json const& object)
{
    std::string const* const name = FindText(object, "name");
    std::string texts;
    AppendText(texts, name ? *name : std::string());
    auto const tags = object.find("tags");
    if (tags == object.end() || !tags->is_object())
        return texts;
    for (auto const& [category, text] : tags->items()) {
        if (!text.is_string())
            continue;
        AppendText(texts, category);
        AppendText(texts, text.get_ref<std::string const&>());
    }
    return texts;
}

char const* NextText(char const* text)
{
    return text + std::strlen(text) + 1;
}

bool IsSet(ordered_json const& object, char const* key)
{
    auto const found = object.find(key);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

} // namespace

CLibraryItem::CLibraryItem(ItemIdentity& identity, LibraryFile& file, ordered_json object,
                           int cacheIndex, std::pmr::memory_resource& texts)
    : m_Identity(identity)
    , m_File(file)
    , m_Object(std::move(object))
    , m_Texts(MakeTexts(m_Object), &texts)
    , m_CacheIndex(cacheIndex)
{
    ReadFlags();
}

void CLibraryItem::ReadFlags()
{
    m_IsSignature = IsSet(m_Object, "signature");
    m_IsLoop = IsSet(m_Object, "loop");
    m_IsLocked = IsSet(m_Object, "readOnly");
    m_HasParent = HasText(m_Object, "parent");
    m_HasSpecializes = HasText(m_Object, "specializes");
}

ItemIdentity& CLibraryItem::GetIdentity() const
{
    return m_Identity;
}

LibraryFile& CLibraryItem::GetFile() const
{
    return m_File;
}

DataSourcePtr const& CLibraryItem::GetSource() const
{
    return m_File.source;
}

ordered_json const& CLibraryItem::GetObject() const
{
    return m_Object;
}

bool CLibraryItem::HasIdentityOf(ordered_json const& object) const
{
    return object["kind"] == m_Object["kind"] && object["uid"] == m_Object["uid"];
}

void CLibraryItem::SetObject(ordered_json object)
{
    // Whatever may fail comes first: the item is changed as a whole or not at all.
    std::string const texts = MakeTexts(object);
    m_Texts.reserve(texts.size());
    if (!m_SavedObject)
        m_SavedObject = std::make_unique<ordered_json>(m_Object);
    m_Object = std::move(object);
    m_Texts.assign(texts.begin(), texts.end());
    ReadFlags();
}

bool CLibraryItem::IsModified() const
{
    return m_SavedObject && *m_SavedObject != m_Object;
}

bool CLibraryItem::HasSavedObject(ordered_json const& object) const
{
    return GetSavedObject() == object;
}

ordered_json const& CLibraryItem::GetSavedObject() const
{
    return m_SavedObject ? *m_SavedObject : m_Object;
}

void CLibraryItem::SetSavedObject(ordered_json saved)
{
    if (saved == m_Object)
        m_SavedObject.reset();
    else
        m_SavedObject = std::make_unique<ordered_json>(std::move(saved));
}

int CLibraryItem::GetCacheIndex() const
{
    return m_CacheIndex;
}

char const* CLibraryItem::GetName() const
{
    return m_Texts.c_str();
}

char const* CLibraryItem::GetTags(char const* category) const
{
    char const* const end = m_Texts.data() + m_Texts.size();
    for (char const* text = NextText(GetName()); text != end;) {
        char const* const tags = NextText(text);
        if (std::strcmp(text, category) == 0)
            return tags;
        text = NextText(tags);
    }
    return "";
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
    return m_IsLocked || m_File.isReadOnly
           || GetSource()->GetAccessMode() == qorm::IDataSource::kReadOnlyAccess;
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
