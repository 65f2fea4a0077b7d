#include "storage/turnlock.h"

#include "storage/descriptor.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QSysInfo>
#include <QThread>

#include <cerrno>
#include <sys/file.h>
#include <sys/stat.h>

namespace embeddedhost {

namespace {

/// How often to look whether the lock is free, in milliseconds.
constexpr int kRetryPause = 20;

/// This process, as the holder of the lock is described to processes that wait.
QString DescribeProcess()
{
    return QStringLiteral("%1 (process %2 on %3)")
        .arg(QFileInfo(QCoreApplication::applicationFilePath()).fileName())
        .arg(QCoreApplication::applicationPid())
        .arg(QSysInfo::machineHostName());
}

} // namespace

/// The system gives the lock up with the process, so no lock is ever stale, and there is no need to
/// wait until the disk has the file.
class CTurnLock::Private
{
public:
    enum class eTry
    {
        kLocked,
        kHeld,
        kGone,
        kFailed
    };

    eTry Try()
    {
        m_File = std::make_unique<Descriptor>(
            openat(m_Folder.GetDescriptor(), Encode(m_Name),
                   O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666));
        if (!m_File->IsOpen())
            return eTry::kFailed;
        if (flock(m_File->Get(), LOCK_EX | LOCK_NB) != 0)
            return errno == EWOULDBLOCK ? eTry::kHeld : eTry::kFailed;
        // Its last holder may have removed the file in between.
        struct stat status;
        if (fstat(m_File->Get(), &status) != 0)
            return eTry::kFailed;
        return status.st_nlink > 0 ? eTry::kLocked : eTry::kGone;
    }

    void WriteOwner() const
    {
        QByteArray const owner = DescribeProcess().toUtf8();
        // Information for the user only: the lock holds without it.
        if (ftruncate(m_File->Get(), 0) == 0)
            (void)!write(m_File->Get(), owner.constData(), std::size_t(owner.size()));
    }

    CHeldFolder const& m_Folder;
    QString const m_Name;
    std::unique_ptr<Descriptor> m_File;
    bool m_IsLocked = false;
};

CTurnLock::CTurnLock(CHeldFolder const& folder, QString const& name)
    : m_Private(new Private{folder, name, nullptr})
{}

CTurnLock::~CTurnLock()
{
    Unlock();
}

bool CTurnLock::Lock(int patience, QString* fault)
{
    QElapsedTimer time;
    time.start();
    Private::eTry result = m_Private->Try();
    while ((result == Private::eTry::kHeld && time.elapsed() < patience)
           || result == Private::eTry::kGone) {
        if (result == Private::eTry::kHeld)
            QThread::msleep(kRetryPause);
        result = m_Private->Try();
    }
    m_Private->m_IsLocked = result == Private::eTry::kLocked;
    if (m_Private->m_IsLocked) {
        m_Private->WriteOwner();
        return true;
    }
    if (result == Private::eTry::kFailed)
        *fault = QStringLiteral("the lock %1/%2 cannot be made: %3")
                     .arg(m_Private->m_Folder.GetPath(), m_Private->m_Name, GetSystemError());
    else
        *fault = QStringLiteral("another program, %1, is saving to the same folder; try again when "
                                "it is done")
                     .arg(QString::fromUtf8(m_Private->m_Folder.Read(m_Private->m_Name).bytes));
    m_Private->m_File.reset();
    return false;
}

bool CTurnLock::IsLocked() const
{
    return m_Private->m_IsLocked;
}

void CTurnLock::Unlock()
{
    if (!m_Private->m_IsLocked)
        return;
    // Removed while it is locked; afterwards it could be the lock of another process already.
    unlinkat(m_Private->m_Folder.GetDescriptor(), Encode(m_Private->m_Name), 0);
    m_Private->m_File.reset();
    m_Private->m_IsLocked = false;
}

} // namespace embeddedhost
