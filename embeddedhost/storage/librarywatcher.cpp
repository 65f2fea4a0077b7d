#include "storage/librarywatcher.h"

#include "framework/guardedcall.h"
#include "storage/fileobjects.h"
#include "storage/folderscan.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>

namespace embeddedhost {

namespace {

/// The debounce interval, in milliseconds: a checkout of many files causes few checks.
constexpr int kPause = 150;
/// The maximum delay of a check during a lasting burst, in milliseconds.
constexpr int kLongestBurst = 1000;
/// The maximum of attempts to read a file, which may be half written.
constexpr int kReadAttempts = 5;

bool CanBeListed(QString const& folder)
{
    QFileInfo const info(folder);
    return info.isDir() && info.isReadable() && info.isExecutable();
}

/// An exception for one file must not prevent the others from being read.
eReconciled TryToReconcile(std::shared_ptr<CLibrary> const& library, DataSourcePtr const& source,
                           QString const& path, QString* fault)
{
    try {
        return ReconcileFile(library, source, path, fault);
    } catch (std::exception const& error) {
        *fault = QString::fromUtf8(error.what()) + QLatin1Char('.');
    } catch (...) {
        *fault = QStringLiteral("an unknown failure.");
    }
    return eReconciled::kUnreadable;
}

} // namespace

CLibraryWatcher::CLibraryWatcher(std::shared_ptr<CLibrary> library, QObject* parent)
    : QObject(parent)
    , m_Library(std::move(library))
{
    m_Pause.setSingleShot(true);
    m_Pause.setInterval(kPause);
    connect(&m_Watcher, &QFileSystemWatcher::directoryChanged, this,
            &CLibraryWatcher::OnDirectoryChanged);
    connect(&m_Pause, &QTimer::timeout, this, &CLibraryWatcher::Check);
    // A host may run without windows.
    if (auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        connect(application, &QGuiApplication::applicationStateChanged, this,
                &CLibraryWatcher::OnApplicationStateChanged);
    WatchFolders();
    for (DataSourcePtr const& source : m_Library->GetSources())
        m_Stamps[source->GetDescription().folder] = ReadStamps(source);
}

void CLibraryWatcher::OnDirectoryChanged()
{
    if (!m_Pause.isActive())
        m_Burst.start();
    if (m_Burst.elapsed() < kLongestBurst)
        m_Pause.start();
}

void CLibraryWatcher::OnApplicationStateChanged(Qt::ApplicationState state)
{
    // Folder watches miss files that are written in place, and all changes on most network drives.
    if (state == Qt::ApplicationActive)
        m_Pause.start();
}

void CLibraryWatcher::CheckConflicts()
{
    if (!m_Conflicts.isEmpty())
        m_Pause.start();
}

CLibraryWatcher::Stamps CLibraryWatcher::ReadStamps(DataSourcePtr const& source) const
{
    // Faults of the folders were reported when the library was opened.
    CMessageChannel unheard;
    Stamps stamps;
    QStringList const paths = ListObjectFiles(
        m_Library->GetFolder(), source->GetDescription().folder, FaultReporter(unheard));
    for (QString const& path : paths)
        stamps[path] = GetFileStamp(path);
    return stamps;
}

/// Includes files that are expected but missing: another program may have removed a file that we
/// saved since the last look.
CLibraryWatcher::Stamps CLibraryWatcher::ReadStampsWithGone(DataSourcePtr const& source) const
{
    Stamps stamps = ReadStamps(source);
    for (auto const& file : m_Library->GetFiles()) {
        bool const isExpected = file->source == source && !file->digest.isEmpty();
        if (isExpected && !stamps.contains(file->path))
            stamps[file->path] = FileStamp();
    }
    return stamps;
}

/// Empty when the data source's folder is there.
QString CLibraryWatcher::FindMissingFolder(DataSourcePtr const& source) const
{
    QString const folder = source->GetDescription().folder;
    if (CanBeListed(folder))
        return QString();
    return CanBeListed(m_Library->GetFolder()) ? folder : m_Library->GetFolder();
}

/// The folders of the data sources and their parents: a folder that is moved away or comes back is
/// a change of its parent.
QStringList CLibraryWatcher::ListFolders() const
{
    QString const& top = m_Library->GetFolder();
    QStringList folders;
    for (DataSourcePtr const& source : m_Library->GetSources()) {
        QString folder = source->GetDescription().folder;
        QDirIterator below(folder, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                           QDirIterator::Subdirectories);
        while (below.hasNext())
            folders << below.next();
        while (!QFileInfo(folder).isDir() || (folder != top && IsWithin(top, folder))) {
            folders << folder;
            folder = QFileInfo(folder).path();
        }
        folders << folder;
    }
    return folders;
}

void CLibraryWatcher::WatchFolders()
{
    QSet<QString> wanted;
    QStringList const folders = ListFolders();
    for (QString const& folder : folders) {
        if (QFileInfo(folder).isDir())
            wanted.insert(folder);
    }
    QStringList unwanted;
    QStringList const watched = m_Watcher.directories();
    for (QString const& folder : watched) {
        if (!wanted.remove(folder))
            unwanted << folder;
    }
    // QFileSystemWatcher warns about empty lists.
    if (!unwanted.isEmpty())
        m_Watcher.removePaths(unwanted);
    if (!wanted.isEmpty())
        m_Watcher.addPaths(wanted.values());
}

QStringList CLibraryWatcher::FindTouchedFiles(Stamps const& before, Stamps const& now)
{
    QStringList gone;
    QStringList touched;
    for (auto stamp = before.cbegin(); stamp != before.cend(); ++stamp) {
        if (!now.contains(stamp.key()))
            gone << stamp.key();
    }
    for (auto stamp = now.cbegin(); stamp != now.cend(); ++stamp) {
        auto const known = before.constFind(stamp.key());
        if (known == before.cend() || !(*known == stamp.value()))
            (*stamp == FileStamp() ? gone : touched) << stamp.key();
    }
    // Removed files first: an object may have moved from one file to another.
    return gone + touched;
}

void CLibraryWatcher::Check()
{
    // A listener may run an event loop.
    if (m_IsChecking) {
        m_Pause.start();
        return;
    }
    QPointer<CLibraryWatcher> const self(this);
    m_IsChecking = true;
    // A copy: a listener may close the library, and the folder is needed for the message about an
    // exception.
    QString const folder = m_Library->GetFolder();
    RunGuarded(&m_Library->GetMessages(), folder, [this] { CheckSources(); });
    if (self)
        m_IsChecking = false;
}

void CLibraryWatcher::CheckSources()
{
    // A listener, also one of messages, may close the library, and this with it.
    QPointer<CLibraryWatcher> const self(this);
    std::shared_ptr<CLibrary> const library = m_Library;
    std::vector<DataSourcePtr> const sources = library->GetSources();
    WatchFolders();
    ReportMissingFolders();
    bool isTouched = false;
    for (DataSourcePtr const& source : sources)
        isTouched = (self && CheckFiles(source)) || isTouched;
    if (self && isTouched)
        TakeInLeftOutEntries(*library);
    if (self && isTouched)
        Q_EMIT FilesTouched();
}

void CLibraryWatcher::ReportMissingFolders()
{
    QPointer<CLibraryWatcher> const self(this);
    QStringList const before = m_MissingFolders;
    m_MissingFolders.clear();
    for (DataSourcePtr const& source : m_Library->GetSources()) {
        QString const folder = FindMissingFolder(source);
        if (!folder.isEmpty() && !m_MissingFolders.contains(folder))
            m_MissingFolders << folder;
    }
    // A copy, because a listener to the first message may delete this watcher.
    QStringList const missing = m_MissingFolders;
    for (QString const& folder : missing) {
        if (self && !before.contains(folder))
            Report(folder, QStringLiteral("the folder is gone, or may not be read. Its items are "
                                          "kept as they are until it is back."));
    }
}

bool CLibraryWatcher::CheckFiles(DataSourcePtr const& source)
{
    QPointer<CLibraryWatcher> const self(this);
    Stamps const now = ReadStampsWithGone(source);
    // After the listing: a folder that exists now existed during it.
    if (!FindMissingFolder(source).isEmpty())
        return false;
    QStringList touched = FindTouchedFiles(m_Stamps[source->GetDescription().folder], now);
    touched += FindEndedConflicts(source);
    touched.removeDuplicates();
    for (QString const& path : touched) {
        if (self)
            CheckFile(source, path, now);
    }
    return !touched.isEmpty();
}

/// Files in conflict whose changes have been undone, so that the version on disk can be taken.
QStringList CLibraryWatcher::FindEndedConflicts(DataSourcePtr const& source) const
{
    QStringList ended;
    for (QString const& path : m_Conflicts) {
        LibraryFile const* const file = m_Library->FindFile(path);
        if (file && file->source == source && !file->IsModified())
            ended << path;
    }
    ended.sort();
    return ended;
}

void CLibraryWatcher::CheckFile(DataSourcePtr const& source, QString const& path, Stamps const& now)
{
    QPointer<CLibraryWatcher> const self(this);
    QString fault;
    eReconciled const result = TryToReconcile(m_Library, source, path, &fault);
    if (!self || result == eReconciled::kClosed)
        return;
    Stamps& stamps = m_Stamps[source->GetDescription().folder];
    stamps.remove(path);
    m_Conflicts.remove(path);
    if (result == eReconciled::kUnreadable) {
        NoteFailure(path, now.value(path), fault);
        return;
    }
    if (now.contains(path))
        stamps[path] = now[path];
    m_Failures.remove(path);
    if (result != eReconciled::kConflict)
        return;
    m_Conflicts.insert(path);
    Report(path, QStringLiteral("another program changed the file while it has changes that "
                                "are not saved. They are kept; take the file from disk or "
                                "overwrite it."));
}

/// The file keeps no stamp, so that each check tries it again; it is reported once.
void CLibraryWatcher::NoteFailure(QString const& path, FileStamp const& stamp, QString const& fault)
{
    Failure& failure = m_Failures[path];
    if (!(failure.stamp == stamp))
        failure = {stamp, 0};
    ++failure.attempts;
    if (failure.attempts < kReadAttempts)
        m_Pause.start();
    else if (failure.attempts == kReadAttempts)
        Report(path, QStringLiteral("another program changed the file, and it cannot be read: %1")
                         .arg(fault));
}

void CLibraryWatcher::Report(QString const& path, QString const& text) const
{
    QString const& top = m_Library->GetFolder();
    QString const shown = path == top ? top : GetShownPath(top, path);
    m_Library->GetMessages().Post(eSeverity::kWarning, shown + QStringLiteral(": ") + text);
}

} // namespace embeddedhost

#include "moc_librarywatcher.cpp"
