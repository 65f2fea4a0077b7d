#ifndef EMBEDDEDHOST_REVISIONCONTROLPROPERTIES_H
#define EMBEDDEDHOST_REVISIONCONTROLPROPERTIES_H

#include <sourcecontrol.h>

#include <memory>

namespace embeddedhost {

/// The service "RevisionControlPropertiesMgr". Slots may come and go, and the manager may be
/// destroyed, while they are notified.
class CRevisionControlProperties : public IRevisionControlPropertiesMgr, private IKvTrackedSignal
{
public:
    CRevisionControlProperties();
    /// Notifies the slots that the manager is gone.
    ~CRevisionControlProperties() override;

    /// There is a work tree to show states of.
    void SetAvailable(bool isAvailable);
    /// The user's setting, independent of the work tree. On at first.
    void SetEnabled(bool isEnabled);
    bool IsEnabled() const;

    void Connect(IRevisionControlPropertiesMgr_Slot* slot, KvTrackedSlot* entry) override;
    bool HasRevisionControlEnabled() override;
    void GetRevisionControlEnabled(bool* enabled) override;

private:
    struct Connections;

    void Disconnect(KvTrackedSlot* entry) override;
    void TellSlots();

    /// Shared with running deliveries, which may outlive the manager.
    std::shared_ptr<Connections> m_Connections;
    bool m_IsAvailable = false;
    bool m_IsEnabled = true;
    bool m_IsClosing = false;
};

} // namespace embeddedhost

#endif
