// A host without source control: no states, no tool tips.

#include <sourcecontrol.h>

ScsTask::ScsTask(QString const& /*name*/)
    : m_Private(nullptr)
{}

ScsTask::~ScsTask() = default;

void ScsTask::RequestObjectStates(std::list<qorm::QormHandle<qorm::IDbObject>> const& /*objects*/)
{}

void ScsTask::DeleteMe()
{
    delete this;
}

namespace ScsUtils {

bool IsFileVersionControlActive()
{
    return false;
}

QPixmap getAssetStateIcon(QPixmap& base, unsigned int /*state*/, bool /*active*/, bool /*plain*/)
{
    return base;
}

QString GetToolTip(qorm::QormHandle<qorm::IDbObject> /*object*/, QString const& /*icon*/)
{
    return QString();
}

} // namespace ScsUtils
