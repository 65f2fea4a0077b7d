#include "storage/jsonchildren.h"

#include "model/itemkeys.h"

#include <utility>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

std::string Dump(ordered_json const& value)
{
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

std::string GetEntryId(ordered_json const& entry)
{
    for (char const* key : {Keys::kUid, Keys::Node::kId, Keys::kName}) {
        auto const found = entry.find(key);
        if (found != entry.end())
            return key + Dump(*found);
    }
    return Dump(entry);
}

std::string ReadKey(std::string_view text)
{
    if (text.find('\\') == text.npos)
        return std::string(text.substr(1, text.size() - 2));
    return ordered_json::parse(text.begin(), text.end()).get<std::string>();
}

} // namespace

JsonChild MakeEntry(ordered_json const& entry)
{
    return {GetEntryId(entry), &entry};
}

JsonChildren ListChildren(ordered_json const& container)
{
    JsonChildren children;
    children.reserve(container.size());
    if (container.is_object()) {
        for (auto const& [key, value] : container.get_ref<ordered_json::object_t const&>())
            children.push_back({key, &value});
    } else {
        for (ordered_json const& entry : container)
            children.push_back(MakeEntry(entry));
    }
    return children;
}

OldChildren::OldChildren(ordered_json const& container, std::string_view text)
    : m_Parts(SplitJson(text))
    , m_Values(m_Parts.all.size())
    , m_NextAlike(m_Parts.all.size(), kNone)
{
    if (container.is_object())
        IndexMembers(ListChildren(container));
    else
        IndexEntries(ListChildren(container));
}

JsonParts const& OldChildren::GetParts() const
{
    return m_Parts;
}

std::size_t OldChildren::Take(std::string const& id)
{
    auto const first = m_First.find(id);
    if (first == m_First.end() || first->second == kNone)
        return kNone;
    return std::exchange(first->second, m_NextAlike[first->second]);
}

ordered_json const& OldChildren::GetValue(std::size_t part) const
{
    return *m_Values[part];
}

void OldChildren::IndexMembers(JsonChildren const& members)
{
    // Later members override earlier ones with the same key.
    for (std::size_t part = 0; part < m_Parts.all.size(); ++part)
        m_First[ReadKey(m_Parts.all[part].key)] = part;
    for (JsonChild const& member : members)
        m_Values[m_First.at(member.id)] = member.value;
}

void OldChildren::IndexEntries(JsonChildren const& entries)
{
    // Backwards, so that of entries with the same id the first one heads the list.
    for (std::size_t part = entries.size(); part-- > 0;) {
        m_Values[part] = entries[part].value;
        auto const [first, isNew] = m_First.emplace(entries[part].id, part);
        if (!isNew)
            m_NextAlike[part] = std::exchange(first->second, part);
    }
}

} // namespace embeddedhost
