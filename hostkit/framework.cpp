#include <framework.h>

#include <utility>

namespace wek {

IBase::~IBase() = default;

namespace fwk {

ISystem::~ISystem() = default;
ICommand::~ICommand() = default;
ICommandManager::~ICommandManager() = default;
IQormDBProxy_Signal::~IQormDBProxy_Signal() = default;

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
    // The previous object is released last: its destructor may use this pointer.
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

// The contract's headers declare the members only, so they are instantiated here.
template class RefCountedAutoPtr<ICommand>;

} // namespace fwk
} // namespace wek
