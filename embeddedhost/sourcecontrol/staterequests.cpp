#include "sourcecontrol/staterequests.h"

#include <algorithm>

namespace embeddedhost {

void CStateRequests::Add(RequestPtr const& request)
{
    Requests const known = GetRequests();
    if (std::find(known.begin(), known.end(), request) == known.end())
        m_Requests.push_back(request);
}

bool CStateRequests::IsEmpty() const
{
    Requests const requests = GetRequests();
    return std::all_of(requests.begin(), requests.end(),
                       [](RequestPtr const& request) { return request->isRefresh; });
}

bool CStateRequests::IsAnythingWanted() const
{
    Requests const requests = GetRequests();
    return std::any_of(requests.begin(), requests.end(),
                       [](RequestPtr const& request) { return !request->wanted.empty(); });
}

bool CStateRequests::IsAnythingAsked() const
{
    Requests const requests = GetRequests();
    return std::any_of(requests.begin(), requests.end(),
                       [](RequestPtr const& request) { return !request->asked.empty(); });
}

bool CStateRequests::IsAwaited(ItemKey item) const
{
    Requests const requests = GetRequests();
    return std::any_of(requests.begin(), requests.end(), [item](RequestPtr const& request) {
        return !request->isRefresh
               && (request->wanted.count(item) != 0 || request->asked.count(item) != 0);
    });
}

std::vector<ItemKey> CStateRequests::Ask()
{
    std::unordered_set<ItemKey> all;
    for (RequestPtr const& request : GetRequests()) {
        all.insert(request->wanted.begin(), request->wanted.end());
        request->asked.merge(request->wanted);
        request->wanted.clear();
    }
    return std::vector<ItemKey>(all.begin(), all.end());
}

bool CStateRequests::Answer(ItemKey item)
{
    bool wasAsked = false;
    for (RequestPtr const& request : GetRequests())
        wasAsked = request->asked.erase(item) != 0 || wasAsked;
    return wasAsked;
}

void CStateRequests::Clear()
{
    for (RequestPtr const& request : GetRequests()) {
        request->wanted.clear();
        request->asked.clear();
    }
}

CStateRequests::Requests CStateRequests::GetRequests() const
{
    // Weak pointers, because a task may be deleted before its answer comes; expired ones are
    // dropped.
    Requests alive;
    for (auto const& request : m_Requests) {
        if (RequestPtr const locked = request.lock())
            alive.push_back(locked);
    }
    m_Requests.assign(alive.begin(), alive.end());
    return alive;
}

} // namespace embeddedhost
