#include "journal.h"

#include "embeddedhost.h"
#include "framework/guardedcall.h"
#include "storage/systemfiles.h"
#include "storage/unsavedchanges.h"
#include "storage/wholefile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

namespace embeddedhost {

namespace {

/// The debounce interval, in milliseconds: a few lost seconds are acceptable, a busy disk is not.
constexpr int kPause = 3000;
/// The maximum of journals of one library; more than the processes that will ever open it.
constexpr int kMostFiles = 1000;

/// Null when another process, or another journal of this one, has it.
std::unique_ptr<QLockFile> Lock(QString const& journal)
{
    auto lock = std::make_unique<QLockFile>(journal + QStringLiteral(".lock"));
    // Stale only when its process is gone, however old it is.
    lock->setStaleLockTime(0);
    return lock->tryLock(0) ? std::move(lock) : nullptr;
}

} // namespace

CJournal::CJournal(CEmbeddedHost& host, QString const& folder, QObject* parent)
    : QObject(parent)
    , m_Host(host)
    , m_Folder(folder)
{
    m_Pause.setSingleShot(true);
    m_Pause.setInterval(kPause);
    connect(&m_Pause, &QTimer::timeout, this, [this] {
        RunGuarded(&m_Host.GetMessages(), tr("Unsaved changes cannot be kept safe"),
                   [this] { Write(); });
    });
    connect(&m_Host, &CEmbeddedHost::LibraryChanged, this, &CJournal::FollowLibrary);
    connect(&m_Host, &CEmbeddedHost::ContentChanged, this, &CJournal::FollowChanges);
    FollowLibrary();
}

CJournal::~CJournal() = default;

void CJournal::SetPause(int milliseconds)
{
    m_Pause.setInterval(milliseconds);
}

void CJournal::FollowLibrary()
{
    m_Pause.stop();
    m_LibraryFolder = m_Host.GetLibraryFolder();
    m_File.clear();
    m_Written.clear();
    m_HasFailed = false;
    m_Lock.reset();
    m_LeftoverLocks.clear();
}

void CJournal::FollowChanges()
{
    if (!m_Host.IsModified())
        Drop();
    // Not started again for each change, or the journal would never be written during steady work.
    else if (!m_Pause.isActive())
        m_Pause.start();
}

void CJournal::Drop()
{
    m_Pause.stop();
    RemoveFile();
}

void CJournal::RemoveFile()
{
    if (!m_File.isEmpty())
        QFile::remove(m_File);
    m_Written.clear();
}

bool CJournal::Write()
{
    QByteArray const changes = m_Host.GetUnsavedChanges();
    if (changes.isEmpty()) {
        RemoveFile();
        return true;
    }
    if (changes == m_Written)
        return true;
    if (ClaimFile() && WriteWholeFile(m_File, changes)) {
        m_Written = changes;
        m_HasFailed = false;
        return true;
    }
    m_Pause.start();
    // Tried again after each pause, but reported once.
    if (!m_HasFailed) {
        m_HasFailed = true;
        m_Host.GetMessages().Post(
            eSeverity::kWarning,
            tr("Unsaved changes cannot be kept safe in %1; save often.").arg(m_Folder));
    }
    return false;
}

bool CJournal::ClaimFile()
{
    if (m_Lock)
        return true;
    if (!QDir().mkpath(m_Folder))
        return false;
    for (int number = 1; number <= kMostFiles; ++number) {
        QString const file = QStringLiteral("%1-%2.json").arg(GetFileStem()).arg(number);
        std::unique_ptr<QLockFile> lock = Lock(file);
        // A journal left behind by another process must not be overwritten.
        if (!lock || QFileInfo::exists(file))
            continue;
        m_Lock = std::move(lock);
        m_File = file;
        return true;
    }
    return false;
}

QString CJournal::GetFileStem() const
{
    QByteArray const digest =
        QCryptographicHash::hash(m_LibraryFolder.toUtf8(), QCryptographicHash::Sha1);
    return m_Folder + QLatin1Char('/') + QString::fromLatin1(digest.toHex().left(16));
}

std::vector<CJournal::Leftover> CJournal::FindLeftovers()
{
    std::vector<Leftover> leftovers;
    if (m_LibraryFolder.isEmpty())
        return leftovers;
    QString const pattern = QFileInfo(GetFileStem()).fileName() + QStringLiteral("-*.json");
    QFileInfoList const files =
        QDir(m_Folder).entryInfoList({pattern}, QDir::Files, QDir::Time | QDir::Reversed);
    for (QFileInfo const& info : files) {
        QString const file = m_Folder + QLatin1Char('/') + info.fileName();
        std::unique_ptr<QLockFile> lock = Lock(file);
        // The process that writes it is still running, so these are its current changes.
        if (!lock)
            continue;
        QString fault;
        auto const document =
            ParseUnsavedChanges(ReadLeftover(file, &fault), m_LibraryFolder, &fault);
        if (document.is_null()) {
            SetAside(file, fault);
            continue;
        }
        m_LeftoverLocks[file] = std::move(lock);
        leftovers.push_back({file, info.lastModified(), CountUnsavedChanges(document)});
    }
    return leftovers;
}

QByteArray CJournal::ReadLeftover(QString const& file, QString* fault) const
{
    FileContent const content = ReadRegularFile(file, QString());
    *fault = content.exists ? content.fault : tr("it is gone");
    return content.bytes;
}

void CJournal::SetAside(QString const& file, QString const& reason)
{
    // Renamed and not removed: the text may still be of use to the user.
    QString aside = file + QStringLiteral(".aside");
    for (int number = 2; QFileInfo::exists(aside); ++number)
        aside = QStringLiteral("%1.aside-%2").arg(file).arg(number);
    QFile::rename(file, aside);
    m_Host.GetMessages().Post(
        eSeverity::kWarning,
        tr("Unsaved changes that were left behind are kept in %1: %2.").arg(aside, reason));
}

void CJournal::Recover(Leftover const& leftover)
{
    QString fault;
    QByteArray const changes = ReadLeftover(leftover.file, &fault);
    if (!m_Host.RestoreUnsavedChanges(changes)) {
        SetAside(leftover.file, tr("not all of them could be recovered"));
        m_LeftoverLocks.erase(leftover.file);
        return;
    }
    // Only when this process's own file has them.
    if (Write())
        Discard(leftover);
}

void CJournal::Discard(Leftover const& leftover)
{
    QFile::remove(leftover.file);
    m_LeftoverLocks.erase(leftover.file);
}

} // namespace embeddedhost

#include "moc_journal.cpp"
