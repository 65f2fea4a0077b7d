#ifndef HOSTKIT_SHAREDCONTEXT_H
#define HOSTKIT_SHAREDCONTEXT_H

/// @file
/// The part of the host's accessor context that the kit uses.

#include <nodebrowser/hostapi/datamodel.h>

#include <atomic>

namespace hostkit {

/// The reference count and the identifier of a context. The host derives its AccessorContext from
/// it:
///
///     class tarno::datamodel::AccessorContext : public hostkit::CSharedContext { ... };
///
/// The count starts at 0, before the first accessor. It deletes itself with its last
/// accessor, so a library keeps one accessor for as long as it is open.
class CSharedContext
{
public:
    /// With a number of its own.
    CSharedContext();
    CSharedContext(CSharedContext const&) = delete;
    CSharedContext& operator=(CSharedContext const&) = delete;

    /// Takes a share, on any thread.
    void AddRef()
    {
        m_References.fetch_add(1, std::memory_order_relaxed);
    }
    /// Gives one back, on any thread; the context deletes itself with the last.
    void Release()
    {
        if (m_References.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete this;
    }

    /// Not 0, and no other context of the process has had it.
    tarno::datamodel::ContextID GetID() const
    {
        return m_ID;
    }

protected:
    virtual ~CSharedContext();

private:
    std::atomic<int> m_References;
    tarno::datamodel::ContextID const m_ID;
};

/// Defined by the host, which knows its AccessorContext: `return context;`. Called for each copy of
/// an accessor.
CSharedContext& GetShared(tarno::datamodel::AccessorContext& context);

} // namespace hostkit

#endif
