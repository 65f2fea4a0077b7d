#ifndef EMBEDDEDHOST_REFCOUNTED_H
#define EMBEDDEDHOST_REFCOUNTED_H

#include <hostkit/refcounted.h>

namespace embeddedhost {

using hostkit::CRefCounted;

// For boost::intrusive_ptr.
template <class T>
void intrusive_ptr_add_ref(T* object)
{
    object->AddRef();
}

template <class T>
void intrusive_ptr_release(T* object)
{
    object->Release();
}

} // namespace embeddedhost

#endif
