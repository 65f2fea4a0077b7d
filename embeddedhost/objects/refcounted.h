#ifndef EMBEDDEDHOST_REFCOUNTED_H
#define EMBEDDEDHOST_REFCOUNTED_H

namespace embeddedhost {

/// One count of references behind all the database interfaces that an object has.
template <class... Interfaces>
class CRefCounted : public Interfaces...
{
public:
    void AddRef() final
    {
        ++m_References;
    }
    void Release() final
    {
        if (--m_References == 0)
            delete this;
    }

protected:
    ~CRefCounted() override = default;

private:
    int m_References = 0;
};

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
