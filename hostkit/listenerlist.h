#ifndef HOSTKIT_LISTENERLIST_H
#define HOSTKIT_LISTENERLIST_H

#include <algorithm>
#include <cstddef>
#include <vector>

namespace hostkit {

/// Listeners, called in the order they were added. During a call any may be added or removed, and
/// another delivery may begin: a removed one is not called any more, an added one is called from
/// the next delivery on. The list itself has to outlive the delivery. Listeners are not owned.
template <class Listener>
class ListenerList
{
public:
    /// Adds at the end. A listener that is in the list already stays where it is; null is ignored.
    void Add(Listener* listener)
    {
        if (listener
            && std::find(m_Listeners.begin(), m_Listeners.end(), listener) == m_Listeners.end())
            m_Listeners.push_back(listener);
    }

    /// Does nothing for null, and for one that is not in the list.
    void Remove(Listener* listener)
    {
        auto const found = std::find(m_Listeners.begin(), m_Listeners.end(), listener);
        if (!listener || found == m_Listeners.end())
            return;
        // A running delivery iterates by position, so none may shift.
        if (m_Deliveries > 0)
            *found = nullptr;
        else
            m_Listeners.erase(found);
    }

    /// Calls `call(Listener&)` for each; exceptions pass through.
    template <class Call>
    void ForEach(Call const& call)
    {
        Delivery const delivery(*this);
        std::size_t const count = m_Listeners.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (Listener* const listener = m_Listeners[i])
                call(*listener);
        }
    }

private:
    class Delivery
    {
    public:
        explicit Delivery(ListenerList& list)
            : m_List(list)
        {
            ++m_List.m_Deliveries;
        }
        ~Delivery()
        {
            if (--m_List.m_Deliveries > 0)
                return;
            auto& listeners = m_List.m_Listeners;
            listeners.erase(std::remove(listeners.begin(), listeners.end(), nullptr),
                            listeners.end());
        }

    private:
        ListenerList& m_List;
    };

    /// Null where a listener was removed during a delivery.
    std::vector<Listener*> m_Listeners;
    int m_Deliveries = 0;
};

} // namespace hostkit

#endif
