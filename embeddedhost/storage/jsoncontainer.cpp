#include "storage/jsoncontainer.h"

#include <algorithm>
#include <iterator>

namespace embeddedhost {

using nlohmann::ordered_json;

namespace {

/// The maximum of members for which a linear search is faster than an index.
constexpr std::size_t kFewMembers = 32;

} // namespace

void JsonContainer::Open(bool isArray)
{
    m_IsArray = isArray;
}

bool JsonContainer::OpenMember(std::string const& key)
{
    m_Current = FindMember(key);
    if (m_Current < m_Members.size())
        return false;
    if (m_Members.size() >= kFewMembers)
        m_Positions.emplace(key, m_Current);
    m_Members.emplace_back(key, nullptr);
    return true;
}

void JsonContainer::Add(ordered_json value)
{
    if (m_IsArray)
        m_Entries.push_back(std::move(value));
    else
        m_Members[m_Current].second = std::move(value);
}

ordered_json JsonContainer::Close()
{
    return m_IsArray ? CloseArray() : CloseObject();
}

bool JsonContainer::IsArray() const
{
    return m_IsArray;
}

std::size_t JsonContainer::GetPosition() const
{
    return m_Entries.size();
}

std::string const& JsonContainer::GetKey() const
{
    return m_Members[m_Current].first;
}

/// The number of members when there is none.
std::size_t JsonContainer::FindMember(std::string const& key) const
{
    std::size_t const few = std::min(m_Members.size(), kFewMembers);
    for (std::size_t member = 0; member < few; ++member) {
        if (m_Members[member].first == key)
            return member;
    }
    auto const found = m_Positions.find(key);
    return found == m_Positions.end() ? m_Members.size() : found->second;
}

ordered_json JsonContainer::CloseArray()
{
    ordered_json::array_t entries(std::make_move_iterator(m_Entries.begin()),
                                  std::make_move_iterator(m_Entries.end()));
    m_Entries.clear();
    return ordered_json(std::move(entries));
}

ordered_json JsonContainer::CloseObject()
{
    ordered_json::object_t members;
    members.reserve(m_Members.size());
    for (auto& [key, value] : m_Members)
        members.emplace_back(std::move(key), std::move(value));
    m_Members.clear();
    // Not cleared: clear() takes time for all buckets that the largest object has left behind.
    if (!m_Positions.empty())
        m_Positions = {};
    return ordered_json(std::move(members));
}

} // namespace embeddedhost
