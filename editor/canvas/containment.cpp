#include "containment.h"

#include <cctype>
#include <unordered_set>
#include <vector>

namespace {

/// Uids are the same in capital and small letters.
std::string ToUpper(std::string uid)
{
    for (char& character : uid)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    return uid;
}

} // namespace

std::string const* FindContainer(std::set<std::string> const& items, std::string const& other,
                                 BodyOf const& bodyOf)
{
    std::string const wanted = ToUpper(other);
    // Libraries made by other means may hold compounds that contain themselves already. Items
    // visited once did not lead to the other one and need not be visited again.
    std::unordered_set<std::string> seen;
    for (std::string const& item : items) {
        std::vector<std::string> open{item};
        while (!open.empty()) {
            std::string const uid = std::move(open.back());
            open.pop_back();
            std::string const key = ToUpper(uid);
            if (key == wanted)
                return &item;
            if (!seen.insert(key).second)
                continue;
            for (embeddedhost::GraphNode& node : bodyOf(uid).nodes)
                open.push_back(std::move(node.item));
        }
    }
    return nullptr;
}
