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

/// Caches the states that were delivered last, and signals when to deliver them again: the
/// contract (ScsUtils::kNoState) requires that after a listener has rebuilt its list, which loses
/// them, without requesting them anew.
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

    /// Listeners are about to rebuild their lists: announces all states, debounced.
    void NoteStructureChange();
    /// The item's object was looked up, which the contract has done for each item of a rebuild:
    /// announces its state from the event loop. It is the only sign of a rebuild that was put off,
    /// for example while a panel was hidden.
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
