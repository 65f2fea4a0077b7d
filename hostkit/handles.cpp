#include "nullpointererror.h"
#include "objectaccess.h"

#include <qorm.h>

namespace qorm {

using hostkit::eObjectKind;

namespace {

// The object kind of each handle type, and the object as that type.
template <class T>
struct Seen;

template <>
struct Seen<IDbObject>
{
    static constexpr eObjectKind kKind = eObjectKind::kAnyObject;
    static constexpr auto Get = hostkit::GetDbObject;
};

template <>
struct Seen<ITypeAsset>
{
    static constexpr eObjectKind kKind = eObjectKind::kTypeAsset;
    static constexpr auto Get = hostkit::GetTypeAsset;
};

template <>
struct Seen<IValueAsset>
{
    static constexpr eObjectKind kKind = eObjectKind::kValueAsset;
    static constexpr auto Get = hostkit::GetValueAsset;
};

/// Whether the database may be asked about the object. Only the kind has to be tested: for an
/// object that does not exist the database returns empty values anyway.
template <class T>
bool CanAsk(IQormInstance* instance, int cacheIndex)
{
    return Seen<T>::kKind == eObjectKind::kAnyObject
           || hostkit::HasObject(instance, cacheIndex, Seen<T>::kKind);
}

} // namespace

template <class T>
QormHandle<T>::QormHandle()
    : m_CacheIndex(-1)
{}

template <class T>
QormHandle<T>::QormHandle(QormPtr<IQormInstance> const& instance, int cacheIndex)
    : m_Instance(instance)
    , m_CacheIndex(cacheIndex)
{}

template <class T>
QormHandle<T>::QormHandle(QormHandle const& other) = default;

template <class T>
QormHandle<T>& QormHandle<T>::operator=(QormHandle const& other) = default;

template <class T>
QormHandle<T>::~QormHandle() = default;

template <class T>
bool QormHandle<T>::IsValid() const
{
    return hostkit::HasObject(m_Instance.Get(), m_CacheIndex, Seen<T>::kKind);
}

template <class T>
T* QormHandle<T>::operator->() const
{
    if (!IsValid())
        hostkit::RaiseNullPtr();
    return Seen<T>::Get(m_Instance.Get(), m_CacheIndex);
}

template <class T>
template <class U>
QormHandle<T>& QormHandle<T>::AssignCast(QormHandle<U> const& other)
{
    IQormInstance* const instance = other.m_Instance.Get();
    // Tested here, because handles keep the index alone and any kind of object may be behind it.
    bool const isOfKind =
        other.IsValid() && hostkit::HasObject(instance, other.m_CacheIndex, Seen<T>::kKind);
    return *this = isOfKind ? QormHandle(other.m_Instance, other.m_CacheIndex) : QormHandle();
}

template <class T>
QormPtr<IDataSource> QormHandle<T>::GetDataSource() const
{
    IQormInstance* const instance = m_Instance.Get();
    return CanAsk<T>(instance, m_CacheIndex) ? hostkit::FindDataSource(instance, m_CacheIndex)
                                             : QormPtr<IDataSource>();
}

template <class T>
DbObjectId QormHandle<T>::GetDbObjectId() const
{
    IQormInstance* const instance = m_Instance.Get();
    return CanAsk<T>(instance, m_CacheIndex) ? hostkit::FindObjectId(instance, m_CacheIndex)
                                             : DbObjectId("");
}

template <class T>
QormPtr<IDataModelMgr> QormHandle<T>::GetManager() const
{
    IQormInstance* const instance = m_Instance.Get();
    return CanAsk<T>(instance, m_CacheIndex) ? hostkit::FindManager(instance, m_CacheIndex)
                                             : QormPtr<IDataModelMgr>();
}

template <class T>
QormPtr<IQormInstance> QormHandle<T>::GetInstance() const
{
    return IsValid() ? m_Instance : QormPtr<IQormInstance>();
}

template <class T>
int QormHandle<T>::GetCacheIndex() const
{
    return IsValid() ? m_CacheIndex : -1;
}

template <class T>
bool QormHandle<T>::IsLoaded() const
{
    IQormInstance* const instance = m_Instance.Get();
    return CanAsk<T>(instance, m_CacheIndex) && hostkit::IsAssetLoaded(instance, m_CacheIndex);
}

// All types that the contract names; its headers declare the members only.
template class QormHandle<IDbObject>;
template class QormHandle<ITypeAsset>;
template class QormHandle<IValueAsset>;

template QormHandle<IDbObject>& QormHandle<IDbObject>::AssignCast(QormHandle<IDbObject> const&);
template QormHandle<IDbObject>& QormHandle<IDbObject>::AssignCast(QormHandle<ITypeAsset> const&);
template QormHandle<IDbObject>& QormHandle<IDbObject>::AssignCast(QormHandle<IValueAsset> const&);
template QormHandle<ITypeAsset>& QormHandle<ITypeAsset>::AssignCast(QormHandle<IDbObject> const&);
template QormHandle<ITypeAsset>& QormHandle<ITypeAsset>::AssignCast(QormHandle<ITypeAsset> const&);
template QormHandle<ITypeAsset>& QormHandle<ITypeAsset>::AssignCast(QormHandle<IValueAsset> const&);
template QormHandle<IValueAsset>& QormHandle<IValueAsset>::AssignCast(QormHandle<IDbObject> const&);
template QormHandle<IValueAsset>&
QormHandle<IValueAsset>::AssignCast(QormHandle<ITypeAsset> const&);
template QormHandle<IValueAsset>&
QormHandle<IValueAsset>::AssignCast(QormHandle<IValueAsset> const&);

} // namespace qorm
