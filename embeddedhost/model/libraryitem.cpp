#include "model/libraryitem.h"

#include "base/text8.h"

#include <cstring>

namespace embeddedhost {

using nlohmann::ordered_json;
using tarno::datamodel::ItemIdentity;

namespace {

/// Cut at the first zero byte, where the contract's texts end.
void AppendText(std::string& texts, std::string_view text)
{
    texts.append(text.substr(0, text.find('\0'))).push_back('\0');
}

void AppendText8(std::string& texts, std::string_view utf8)
{
    if (IsAscii(utf8))
        AppendText(texts, utf8);
    else
        AppendText(texts, ToText8(std::string(utf8)));
}

std::string MakeTexts(ListedObject const& listed)
{
    std::string texts;
    AppendText8(texts, listed.name);
    for (std::string_view const reference : {listed.parent, listed.specializes}) {
        if (!reference.empty())
            AppendText(texts, reference);
    }
    for (auto const& [category, tags] : listed.tags) {
        AppendText8(texts, category);
        AppendText8(texts, tags);
    }
    return texts;
}

char const* NextText(char const* text)
{
    return text + std::strlen(text) + 1;
}

} // namespace

CLibraryItem::CLibraryItem(ItemIdentity& identity, LibraryFile& file, ListedObject const& listed,
                           ObjectPlace const& place, int cacheIndex,
                           std::pmr::memory_resource& texts)
    : m_Identity(identity)
    , m_File(file)
    , m_Place(place)
    , m_CacheIndex(cacheIndex)
{
    SetTexts(MakeTexts(listed), texts);
    SetFlags(listed);
}

CLibraryItem::CLibraryItem(ItemIdentity& identity, LibraryFile& file, ordered_json object,
                           int cacheIndex, std::pmr::memory_resource& texts)
    : CLibraryItem(identity, file, ListObject(object), ObjectPlace(), cacheIndex, texts)
{
    m_Trees = std::make_unique<Trees>();
    m_Trees->object = std::move(object);
}

CLibraryItem::~CLibraryItem() = default;

void CLibraryItem::SetTexts(std::string const& texts, std::pmr::memory_resource& memory)
{
    // The arena cannot free single blocks, so the old one is used again if the texts fit.
    if (texts.size() > m_TextsCapacity) {
        m_Texts = static_cast<char*>(memory.allocate(texts.size(), 1));
        m_TextsCapacity = unsigned(texts.size());
    }
    m_TextsSize = unsigned(texts.size());
    texts.copy(m_Texts, texts.size());
    m_NameSize = unsigned(texts.find('\0'));
}

void CLibraryItem::SetFlags(ListedObject const& listed)
{
    m_IsSignature = listed.isSignature;
    m_IsLoop = listed.isLoop;
    m_IsLocked = listed.isLocked;
    m_HasParent = !listed.parent.empty();
    m_HasSpecializes = !listed.specializes.empty();
}

CLibraryItem::Trees& CLibraryItem::GetTrees() const
{
    if (!m_Trees) {
        auto trees = std::make_unique<Trees>();
        trees->object = m_File.objects->Read(m_Place);
        m_Trees = std::move(trees);
    }
    return *m_Trees;
}

ordered_json const& CLibraryItem::GetObject() const
{
    return GetTrees().object;
}

ordered_json CLibraryItem::CopyObject() const
{
    return m_Trees ? m_Trees->object : m_File.objects->Read(m_Place);
}

bool CLibraryItem::HasObject(ordered_json const& object) const
{
    return m_Trees ? m_Trees->object == object : m_File.objects->Read(m_Place) == object;
}

bool CLibraryItem::HasIdentityOf(ordered_json const& object) const
{
    return object[Keys::kKind] == m_Identity.kind && object[Keys::kUid] == m_Identity.uid;
}

void CLibraryItem::SetObject(ordered_json object, std::pmr::memory_resource& texts)
{
    // Everything that may throw comes first: the item is changed as a whole or not at all.
    ListedObject const listed = ListObject(object);
    Trees& trees = GetTrees();
    if (!trees.saved)
        trees.saved = std::make_unique<ordered_json>(trees.object);
    SetTexts(MakeTexts(listed), texts);
    SetFlags(listed);
    trees.object = std::move(object);
}

bool CLibraryItem::IsModified() const
{
    return m_Trees && m_Trees->saved && *m_Trees->saved != m_Trees->object;
}

bool CLibraryItem::HasSavedObject(ordered_json const& object) const
{
    return m_Trees && m_Trees->saved ? *m_Trees->saved == object : HasObject(object);
}

ordered_json const& CLibraryItem::GetSavedObject() const
{
    Trees const& trees = GetTrees();
    return trees.saved ? *trees.saved : trees.object;
}

void CLibraryItem::SetSavedObject(ordered_json saved)
{
    Trees& trees = GetTrees();
    if (saved == trees.object)
        trees.saved.reset();
    else
        trees.saved = std::make_unique<ordered_json>(std::move(saved));
}

void CLibraryItem::MarkSaved()
{
    if (m_Trees)
        m_Trees->saved.reset();
}

char const* CLibraryItem::GetFirstCategory() const
{
    char const* text = m_Texts + m_NameSize + 1;
    for (bool const isSkipped : {m_HasParent, m_HasSpecializes})
        text = isSkipped ? NextText(text) : text;
    return text;
}

char const* CLibraryItem::GetTags(char const* category) const
{
    char const* const end = m_Texts + m_TextsSize;
    for (char const* text = GetFirstCategory(); text != end;) {
        char const* const tags = NextText(text);
        if (std::strcmp(text, category) == 0)
            return tags;
        text = NextText(tags);
    }
    return "";
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

char const* CLibraryItem::FindNamedValue(char const* name) const
{
    if (m_HasParent && std::strcmp(name, "Parent") == 0)
        return NextText(m_Texts);
    if (m_HasSpecializes && std::strcmp(name, "Specializes") == 0)
        return m_HasParent ? NextText(NextText(m_Texts)) : NextText(m_Texts);
    return nullptr;
}

} // namespace embeddedhost
