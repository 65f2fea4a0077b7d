#include "storage/objectlister.h"

#include "base/text8.h"
#include "model/itemkinds.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace embeddedhost {

namespace dom = simdjson::dom;

namespace {

/// Far less than what is read at all, see kMaxJsonDepth.
constexpr int kMaxPlainDepth = 32;
constexpr std::size_t kMaxPlainMembers = 32;

/// The parser's iterators are none for standard algorithms.
template <class Range, class IsLike>
bool AllOf(Range const& range, IsLike const& isLike)
{
    for (auto const entry : range) {
        if (!isLike(entry))
            return false;
    }
    return true;
}

bool IsShort(std::string_view text)
{
    // In bytes, of which there are as many as characters or more.
    return text.size() <= std::size_t(kMaxTextLength);
}

bool IsText(dom::element value)
{
    return value.is_string();
}

bool IsTextOrInteger(dom::element value)
{
    return value.is_string() || value.is_int64() || value.is_uint64();
}

bool IsNumber(dom::element value)
{
    return value.is_number();
}

bool IsPairOf(dom::element value, bool (*isEntry)(dom::element))
{
    dom::array pair;
    return value.get(pair) == simdjson::SUCCESS && pair.size() == 2 && AllOf(pair, isEntry);
}

bool HasMember(dom::object const& parent, std::string_view key, bool (*isMember)(dom::element))
{
    dom::element member;
    return parent.at_key(key).get(member) == simdjson::SUCCESS && isMember(member);
}

bool IsPort(dom::object const& port)
{
    return HasMember(port, "name", IsText) && HasMember(port, "type", IsText);
}

bool IsNode(dom::object const& node)
{
    return HasMember(node, "id", IsText) && HasMember(node, "item", IsText)
           && HasMember(node, "position",
                        [](dom::element value) { return IsPairOf(value, IsNumber); });
}

bool IsConnection(dom::object const& connection)
{
    auto const isEnd = [](dom::element value) {
        return IsPairOf(value, IsTextOrInteger);
    };
    return HasMember(connection, "from", isEnd) && HasMember(connection, "to", isEnd);
}

bool IsListOf(dom::element value, bool (*isEntry)(dom::object const&))
{
    dom::array list;
    if (value.get(list) != simdjson::SUCCESS)
        return false;
    return AllOf(list, [&](dom::element entry) {
        dom::object parent;
        return entry.get(parent) == simdjson::SUCCESS && isEntry(parent);
    });
}

/// All keys of an object, looked at one by one: none of them is there twice.
class Keys
{
public:
    /// False for a key that is there already, and for one too many.
    bool Add(std::string_view key)
    {
        auto const end = m_Keys.begin() + std::ptrdiff_t(m_Count);
        if (m_Count == m_Keys.size() || !IsShort(key) || std::find(m_Keys.begin(), end, key) != end)
            return false;
        m_Keys[m_Count++] = key;
        return true;
    }

private:
    std::array<std::string_view, kMaxPlainMembers> m_Keys;
    std::size_t m_Count = 0;
};

/// Short texts, few levels and members, and no key twice.
bool IsPlain(dom::element value, int depth)
{
    switch (value.type()) {
    case dom::element_type::STRING:
        return IsShort(value.get_string().value());
    case dom::element_type::ARRAY: {
        auto const isPlain = [&](dom::element entry) {
            return IsPlain(entry, depth + 1);
        };
        return depth < kMaxPlainDepth && AllOf(dom::array(value.get_array()), isPlain);
    }
    case dom::element_type::OBJECT: {
        Keys keys;
        auto const isPlain = [&](auto const& member) {
            return keys.Add(member.key) && IsPlain(member.value, depth + 1);
        };
        return depth < kMaxPlainDepth && AllOf(dom::object(value.get_object()), isPlain);
    }
    default:
        return true;
    }
}

/// Reads one object of a file.
class ObjectListing
{
public:
    explicit ObjectListing(ListedObject& listed)
        : m_Listed(listed)
    {
        listed.kind = nullptr;
        listed.uid = listed.name = listed.parent = listed.specializes = listed.implements = {};
        listed.tags.clear();
        listed.isSignature = listed.isLoop = listed.isLocked = false;
    }

