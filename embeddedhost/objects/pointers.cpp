#include "objects/errors.h"
#include "objects/objectdatabase.h"

#include <qorm.h>

#include <type_traits>
#include <utility>

namespace qorm {

using embeddedhost::CObjectDatabase;

IRefCounted::~IRefCounted() = default;

template <class T>
QormPtr<T>::QormPtr()
    : m_Object(nullptr)
{}

template <class T>
QormPtr<T>::QormPtr(T* object)
    : m_Object(object)
{
    if (m_Object)
        m_Object->AddRef();
}

template <class T>
QormPtr<T>::QormPtr(QormPtr const& other)
    : QormPtr(other.m_Object)
{}

template <class T>
QormPtr<T>& QormPtr<T>::operator=(QormPtr const& other)
{
    QormPtr copy(other);
    std::swap(m_Object, copy.m_Object);
    return *this;
}

template <class T>
QormPtr<T>::~QormPtr()
{
    if (m_Object)
        m_Object->Release();
}

template <class T>
bool QormPtr<T>::IsNull() const
{
    return !m_Object;
}

template <class T>
T* QormPtr<T>::Get() const
{
    return m_Object;
}

template <class T>
T* QormPtr<T>::operator->() const
{
    if (!m_Object)
        embeddedhost::RaiseNullPtr();
    return m_Object;
}

template <class T>
bool QormPtr<T>::operator==(QormPtr const& other) const
{
    return m_Object == other.m_Object;
}

template class QormPtr<IDataSource>;
template class QormPtr<IValueAsset>;
template class QormPtr<IDbObject>;
template class QormPtr<IDataModelMgr>;
template class QormPtr<IHelper>;
template class QormPtr<IQormInstance>;
template class QormPtr<ITypeAsset>;

namespace {

template <class T>
bool IsOfKind(CObjectDatabase const& database, int cacheIndex)
{
    if (std::is_same<T, ITypeAsset>::value)
        return database.IsTypeAsset(cacheIndex);
    if (std::is_same<T, IValueAsset>::value)
        return database.IsResource(cacheIndex);
    return database.Exists(cacheIndex);
}

/// The database of a handle; null when it has no object of kind T at the place any more.
template <class T>
CObjectDatabase* FindDatabase(QormPtr<IQormInstance> const& instance, int cacheIndex)
{
    CObjectDatabase* const database = CObjectDatabase::From(instance);
    return database && IsOfKind<T>(*database, cacheIndex) ? database : nullptr;
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
    return FindDatabase<T>(m_Instance, m_CacheIndex) != nullptr;
}

template <class T>
T* QormHandle<T>::operator->() const
{
    CObjectDatabase* const database = FindDatabase<T>(m_Instance, m_CacheIndex);
    if (!database)
        embeddedhost::RaiseNullPtr();
    return database->GetObject(m_CacheIndex);
}

template <class T>
template <class U>
QormHandle<T>& QormHandle<T>::AssignCast(QormHandle<U> const& other)
{
    QormHandle const seen(other.GetInstance(), other.GetCacheIndex());
    return *this = seen.IsValid() ? seen : QormHandle();
}

template <class T>
QormPtr<IDataSource> QormHandle<T>::GetDataSource() const
{
    CObjectDatabase const* const database = FindDatabase<T>(m_Instance, m_CacheIndex);
    return QormPtr<IDataSource>(database ? database->GetHome(m_CacheIndex).get() : nullptr);
}

template <class T>
DbObjectId QormHandle<T>::GetDbObjectId() const
{
    CObjectDatabase const* const database = FindDatabase<T>(m_Instance, m_CacheIndex);
    return database ? database->GetId(m_CacheIndex) : DbObjectId("");
}

template <class T>
QormPtr<IDataModelMgr> QormHandle<T>::GetManager() const
{
    return QormPtr<IDataModelMgr>(FindDatabase<T>(m_Instance, m_CacheIndex));
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

/// Items are read whole.
template <class T>
bool QormHandle<T>::IsLoaded() const
{
    CObjectDatabase const* const database = FindDatabase<T>(m_Instance, m_CacheIndex);
    return database && database->IsTypeAsset(m_CacheIndex);
}

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
