#include <framework.h>
#include <sourcecontrol.h>

IKvTrackedSignal::~IKvTrackedSignal() = default;

KvTrackedSlot::KvTrackedSlot()
    : m_Signal(nullptr)
{}

KvTrackedSlot::~KvTrackedSlot()
{
    if (m_Signal)
        m_Signal->Disconnect(this);
}

void KvTrackedSlot::Connect(IKvTrackedSignal* signal)
{
    if (signal == m_Signal)
        return;
    // A slot listens to one signal at a time; the previous one must not keep its address.
    if (m_Signal)
        m_Signal->Disconnect(this);
    m_Signal = signal;
}

void KvTrackedSlot::Reset()
{
    m_Signal = nullptr;
}

bool KvTrackedSlot::IsConnected() const
{
    return m_Signal != nullptr;
}

KvTrackedSlotList::KvTrackedSlotList() = default;

KvTrackedSlotList::~KvTrackedSlotList()
{
    for (KvTrackedSlot* entry : m_Entries)
        delete entry;
}

KvTrackedSlot* KvTrackedSlotList::Add()
{
    // Room first, so that a failing push cannot lose the entry.
    m_Entries.reserve(m_Entries.size() + 1);
    m_Entries.push_back(new KvTrackedSlot);
    return m_Entries.back();
}

IRevisionControlPropertiesMgr_Slot::IRevisionControlPropertiesMgr_Slot() = default;
IRevisionControlPropertiesMgr_Slot::~IRevisionControlPropertiesMgr_Slot() = default;