    bool Read(dom::object const& source)
    {
        Keys keys;
        for (auto const member : source) {
            if (!keys.Add(member.key) || !ReadMember(member.key, member.value))
                return false;
        }
        return m_Listed.kind && !m_Listed.uid.empty() && !m_Listed.name.empty()
               && AreUnique(m_NodeIds);
    }

private:
    bool ReadMember(std::string_view key, dom::element value)
    {
        if (key == "uid")
            return ReadText(value, m_Listed.uid);
        if (key == "kind")
            return ReadKind(value);
        if (key == "name")
            return ReadText(value, m_Listed.name);
        if (key == "tags")
            return ReadTags(value);
        if (key == "parent")
            return ReadText(value, m_Listed.parent);
        if (key == "specializes")
            return ReadText(value, m_Listed.specializes);
        if (key == "implements")
            return ReadText(value, m_Listed.implements);
        if (key == "signature")
            return ReadFlag(value, m_Listed.isSignature);
        if (key == "loop")
            return ReadFlag(value, m_Listed.isLoop);
        if (key == "readOnly")
            return ReadFlag(value, m_Listed.isLocked);
        return IsPlain(value, 1) && CheckOther(key, value);
    }

    bool CheckOther(std::string_view key, dom::element value)
    {
        if (key == "category")
            return IsText(value);
        if (key == "inputs" || key == "outputs")
            return IsListOf(value, IsPort);
        if (key == "nodes")
            return IsListOf(value, IsNode) && ReadNodeIds(value);
        return key != "connections" || IsListOf(value, IsConnection);
    }

    bool ReadNodeIds(dom::element nodes)
    {
        dom::array const list = nodes.get_array();
        for (dom::element const node : list)
            m_NodeIds.push_back(node["id"].get_string().value());
        m_NodeIds.insert(m_NodeIds.end(), {"in", "out"});
        return true;
    }

    static bool AreUnique(std::vector<std::string_view>& texts)
    {
        std::sort(texts.begin(), texts.end());
        return std::adjacent_find(texts.begin(), texts.end()) == texts.end();
    }

    static bool ReadText(dom::element value, std::string_view& text)
    {
        return value.get(text) == simdjson::SUCCESS && IsShort(text);
    }

    static bool ReadFlag(dom::element value, bool& flag)
    {
        return value.get(flag) == simdjson::SUCCESS;
    }

    bool ReadKind(dom::element value)
    {
        std::string_view kind;
        if (value.get(kind) != simdjson::SUCCESS)
            return false;
        m_Listed.kind = FindItemKind(kind);
        return m_Listed.kind;
    }

    bool ReadTags(dom::element value)
    {
        dom::object categories;
        if (value.get(categories) != simdjson::SUCCESS)
            return false;
        Keys keys;
        for (auto const member : categories) {
            std::string_view tags;
            if (!keys.Add(member.key) || !ReadText(member.value, tags))
                return false;
            m_Listed.tags.emplace_back(member.key, tags);
        }
        return true;
    }

    ListedObject& m_Listed;
    std::vector<std::string_view> m_NodeIds;
};

} // namespace

class CObjectLister::Private
{
public:
    bool Read(dom::element root)
    {
        dom::object single;
        isArray = root.is_array();
        if (!isArray) {
            listed.resize(1);
            return root.get(single) == simdjson::SUCCESS
                   && ObjectListing(listed.front()).Read(single);
        }
        dom::array const entries = root.get_array();
        std::size_t count = 0;
        for (dom::element const entry : entries) {
            if (count == listed.size())
                listed.emplace_back();
            if (entry.get(single) != simdjson::SUCCESS
                || !ObjectListing(listed[count++]).Read(single))
                return false;
        }
        listed.resize(count);
        return true;
    }

    simdjson::dom::parser parser;
    bool isArray = false;
    std::vector<ListedObject> listed;
};

CObjectLister::CObjectLister()
    : m_Private(new Private)
{}

CObjectLister::~CObjectLister() = default;

bool CObjectLister::Read(QByteArray const& text)
{
    // Whether a number escapes half a character, or zero, the two parsers need not agree.
    if (text.contains("\\u"))
        return false;
    dom::element root;
    auto const parsed = m_Private->parser.parse(text.constData(), std::size_t(text.size()));
    return parsed.get(root) == simdjson::SUCCESS && m_Private->Read(root);
}

bool CObjectLister::IsArray() const
{
    return m_Private->isArray;
}

std::vector<ListedObject> const& CObjectLister::GetObjects() const
{
    return m_Private->listed;
}

} // namespace embeddedhost
