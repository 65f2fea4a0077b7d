#ifndef HOSTKIT_REFCOUNTED_H
#define HOSTKIT_REFCOUNTED_H

namespace hostkit {

/// One count of references behind all the counted interfaces that an object has. It starts at 0:
/// the first pointer that takes the object owns it.
template <class... Interfaces>
class CRefCounted : public Interfaces...
{
public:
    /// Takes a reference. The count is not atomic: it is for the GUI thread.
    void AddRef() final
    {
        ++m_References;
    }
    /// Gives one back; the object deletes itself with the last.
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

} // namespace hostkit

#endif
