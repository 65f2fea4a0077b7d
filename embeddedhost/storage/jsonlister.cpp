#include "storage/jsonlister.h"

#include "base/text8.h"
#include "model/itemkinds.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace embeddedhost {

namespace dom = simdjson::dom;

namespace {

/// Far below the limit of the slow reader, see kMaxObjectDepth.
constexpr int kMaxPlainDepth = 32;
constexpr std::size_t kMaxPlainMembers = 32;

/// std::all_of does not accept the iterators of simdjson.
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
    // Stricter than the limit, which counts characters, not bytes.
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
    return HasMember(port, Keys::Port::kName, IsText) && HasMember(port, Keys::Port::kType, IsText);
}

bool IsNode(dom::object const& node)
{
    return HasMember(node, Keys::Node::kId, IsText) && HasMember(node, Keys::Node::kItem, IsText)
           && HasMember(node, Keys::Node::kPosition,
                        [](dom::element value) { return IsPairOf(value, IsNumber); });
}

bool IsConnection(dom::object const& connection)
{
    auto const isEnd = [](dom::element value) {
        return IsPairOf(value, IsTextOrInteger);
    };
    return HasMember(connection, Keys::Connection::kFrom, isEnd)
           && HasMember(connection, Keys::Connection::kTo, isEnd);
}

bool IsPortNodes(dom::element value)
{
    dom::object nodes;
    return value.get(nodes) == simdjson::SUCCESS && AllOf(nodes, [](auto const& member) {
               bool const isKnown = member.key == kInputsNode || member.key == kOutputsNode;
               return !isKnown || IsPairOf(member.value, IsNumber);
           });
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

/// Detects repeated keys of an object. A linear search is fastest for few keys.
class UniqueKeys
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
        UniqueKeys keys;
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
        auto tags = std::move(listed.tags);
        tags.clear();
        listed = ListedObject();
        // Reuses its memory.
        listed.tags = std::move(tags);
    }

    bool Read(dom::object const& source)
    {
        UniqueKeys keys;
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
        for (TextMember const& member : kTextMembers) {
            if (key == member.key)
                return ReadText(value, m_Listed.*member.text);
        }
        for (FlagMember const& member : kFlagMembers) {
            if (key == member.key)
                return ReadFlag(value, m_Listed.*member.flag);
        }
        if (key == Keys::kKind)
            return ReadKind(value);
        if (key == Keys::kTags)
            return ReadTags(value);
        return IsPlain(value, 1) && CheckList(key, value);
    }

    bool CheckList(std::string_view key, dom::element value)
    {
        if (key == Keys::kInputs || key == Keys::kOutputs)
            return IsListOf(value, IsPort);
        if (key == Keys::kNodes)
            return IsListOf(value, IsNode) && ReadNodeIds(value);
        if (key == Keys::kPortNodes)
            return IsPortNodes(value);
        return key != Keys::kConnections || IsListOf(value, IsConnection);
    }

    bool ReadNodeIds(dom::element nodes)
    {
        dom::array const list = nodes.get_array();
        for (dom::element const node : list)
            m_NodeIds.push_back(node[Keys::Node::kId].get_string().value());
        // Reserved for the compound's own ports: a node with one of these ids is found as a
        // duplicate.
        m_NodeIds.insert(m_NodeIds.end(), {kInputsNode, kOutputsNode});
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
        UniqueKeys keys;
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

class JsonLister final : public ObjectLister
{
public:
    bool Read(QByteArray const& text) override
    {
        // The two parsers may differ on escaped surrogates, and escaped zeros need a report.
        if (text.contains("\\u"))
            return false;
        dom::element root;
        auto const parsed = m_Parser.parse(text.constData(), std::size_t(text.size()));
        return parsed.get(root) == simdjson::SUCCESS && ReadRoot(root);
    }

    bool IsArray() const override
    {
        return m_IsArray;
    }

    std::vector<ListedObject> const& GetObjects() const override
    {
        return m_Listed;
    }

private:
    bool ReadRoot(dom::element root)
    {
        dom::object single;
        m_IsArray = root.is_array();
        if (!m_IsArray) {
            m_Listed.resize(1);
            return root.get(single) == simdjson::SUCCESS
                   && ObjectListing(m_Listed.front()).Read(single);
        }
        dom::array const entries = root.get_array();
        std::size_t count = 0;
        for (dom::element const entry : entries) {
            // Entries of the file before are used again, since their vectors have memory already.
            if (count == m_Listed.size())
                m_Listed.emplace_back();
            if (entry.get(single) != simdjson::SUCCESS
                || !ObjectListing(m_Listed[count++]).Read(single))
                return false;
        }
        m_Listed.resize(count);
        return true;
    }

    simdjson::dom::parser m_Parser;
    bool m_IsArray = false;
    std::vector<ListedObject> m_Listed;
};

} // namespace

std::unique_ptr<ObjectLister> MakeJsonLister()
{
    return std::make_unique<JsonLister>();
}

} // namespace embeddedhost
