#include "storage/turnlock.h"

#include <QCoreApplication>
#include <QLockFile>
#include <QThread>

namespace embeddedhost {

namespace {

/// The maximum time until a process has written its name into its lock, in milliseconds.
constexpr int kNamingPause = 20;

} // namespace

class CTurnLock::Private
{
public:
    /// Removes stale locks that QLockFile does not recognise: one of this process that could not be
    /// removed before, and one of a process that was killed before it wrote its name. Does not
    /// remove a lock that is held.
    void RemoveDeadLock()
    {
        if (!HasNoOtherOwner())
            return;
        QThread::msleep(kNamingPause);
        if (HasNoOtherOwner())
            m_File.removeStaleLockFile();
    }

    bool HasNoOtherOwner() const
    {
        qint64 process = 0;
        QString machine;
        QString program;
        return !m_File.getLockInfo(&process, &machine, &program)
               || process == QCoreApplication::applicationPid();
    }

    QString const m_Path;
    QLockFile m_File{m_Path};
};

CTurnLock::CTurnLock(CHeldFolder const& folder, QString const& name)
    : m_Private(new Private{folder.GetPath() + QLatin1Char('/') + name})
{}

CTurnLock::~CTurnLock()
{
    Unlock();
}

bool CTurnLock::Lock(int patience, QString* fault)
{
    QLockFile& file = m_Private->m_File;
    if (file.tryLock(0))
        return true;
    m_Private->RemoveDeadLock();
    if (file.tryLock(patience))
        return true;
    qint64 process = 0;
    QString machine;
    QString program;
    if (file.getLockInfo(&process, &machine, &program))
        *fault = QStringLiteral("another program, %1 (process %2 on %3), is saving to the same "
                                "folder; try again when it is done")
                     .arg(program)
                     .arg(process)
                     .arg(machine);
    else
        *fault = QStringLiteral("the lock %1 cannot be made").arg(m_Private->m_Path);
    return false;
}

bool CTurnLock::IsLocked() const
{
    return m_Private->m_File.isLocked();
}

void CTurnLock::Unlock()
{
    if (m_Private->m_File.isLocked())
        m_Private->m_File.unlock();
}

} // namespace embeddedhost
