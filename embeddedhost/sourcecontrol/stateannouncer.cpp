#include "sourcecontrol/stateannouncer.h"

namespace embeddedhost {

namespace {

/// A pause this long, in milliseconds, ends a burst of changes.
constexpr int kBurstPause = 50;

} // namespace

CStateAnnouncer::CStateAnnouncer()
{
    m_Timer.setSingleShot(true);
    connect(&m_Timer, &QTimer::timeout, this, &CStateAnnouncer::SendDue);
}

void CStateAnnouncer::Remember(ItemKey item, unsigned state)
{
    m_States[item] = state;
}

void CStateAnnouncer::Forget()
{
    m_States.clear();
    m_LookedUp.clear();
    m_IsAllDue = false;
    m_Timer.stop();
}

std::optional<unsigned> CStateAnnouncer::Find(ItemKey item) const
{
    auto const found = m_States.find(item);
    return found == m_States.end() ? std::nullopt : std::make_optional(found->second);
}

std::vector<ItemKey> CStateAnnouncer::GetItems() const
{
    std::vector<ItemKey> items;
    for (auto const& state : m_States)
        items.push_back(state.first);
    return items;
}

void CStateAnnouncer::NoteStructureChange()
{
    if (m_States.empty())
        return;
    m_IsAllDue = true;
    // Otherwise the timer is running with a shorter interval, and SendDue sends all.
    if (m_LookedUp.empty())
        m_Timer.start(kBurstPause);
}

void CStateAnnouncer::NoteLookUp(ItemKey item)
{
    if (m_States.find(item) == m_States.end())
        return;
    if (m_LookedUp.empty())
        m_Timer.start(0);
    m_LookedUp.insert(item);
}

void CStateAnnouncer::SendDue()
{
    std::vector<ItemKey> const items =
        m_IsAllDue ? GetItems() : std::vector<ItemKey>(m_LookedUp.begin(), m_LookedUp.end());
    m_IsAllDue = false;
    m_LookedUp.clear();
    Q_EMIT Due(items);
}

} // namespace embeddedhost

#include "moc_stateannouncer.cpp"
