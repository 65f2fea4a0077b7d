#include "storage/objectreader.h"

#include "base/text8.h"
#include "model/graphjson.h"
#include "model/itemkinds.h"
#include "model/listedobject.h"

#include <algorithm>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

bool IsLongText(ordered_json const& value)
{
    return value.is_string() && IsTooLong(value.get_ref<std::string const&>());
}

/// The key whose text, or one of whose array of texts, is too long; empty for none.
std::string FindLongMember(ordered_json const& object, std::initializer_list<char const*> keys)
{
    for (char const* key : keys) {
        auto const found = object.find(key);
        if (found == object.end())
            continue;
        if (IsLongText(*found)
            || (found->is_array() && std::any_of(found->begin(), found->end(), IsLongText)))
            return key;
    }
    return std::string();
}

std::string FindLongTag(ordered_json const& object)
{
    auto const tags = object.find(Keys::kTags);
    if (tags == object.end() || !tags->is_object())
        return std::string();
    for (auto const& [category, text] : tags->items()) {
        if (IsTooLong(category) || IsLongText(text))
            return "tags." + category;
    }
    return std::string();
}

std::string FindLongEntry(ordered_json const& object, char const* list,
                          std::initializer_list<char const*> keys)
{
    auto const entries = object.find(list);
    if (entries == object.end() || !entries->is_array())
        return std::string();
    for (std::size_t position = 0; position < entries->size(); ++position) {
        std::string const key = FindLongMember((*entries)[position], keys);
        if (!key.empty())
            return std::string(list) + '[' + std::to_string(position) + "]." + key;
    }
    return std::string();
}

/// Checks the texts that are shown or looked up; others may have any length.
std::string FindLongText(ordered_json const& object)
{
    std::string key =
        FindLongMember(object, {Keys::kUid, Keys::kKind, Keys::kName, Keys::kCategory,
                                Keys::kImplements, Keys::kParent, Keys::kSpecializes});
    if (key.empty())
        key = FindLongTag(object);
    for (char const* const ports : {Keys::kInputs, Keys::kOutputs}) {
        if (key.empty())
            key = FindLongEntry(object, ports, {Keys::Port::kName, Keys::Port::kType});
    }
    if (key.empty())
        key = FindLongEntry(object, Keys::kNodes, {Keys::Node::kId, Keys::Node::kItem});
    return key.empty() ? FindLongEntry(object, Keys::kConnections,
                                       {Keys::Connection::kFrom, Keys::Connection::kTo})
                       : key;
}

class ObjectCheck
{
public:
    ObjectCheck(ordered_json const& object, ObjectFault const& fault)
        : m_Object(object)
        , m_Fault(fault)
    {}

    /// A text that is not empty has to be there.
    std::string const* RequireText(char const* key) const
    {
        auto const found = m_Object.find(key);
        bool const isText = found != m_Object.end() && found->is_string();
        auto const* const text = isText ? found->get_ptr<std::string const*>() : nullptr;
        if (text && !text->empty() && text->find('\0') == std::string::npos)
            return text;
        Report(key, "a text is needed; the object is left out.");
        return nullptr;
    }

    bool RequireKind() const
    {
        std::string const* const kind = RequireText(Keys::kKind);
        if (!kind)
            return false;
        if (FindItemKind(*kind))
            return true;
        m_Fault(QLatin1String(Keys::kKind),
                QStringLiteral("\"%1\" is not known, it must be one of %2; the object is left out.")
                    .arg(QString::fromStdString(*kind), QLatin1String(GetKindList())));
        return false;
    }

    bool RequireShortTexts() const
    {
        std::string const key = FindLongText(m_Object);
        if (key.empty())
            return true;
        m_Fault(QString::fromStdString(key),
                QStringLiteral("the text is longer than %1 characters; the object is left out.")
                    .arg(kMaxTextLength));
        return false;
    }

    void CheckText(char const* key) const
    {
        auto const found = m_Object.find(key);
        if (found != m_Object.end() && !found->is_string())
            Report(key, "it must be a text; it is ignored.");
    }

    void CheckFlag(char const* key) const
    {
        auto const found = m_Object.find(key);
        if (found != m_Object.end() && !found->is_boolean())
            Report(key, "it must be true or false; it is ignored.");
    }

    void CheckTags() const
    {
        auto const found = m_Object.find(Keys::kTags);
        if (found == m_Object.end())
            return;
        if (!found->is_object()) {
            Report(Keys::kTags, "it must be an object of tag strings by category; it is ignored.");
            return;
        }
        for (auto const& [category, tags] : found->items()) {
            if (!tags.is_string())
                Report(("tags." + category).c_str(), "it must be a text; it is ignored.");
        }
    }

    void CheckBody() const
    {
        ReadGraphBody(m_Object, [this](std::string const& key, std::string const& reason) {
            Report(key.c_str(), ("it " + reason + "; it is ignored.").c_str());
        });
    }

private:
    void Report(char const* key, char const* reason) const
    {
        m_Fault(QString::fromUtf8(key), QString::fromUtf8(reason));
    }

    ordered_json const& m_Object;
    ObjectFault const& m_Fault;
};

} // namespace

bool CheckObject(ordered_json const& object, ObjectFault const& fault)
{
    ObjectCheck const check(object, fault);
    if (!check.RequireShortTexts())
        return false;
    bool const hasUid = check.RequireText(Keys::kUid) != nullptr;
    bool const hasKind = check.RequireKind();
    bool const hasName = check.RequireText(Keys::kName) != nullptr;
    if (!hasUid || !hasKind || !hasName)
        return false;

    for (TextMember const& member : kTextMembers)
        check.CheckText(member.key.data());
    for (FlagMember const& member : kFlagMembers)
        check.CheckFlag(member.key.data());
    check.CheckTags();
    check.CheckBody();
    return true;
}

} // namespace embeddedhost
