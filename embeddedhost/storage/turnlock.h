#ifndef EMBEDDEDHOST_TURNLOCK_H
#define EMBEDDEDHOST_TURNLOCK_H

#include "storage/heldfolder.h"

namespace embeddedhost {

/// A lock file that is held by one process at a time, and released when that process ends.
class CTurnLock
{
public:
    /// The file `name` in `folder`, which has to outlive the lock.
    CTurnLock(CHeldFolder const& folder, QString const& name);
    /// Releases it and removes the file.
    ~CTurnLock();

    /// Waits for it no longer than `patience`, in milliseconds. False, with who holds it or why it
    /// cannot be made, a sentence without the full stop.
    bool Lock(int patience, QString* fault);
    bool IsLocked() const;
    void Unlock();

private:
    class Private;
    std::unique_ptr<Private> const m_Private;
};

} // namespace embeddedhost

#endif
