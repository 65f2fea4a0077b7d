#include "nullpointererror.h"

#include <qorm.h>

#include <utility>

namespace qorm {

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
    // The previous object is released last: its destructor may use this pointer.
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
        hostkit::RaiseNullPtr();
    return m_Object;
}

template <class T>
bool QormPtr<T>::operator==(QormPtr const& other) const
{
    return m_Object == other.m_Object;
}

// All types that the contract names; its headers declare the members only.
template class QormPtr<IDataSource>;
template class QormPtr<IValueAsset>;
template class QormPtr<IDbObject>;
template class QormPtr<IDataModelMgr>;
template class QormPtr<IHelper>;
template class QormPtr<IQormInstance>;
template class QormPtr<ITypeAsset>;

} // namespace qorm
