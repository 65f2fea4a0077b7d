#ifndef EMBEDDEDHOST_STATEANNOUNCER_H
#define EMBEDDEDHOST_STATEANNOUNCER_H

#include "sourcecontrol/staterequests.h"

#include <QObject>
#include <QTimer>

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace embeddedhost {

/// Remembers the states that were delivered last, and tells when they have to be delivered once
/// more: a panel that has rebuilt its rows has lost them and does not ask again.
class CStateAnnouncer : public QObject
{
    Q_OBJECT

public:
    CStateAnnouncer();

    void Remember(ItemKey item, unsigned state);
    void Forget();
    /// Nothing when it was never delivered.
    std::optional<unsigned> Find(ItemKey item) const;
    std::vector<ItemKey> GetItems() const;

    /// Panels are going to rebuild their rows; all states are due when such changes pause.
    void NoteStructureChange();
    /// Somebody has looked at the item, as a panel does with each row that it makes: its state
    /// is due as soon as he is ready. This also reaches panels that rebuild much later, because
    /// they were hidden.
    void NoteLookUp(ItemKey item);

Q_SIGNALS:
    void Due(std::vector<embeddedhost::ItemKey> const& items);

private:
    void SendDue();

    std::unordered_map<ItemKey, unsigned> m_States;
    std::unordered_set<ItemKey> m_LookedUp;
    bool m_IsAllDue = false;
    QTimer m_Timer;
};

} // namespace embeddedhost

#endif
