#ifndef EMBEDDEDHOST_TURNLOCK_H
#define EMBEDDEDHOST_TURNLOCK_H

#include <QString>

#include <memory>

namespace embeddedhost {

/// A lock file that is held by one process at a time, and by nobody when that process is gone.
class CTurnLock
{
public:
    explicit CTurnLock(QString const& path);
    /// Gives it up and removes the file.
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
