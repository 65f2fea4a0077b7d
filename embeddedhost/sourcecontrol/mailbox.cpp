#include "sourcecontrol/mailbox.h"

#include "framework/guardedcall.h"

#include <QPointer>

#include <mutex>
#include <vector>

namespace embeddedhost {

struct CMailbox::Slot::Content
{
    std::mutex mutex;
    /// Null when the box is gone.
    CMailbox* box = nullptr;
    std::vector<Result> results;
};

void CMailbox::Slot::Post(Result const& result)
{
    std::lock_guard<std::mutex> const lock(m_Content->mutex);
    if (!m_Content->box)
        return;
    m_Content->results.push_back(result);
    if (m_Content->results.size() == 1)
        QMetaObject::invokeMethod(m_Content->box, "Deliver", Qt::QueuedConnection);
}

CMailbox::CMailbox()
{
    m_Slot.m_Content = std::make_shared<Slot::Content>();
    m_Slot.m_Content->box = this;
}

CMailbox::~CMailbox()
{
    std::lock_guard<std::mutex> const lock(m_Slot.m_Content->mutex);
    m_Slot.m_Content->box = nullptr;
}

CMailbox::Slot const& CMailbox::GetSlot() const
{
    return m_Slot;
}

void CMailbox::Deliver()
{
    std::vector<Result> results;
    {
        std::lock_guard<std::mutex> const lock(m_Slot.m_Content->mutex);
        results.swap(m_Slot.m_Content->results);
    }
    QPointer<CMailbox> const self(this);
    for (Result const& result : results) {
        RunGuarded(nullptr, QStringLiteral("Source control"), result);
        if (!self)
            return;
    }
}

} // namespace embeddedhost

#include "moc_mailbox.cpp"
