#include "loggedtest.h"
#include "sourcecontrol/revisioncontrolproperties.h"

using embeddedhost::CRevisionControlProperties;

namespace {

/// A slot with one connection to the manager.
class Slot : public IRevisionControlPropertiesMgr_Slot
{
public:
    explicit Slot(CRevisionControlProperties& manager)
        : m_Entry(m_TrackedSlots.Add())
    {
        manager.Connect(this, m_Entry);
    }

    bool IsConnected() const
    {
        return m_Entry->IsConnected();
    }

    void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* manager) override
    {
        ++calls;
        last = manager;
        // A copy: the call may destroy this slot.
        std::function<void()> const call = onCall;
        if (call)
            call();
    }

    int calls = 0;
    IRevisionControlPropertiesMgr* last = nullptr;
    std::function<void()> onCall;

private:
    KvTrackedSlot* const m_Entry;
};

} // namespace

/// Any of those who are told, and who tells them, may go or come meanwhile.
class TestRevisionControlProperties : public LoggedTest
{
    Q_OBJECT

private:
    void SetUp() override
    {
        m_Manager = std::make_unique<CRevisionControlProperties>();
        for (auto& slot : m_Slots)
            slot = std::make_unique<Slot>(*m_Manager);
        m_Last = m_Slots[2].get();
    }

    void LoseTwo()
    {
        m_Slots[0]->onCall = [&] {
            m_Slots[1].reset();
            m_Slots[0].reset();
        };
    }

    std::unique_ptr<CRevisionControlProperties> m_Manager;
    std::unique_ptr<Slot> m_Slots[3];
    /// The third of them.
    Slot* m_Last = nullptr;

private Q_SLOTS:
    void slotsDieAndComeWhileTheyAreTold()
    {
        std::unique_ptr<Slot> late;
        LoseTwo();
        m_Last->onCall = [&] {
            late = std::make_unique<Slot>(*m_Manager);
        };
        m_Manager->SetAvailable(true);
        QVERIFY(m_Last->calls == 1 && m_Last->last == m_Manager.get() && late->calls == 0);
        m_Last->onCall = nullptr;
        for (int i = 0; i < 2; ++i)
            m_Manager->SetEnabled(false);
        QVERIFY2(m_Last->calls == 2 && late->calls == 1, "told of changes only");
    }

    void slotsDieWhileTheManagerGoes()
    {
        LoseTwo();
        m_Manager.reset();
        QVERIFY(m_Last->calls == 1 && !m_Last->last && !m_Last->IsConnected());
    }

    void managerDiesWhileItTells()
    {
        m_Slots[0]->onCall = [&] {
            m_Manager.reset();
        };
        m_Manager->SetAvailable(true);
        QVERIFY(!m_Slots[0]->last && m_Last->calls == 1 && !m_Last->last);
    }
};

NODEBROWSER_TEST(TestRevisionControlProperties)
#include "tst_revisioncontrolproperties.moc"
