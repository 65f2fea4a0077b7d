// The object database. This host has none: no handle is ever valid and no pointer is ever set, so
// the panel asks nothing more than these few questions.

#include <qorm.h>

namespace qorm {

UID::UID(char const* text)
    : m_Text(text)
{}
char const* UID::GetStr() const
{
    return m_Text.c_str();
}

UID const& UID_Null()
{
    static UID const uid("00000000-0000-0000-0000-000000000000");
    return uid;
}

UID const& UID_Resource()
{
    return UID_Null();
}

DbObjectId::DbObjectId(char const* text)
    : m_Text(text)
{}
char const* DbObjectId::GetStr() const
{
    return m_Text.c_str();
}

// No part's identifier is one of a database object.
bool DbObjectId::IsUID(char const* /*text*/)
{
    return false;
}

IRefCounted::~IRefCounted() {}

ExBase::ExBase(std::string const& errorString)
    : m_ErrorString(errorString)
{}
ExBase::~ExBase() noexcept {}
std::string const& ExBase::GetErrorString() const
{
    return m_ErrorString;
}
char const* ExBase::what() const noexcept
{
    return m_ErrorString.c_str();
}
ExBase::NullPtr::NullPtr(char const* what, char const* /*file*/, int /*line*/)
    : ExBase(std::string("null pointer: ") + what)
{}

template <class T>
QormPtr<T>::QormPtr()
    : m_Object(nullptr)
{}
template <class T>
QormPtr<T>::QormPtr(QormPtr const&)
    : m_Object(nullptr)
{}
template <class T>
QormPtr<T>& QormPtr<T>::operator=(QormPtr const&)
{
    return *this;
}
template <class T>
QormPtr<T>::~QormPtr()
{}
template <class T>
bool QormPtr<T>::IsNull() const
{
    return true;
}
template <class T>
T* QormPtr<T>::Get() const
{
    return nullptr;
}
template <class T>
T* QormPtr<T>::operator->() const
{
    throw ExBase::NullPtr("QormPtr", __FILE__, __LINE__);
}
template <class T>
bool QormPtr<T>::operator==(QormPtr const&) const
{
    return true;
}

template <class T>
QormHandle<T>::QormHandle()
    : m_CacheIndex(-1)
{}
template <class T>
QormHandle<T>::QormHandle(QormHandle const&)
    : m_CacheIndex(-1)
{}
template <class T>
QormHandle<T>& QormHandle<T>::operator=(QormHandle const&)
{
    return *this;
}
template <class T>
QormHandle<T>::~QormHandle()
{}
template <class T>
bool QormHandle<T>::IsValid() const
{
    return false;
}
template <class T>
T* QormHandle<T>::operator->() const
{
    throw ExBase::NullPtr("QormHandle", __FILE__, __LINE__);
}
template <class T>
template <class U>
QormHandle<T>& QormHandle<T>::AssignCast(QormHandle<U> const&)
{
    return *this;
}
template <class T>
QormPtr<IDataSource> QormHandle<T>::GetDataSource() const
{
    return QormPtr<IDataSource>();
}
template <class T>
DbObjectId QormHandle<T>::GetDbObjectId() const
{
    return DbObjectId("");
}
template <class T>
QormPtr<IDataModelMgr> QormHandle<T>::GetManager() const
{
    return QormPtr<IDataModelMgr>();
}
template <class T>
QormPtr<IQormInstance> QormHandle<T>::GetInstance() const
{
    return QormPtr<IQormInstance>();
}
template <class T>
int QormHandle<T>::GetCacheIndex() const
{
    return -1;
}
template <class T>
bool QormHandle<T>::IsLoaded() const
{
    return false;
}

template class QormPtr<IDataSource>;
template class QormPtr<IDataModelMgr>;
template class QormPtr<IHelper>;
template class QormPtr<IQormInstance>;
template class QormHandle<IDbObject>;
template class QormHandle<ITypeAsset>;
template class QormHandle<IValueAsset>;
template QormHandle<ITypeAsset>& QormHandle<ITypeAsset>::AssignCast(QormHandle<IDbObject> const&);
template QormHandle<IValueAsset>& QormHandle<IValueAsset>::AssignCast(QormHandle<IDbObject> const&);

CQueryResult::CQueryResult(DbObjectId const& objectId)
    : m_ObjectId(objectId)
{}
DbObjectId CQueryResult::GetObjectId() const
{
    return m_ObjectId;
}

QormPtr<IHelper> IHelper::GetHelper(QormPtr<IQormInstance> const&)
{
    return QormPtr<IHelper>();
}
QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const&)
{
    return QormPtr<IDataSource>();
}
std::string GetResourceExpandedURI(QormHandle<IDbObject> const&)
{
    return std::string();
}
bool IsSameUri(QormPtr<IDataSource> const&, QormHandle<IValueAsset> const&)
{
    return false;
}

} // namespace qorm
