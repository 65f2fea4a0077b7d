#include "sourcecontrol/revisioncontrolproperties.h"

#include <algorithm>
#include <vector>

namespace embeddedhost {

namespace {

struct Connection
{
    KvTrackedSlot* entry;
    IRevisionControlPropertiesMgr_Slot* slot;
};

} // namespace

struct CRevisionControlProperties::Connections
{
    std::vector<Connection>::iterator Find(KvTrackedSlot const* entry)
    {
        return std::find_if(list.begin(), list.end(), [entry](Connection const& connection) {
            return connection.entry == entry;
        });
    }

    std::vector<Connection> list;
};

CRevisionControlProperties::CRevisionControlProperties()
    : m_Connections(std::make_shared<Connections>())
{}

CRevisionControlProperties::~CRevisionControlProperties()
{
    // A slot may destroy others, so each is removed from the list before its call, and the rest
    // stay in it.
    m_IsClosing = true;
    auto const connections = m_Connections;
    while (!connections->list.empty()) {
        Connection const first = connections->list.front();
        connections->list.erase(connections->list.begin());
        first.entry->Reset();
        first.slot->OnRevisionControlPropertiesChange(nullptr);
    }
}

void CRevisionControlProperties::SetAvailable(bool isAvailable)
{
    if (isAvailable == m_IsAvailable)
        return;
    m_IsAvailable = isAvailable;
    TellSlots();
}

void CRevisionControlProperties::SetEnabled(bool isEnabled)
{
    if (isEnabled == m_IsEnabled)
        return;
    m_IsEnabled = isEnabled;
    TellSlots();
}

bool CRevisionControlProperties::IsEnabled() const
{
    return m_IsEnabled;
}

void CRevisionControlProperties::Connect(IRevisionControlPropertiesMgr_Slot* slot,
                                         KvTrackedSlot* entry)
{
    if (!slot || !entry || m_IsClosing)
        return;
    entry->Connect(this);
    auto const known = m_Connections->Find(entry);
    if (known != m_Connections->list.end())
        known->slot = slot;
    else
        m_Connections->list.push_back({entry, slot});
}

bool CRevisionControlProperties::HasRevisionControlEnabled()
{
    return m_IsAvailable;
}

void CRevisionControlProperties::GetRevisionControlEnabled(bool* enabled)
{
    if (enabled)
        *enabled = m_IsEnabled;
}

void CRevisionControlProperties::Disconnect(KvTrackedSlot* entry)
{
    auto const found = m_Connections->Find(entry);
    if (found != m_Connections->list.end())
        m_Connections->list.erase(found);
}

void CRevisionControlProperties::TellSlots()
{
    auto const connections = m_Connections;
    std::vector<Connection> const told = connections->list;
    for (Connection const& connection : told) {
        // An earlier slot may have destroyed it, or the manager itself.
        auto const current = connections->Find(connection.entry);
        if (current != connections->list.end())
            current->slot->OnRevisionControlPropertiesChange(this);
    }
}

} // namespace embeddedhost
