#include "testhost.h"

using qorm::IDbObject;
using qorm::QormHandle;

wek::fwk::ISystem* wekGetSystem()
{
    return &TestHost::Get();
}

ScsTask::ScsTask(QString const& name)
    : m_Private(nullptr)
{
    Record("ScsTask", {Quoted(name.toStdString())});
}

ScsTask::~ScsTask() {}

void ScsTask::RequestObjectStates(std::list<QormHandle<IDbObject>> const& objects)
{
    QStringList uids;
    for (QormHandle<IDbObject> const& object : objects)
        uids << TextOf(object);
    Record("RequestObjectStates", {"[" + uids.join(" ") + "]"});
}

void ScsTask::DeleteMe()
{
    Record("DeleteMe");
    delete this;
}

namespace ScsUtils {

bool IsFileVersionControlActive()
{
    Query("IsFileVersionControlActive");
    return TestHost::Get().m_IsFileVersionControlActive;
}

/// An active state paints the icon over in a colour that tells the state.
QPixmap getAssetStateIcon(QPixmap& base, unsigned int state, bool active, bool plain)
{
    Query("getAssetStateIcon", {QString::number(base.width()), "0x" + QString::number(state, 16),
                                TextOf(active), TextOf(plain)});
    QPixmap icon = base;
    if (active)
        icon.fill(QColor::fromRgb(0xFF000000u | state));
    return icon;
}

QString GetToolTip(QormHandle<IDbObject> object, QString const& icon)
{
    Record("GetToolTip", {TextOf(object), Quoted(icon.toStdString())});
    return "state of " + TextOf(object);
}

} // namespace ScsUtils
