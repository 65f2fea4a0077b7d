#ifndef EMBEDDEDHOST_JSONCONTAINER_H
#define EMBEDDEDHOST_JSONCONTAINER_H

#include <nlohmann/json.hpp>

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embeddedhost {

/// An object or array of which the end has not been read yet. It can be used for one after the
/// other, and keeps its memory meanwhile.
class JsonContainer
{
public:
    void Open(bool isArray);
    /// The key of the value that comes. False when there was such a key already, of which the new
    /// value takes the place.
    bool OpenMember(std::string const& key);
    void Add(nlohmann::ordered_json value);
    /// What was collected, in no more memory than it needs.
    nlohmann::ordered_json Close();

    bool IsArray() const;
    /// Of the entry that is being read, from 0.
    std::size_t GetPosition() const;
    /// Of the member that is being read.
    std::string const& GetKey() const;

private:
    std::size_t FindMember(std::string const& key) const;
    nlohmann::ordered_json CloseArray();
    nlohmann::ordered_json CloseObject();

    bool m_IsArray = false;
    nlohmann::ordered_json::array_t m_Entries;
    std::vector<std::pair<std::string, nlohmann::ordered_json>> m_Members;
    std::size_t m_Current = 0;
    /// Of the members that come after the first few.
    std::unordered_map<std::string, std::size_t> m_Positions;
};

} // namespace embeddedhost

#endif
