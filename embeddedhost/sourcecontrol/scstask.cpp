#include <sourcecontrol.h>

class ScsTask::Private
{
public:
    QString name;
};

ScsTask::ScsTask(QString const& name)
    : m_Private(new Private{name})
{
}

ScsTask::~ScsTask()
{
    delete m_Private;
}

void ScsTask::RequestObjectStates(std::list<qorm::QormHandle<qorm::IDbObject>> const&)
{
    // Version control is not active: no object has a state.
}

void ScsTask::DeleteMe()
{
    delete this;
}

IRevisionControlPropertiesMgr_Slot::IRevisionControlPropertiesMgr_Slot() = default;
IRevisionControlPropertiesMgr_Slot::~IRevisionControlPropertiesMgr_Slot() = default;
