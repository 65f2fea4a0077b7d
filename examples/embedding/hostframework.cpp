// The application's framework, without services, and source control, without states.

#include <framework.h>
#include <sourcecontrol.h>

namespace {

class NoServices : public wek::fwk::ISystem
{
public:
    wek::IBase* GetService(char const* /*name*/) override
    {
        return nullptr;
    }
};

} // namespace

wek::IBase::~IBase() {}
wek::fwk::ISystem::~ISystem() {}

wek::fwk::ISystem* wekGetSystem()
{
    static NoServices system;
    return &system;
}

// Without the service that connects them, lists of connections stay empty.
KvTrackedSlot::KvTrackedSlot()
    : m_Signal(nullptr)
{}
KvTrackedSlot::~KvTrackedSlot() {}
KvTrackedSlotList::KvTrackedSlotList() {}
KvTrackedSlotList::~KvTrackedSlotList()
{
    for (KvTrackedSlot* entry : m_Entries)
        delete entry;
}
KvTrackedSlot* KvTrackedSlotList::Add()
{
    m_Entries.push_back(new KvTrackedSlot);
    return m_Entries.back();
}

IRevisionControlPropertiesMgr_Slot::IRevisionControlPropertiesMgr_Slot() {}
IRevisionControlPropertiesMgr_Slot::~IRevisionControlPropertiesMgr_Slot() {}

ScsTask::ScsTask(QString const& /*name*/)
    : m_Private(nullptr)
{}
ScsTask::~ScsTask() {}
void ScsTask::RequestObjectStates(std::list<qorm::QormHandle<qorm::IDbObject>> const&) {}
void ScsTask::DeleteMe()
{
    delete this;
}

bool ScsUtils::IsFileVersionControlActive()
{
    return false;
}
QPixmap ScsUtils::getAssetStateIcon(QPixmap& base, unsigned int, bool, bool)
{
    return base;
}
QString ScsUtils::GetToolTip(qorm::QormHandle<qorm::IDbObject>, QString const&)
{
    return QString();
}
