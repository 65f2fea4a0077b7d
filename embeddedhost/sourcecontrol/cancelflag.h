#ifndef EMBEDDEDHOST_CANCELFLAG_H
#define EMBEDDEDHOST_CANCELFLAG_H

#include <atomic>
#include <chrono>
#include <memory>

namespace embeddedhost {

/// Set by one thread to stop the job of another one. The other one polls it, and the time of the
/// last poll is its sign of life.
class CancelFlag
{
public:
    typedef std::chrono::steady_clock Clock;

    explicit CancelFlag(bool isCancelled = false)
        : m_IsCancelled(isCancelled)
    {}

    void Cancel()
    {
        m_IsCancelled = true;
    }

    /// Without leaving a sign of life.
    bool IsSet() const
    {
        return m_IsCancelled;
    }

    /// For the thread that may have to stop.
    bool IsCancelled() const
    {
        m_LastLook = Clock::now().time_since_epoch();
        return m_IsCancelled;
    }

    Clock::time_point GetLastLook() const
    {
        return Clock::time_point(m_LastLook);
    }

private:
    std::atomic<bool> m_IsCancelled;
    mutable std::atomic<Clock::duration> m_LastLook{Clock::now().time_since_epoch()};
};

typedef std::shared_ptr<CancelFlag> CancelFlagPtr;

} // namespace embeddedhost

#endif
