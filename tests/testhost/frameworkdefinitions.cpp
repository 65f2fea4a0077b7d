#include "testhost.h"
#include "testtext.h"

using qorm::IDbObject;
using qorm::QormHandle;

wek::fwk::ISystem* wekGetSystem()
{
    return &TestHost::Get();
}

ScsTask::ScsTask(QString const& name)
    : m_Private(nullptr)
{
    TestHost::Get().Record("ScsTask", {Quoted(name.toStdString())});
    ++TestHost::Get().m_LiveTasks;
}

ScsTask::~ScsTask()
{
    --TestHost::Get().m_LiveTasks;
}

void ScsTask::RequestObjectStates(std::list<QormHandle<IDbObject>> const& objects)
{
    QStringList uids;
    for (QormHandle<IDbObject> const& object : objects)
        uids << TextOf(object);
    TestHost::Get().Record("RequestObjectStates", {"[" + uids.join(" ") + "]"});
}

void ScsTask::DeleteMe()
{
    TestHost::Get().Record("DeleteMe");
    delete this;
}

namespace ScsUtils {

bool IsFileVersionControlActive()
{
    TestHost::Get().Query("IsFileVersionControlActive");
    return TestHost::Get().m_IsFileVersionControlActive;
}

/// An active state paints the icon over in a colour that tells the state.
QPixmap getAssetStateIcon(QPixmap& base, unsigned int state, bool active, bool plain)
{
    TestHost::Get().Query("getAssetStateIcon",
                          {QString::number(base.width()), "0x" + QString::number(state, 16),
                           TextOf(active), TextOf(plain)});
    QPixmap icon = base;
    if (active)
        icon.fill(QColor::fromRgb(0xFF000000u | state));
    return icon;
}

QString GetToolTip(QormHandle<IDbObject> object, QString const& icon)
{
    TestHost::Get().Record("GetToolTip", {TextOf(object), Quoted(icon.toStdString())});
    return "state of " + TextOf(object);
}

} // namespace ScsUtils
