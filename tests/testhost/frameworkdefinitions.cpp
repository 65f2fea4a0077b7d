#include "testhost.h"
#include "testtext.h"

using qorm::IDbObject;
using qorm::QormHandle;

wek::fwk::ISystem* wekGetSystem()
{
    return &TestHost::Get();
}

namespace wek {

IBase::~IBase() {}

namespace fwk {

ISystem::~ISystem() {}
ICommand::~ICommand() {}
ICommandManager::~ICommandManager() {}
IQormDBProxy_Signal::~IQormDBProxy_Signal() {}

template <class T>
RefCountedAutoPtr<T>::RefCountedAutoPtr()
    : m_Object(nullptr)
{}

template <class T>
RefCountedAutoPtr<T>::RefCountedAutoPtr(T* object)
    : m_Object(object)
{
    if (m_Object)
        m_Object->AddRef();
}

template <class T>
RefCountedAutoPtr<T>::RefCountedAutoPtr(RefCountedAutoPtr const& other)
    : RefCountedAutoPtr(other.m_Object)
{}

template <class T>
RefCountedAutoPtr<T>& RefCountedAutoPtr<T>::operator=(RefCountedAutoPtr const& other)
{
    RefCountedAutoPtr copy(other);
    std::swap(m_Object, copy.m_Object);
    return *this;
}

template <class T>
RefCountedAutoPtr<T>::~RefCountedAutoPtr()
{
    if (m_Object)
        m_Object->Release();
}

template <class T>
T* RefCountedAutoPtr<T>::Get() const
{
    return m_Object;
}

template <class T>
T* RefCountedAutoPtr<T>::operator->() const
{
    return m_Object;
}

template class RefCountedAutoPtr<ICommand>;

} // namespace fwk
} // namespace wek

IKvTrackedSignal::~IKvTrackedSignal() {}

KvTrackedSlot::KvTrackedSlot()
    : m_Signal(nullptr)
{}

KvTrackedSlot::~KvTrackedSlot()
{
    if (m_Signal)
        m_Signal->Disconnect(this);
}

void KvTrackedSlot::Connect(IKvTrackedSignal* signal)
{
    m_Signal = signal;
}

void KvTrackedSlot::Reset()
{
    m_Signal = nullptr;
}

bool KvTrackedSlot::IsConnected() const
{
    return m_Signal;
}

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

class ScsTask::Private
{
};

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
