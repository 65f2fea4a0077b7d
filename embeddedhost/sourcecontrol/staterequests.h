#ifndef EMBEDDEDHOST_STATEREQUESTS_H
#define EMBEDDEDHOST_STATEREQUESTS_H

#include "model/itemidentity.h"

#include <memory>
#include <unordered_set>
#include <vector>

namespace embeddedhost {

typedef tarno::datamodel::ItemIdentity const* ItemKey;

/// The request of one listener, which owns it; destroying it withdraws the request.
struct StateRequest
{
    /// Items for the next pass: a pass that is running may have read them before they changed.
    std::unordered_set<ItemKey> wanted;
    /// Being looked up, or waiting to be delivered.
    std::unordered_set<ItemKey> asked;
    /// Updates states that were answered before, so no row shows a waiting mark.
    bool isRefresh = false;
};

/// The requests of all listeners.
class CStateRequests
{
public:
    typedef std::shared_ptr<StateRequest> RequestPtr;

    /// A request that is known already may be added again.
    void Add(RequestPtr const& request);
    /// Only the request of a refresh is left, if any.
    bool IsEmpty() const;

    bool IsAnythingWanted() const;
    bool IsAnythingAsked() const;
    /// Whether some request awaits an answer for the item.
    bool IsAwaited(ItemKey item) const;

    /// Starts a pass: returns the items of all requests, each once.
    std::vector<ItemKey> Ask();
    /// False when no living request has asked.
    bool Answer(ItemKey item);
    /// Drops everything that was requested.
    void Clear();

private:
    typedef std::vector<RequestPtr> Requests;
    /// The requests whose owners still exist.
    Requests GetRequests() const;

    mutable std::vector<std::weak_ptr<StateRequest>> m_Requests;
};

} // namespace embeddedhost

#endif
