#ifndef EMBEDDEDHOST_STATEDELIVERY_H
#define EMBEDDEDHOST_STATEDELIVERY_H

#include "sourcecontrol/staterequests.h"

#include <QObject>
#include <QTimer>

#include <deque>
#include <optional>

namespace embeddedhost {

/// Hands states out one by one, with pauses for the event loop: large numbers of them never hold
/// the GUI thread for long.
class CStateDelivery : public QObject
{
    Q_OBJECT

public:
    /// A notification to send: the answer to a request, or, without a state, an announcement of
    /// the state that is known.
    struct Entry
    {
        ItemKey item;
        std::optional<unsigned> answer;
    };

    CStateDelivery();

    void Add(Entry const& entry);
    void Clear();

Q_SIGNALS:
    /// May do anything, the destruction of the sender included.
    void Due(embeddedhost::CStateDelivery::Entry const& entry);
    /// The last one is out.
    void Emptied();

private:
    void DeliverBatch();

    std::deque<Entry> m_Queue;
    QTimer m_Timer;
};

} // namespace embeddedhost

#endif
