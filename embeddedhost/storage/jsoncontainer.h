#ifndef EMBEDDEDHOST_JSONCONTAINER_H
#define EMBEDDEDHOST_JSONCONTAINER_H

#include <nlohmann/json.hpp>

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embeddedhost {

/// An object or array whose end has not been read yet. It is reused for the next one, to save
/// allocations.
class JsonContainer
{
public:
    void Open(bool isArray);
    /// The key of the next value. False for a repeated key, whose value will be replaced.
    bool OpenMember(std::string const& key);
    void Add(nlohmann::ordered_json value);
    /// The container, without spare memory.
    nlohmann::ordered_json Close();

    bool IsArray() const;
    /// The index of the current entry.
    std::size_t GetPosition() const;
    /// The key of the current member.
    std::string const& GetKey() const;

private:
    std::size_t FindMember(std::string const& key) const;
    nlohmann::ordered_json CloseArray();
    nlohmann::ordered_json CloseObject();

    bool m_IsArray = false;
    nlohmann::ordered_json::array_t m_Entries;
    std::vector<std::pair<std::string, nlohmann::ordered_json>> m_Members;
    std::size_t m_Current = 0;
    /// Index of the members after the first few, which are searched linearly.
    std::unordered_map<std::string, std::size_t> m_Positions;
};

} // namespace embeddedhost

#endif
