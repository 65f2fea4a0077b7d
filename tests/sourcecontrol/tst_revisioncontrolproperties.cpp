#include "loggedtest.h"
#include "sourcecontrol/revisioncontrolproperties.h"

#include <QTest>

#include <functional>
#include <memory>

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

class TestRevisionControlProperties : public LoggedTest
{
    Q_OBJECT

private Q_SLOTS:
    void slotsAreToldOfChangesOnly();
    void slotsDieWhileTheyAreTold();
    void slotsDieWhileTheManagerGoes();
    void managerDiesWhileItTells();
    void slotsComeWhileOthersAreTold();
};

void TestRevisionControlProperties::slotsAreToldOfChangesOnly()
{
    CRevisionControlProperties manager;
    Slot slot(manager);
    QVERIFY(!manager.HasRevisionControlEnabled());
    manager.SetAvailable(true);
    QCOMPARE(slot.calls, 1);
    QCOMPARE(slot.last, static_cast<IRevisionControlPropertiesMgr*>(&manager));
    QVERIFY(manager.HasRevisionControlEnabled());

    bool isEnabled = false;
    manager.GetRevisionControlEnabled(&isEnabled);
    QVERIFY(isEnabled);
    manager.SetEnabled(false);
    manager.SetEnabled(false);
    QCOMPARE(slot.calls, 2);
    manager.GetRevisionControlEnabled(&isEnabled);
    QVERIFY(!isEnabled);
}

void TestRevisionControlProperties::slotsDieWhileTheyAreTold()
{
    CRevisionControlProperties manager;
    auto first = std::make_unique<Slot>(manager);
    auto second = std::make_unique<Slot>(manager);
    Slot third(manager);
    first->onCall = [&] {
        second.reset();
        first.reset();
    };
    manager.SetAvailable(true);
    QCOMPARE(third.calls, 1);
    manager.SetEnabled(false);
    QCOMPARE(third.calls, 2);
}

void TestRevisionControlProperties::slotsDieWhileTheManagerGoes()
{
    auto manager = std::make_unique<CRevisionControlProperties>();
    auto first = std::make_unique<Slot>(*manager);
    auto second = std::make_unique<Slot>(*manager);
    Slot third(*manager);
    first->onCall = [&] {
        second.reset();
        first.reset();
    };
    manager.reset();
    QCOMPARE(third.calls, 1);
    QVERIFY(!third.last);
    QVERIFY(!third.IsConnected());
}

void TestRevisionControlProperties::managerDiesWhileItTells()
{
    auto manager = std::make_unique<CRevisionControlProperties>();
    Slot first(*manager);
    Slot second(*manager);
    first.onCall = [&] {
        if (first.calls == 1)
            manager.reset();
    };
    manager->SetAvailable(true);
    QVERIFY(!first.last);
    QCOMPARE(second.calls, 1);
    QVERIFY(!second.last);
}

void TestRevisionControlProperties::slotsComeWhileOthersAreTold()
{
    CRevisionControlProperties manager;
    Slot first(manager);
    std::unique_ptr<Slot> second;
    first.onCall = [&] {
        second = std::make_unique<Slot>(manager);
    };
    manager.SetAvailable(true);
    QCOMPARE(second->calls, 0);
    first.onCall = nullptr;
    manager.SetAvailable(false);
    QCOMPARE(second->calls, 1);
}

NODEBROWSER_TEST_MAIN(TestRevisionControlProperties)

#include "tst_revisioncontrolproperties.moc"
