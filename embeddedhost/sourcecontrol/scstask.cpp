#include "model/library.h"
#include "sourcecontrol/sourcecontrolservice.h"

#include <sourcecontrol.h>

using namespace embeddedhost;

/// The task is gone when its request is; the service forgets it by itself.
class ScsTask::Private
{
public:
    QString name;
    CStateRequests::RequestPtr request = std::make_shared<StateRequest>();
};

ScsTask::ScsTask(QString const& name)
    : m_Private(new Private)
{
    m_Private->name = name;
}

ScsTask::~ScsTask()
{
    delete m_Private;
}

void ScsTask::RequestObjectStates(std::list<qorm::QormHandle<qorm::IDbObject>> const& objects)
{
    CSourceControlService* const service = CSourceControlService::GetInstance();
    if (!service)
        return;
    std::vector<ItemKey> items;
    for (auto const& object : objects) {
        auto const* const database = CObjectDatabase::From(object.GetInstance());
        CLibraryItem const* const item =
            database ? database->GetItem(object.GetCacheIndex()) : nullptr;
        if (item)
            items.push_back(&item->GetIdentity());
    }
    service->Request(m_Private->request, items);
}

void ScsTask::DeleteMe()
{
    delete this;
    if (CSourceControlService* const service = CSourceControlService::GetInstance())
        service->OnRequestDropped();
}
