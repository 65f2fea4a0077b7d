#include "sourcecontrol/statedelivery.h"

#include <QElapsedTimer>
#include <QPointer>

namespace embeddedhost {

namespace {

/// In milliseconds: half a frame, so that the screen follows meanwhile.
constexpr int kBatchTime = 8;

} // namespace

CStateDelivery::CStateDelivery()
{
    m_Timer.setSingleShot(true);
    connect(&m_Timer, &QTimer::timeout, this, &CStateDelivery::DeliverBatch);
}

void CStateDelivery::Add(Entry const& entry)
{
    m_Queue.push_back(entry);
    if (!m_Timer.isActive())
        m_Timer.start();
}

void CStateDelivery::Clear()
{
    m_Queue.clear();
    m_Timer.stop();
}

void CStateDelivery::DeliverBatch()
{
    // Already now, for listeners that run an event loop of their own.
    m_Timer.start();
    QPointer<CStateDelivery> const self(this);
    QElapsedTimer time;
    time.start();
    while (!m_Queue.empty() && time.elapsed() < kBatchTime) {
        Entry const entry = m_Queue.front();
        m_Queue.pop_front();
        Q_EMIT Due(entry);
        if (!self)
            return;
    }
    if (m_Queue.empty()) {
        m_Timer.stop();
        Q_EMIT Emptied();
    }
}

} // namespace embeddedhost

#include "moc_statedelivery.cpp"
