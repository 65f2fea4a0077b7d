#include "storage/librarywatcher.h"

#include "storage/fileobjects.h"
#include "storage/filereconciler.h"
#include "storage/folderscan.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>

#include <algorithm>

namespace embeddedhost {

namespace {

/// Long enough for a checkout of many files to come in few bursts, in milliseconds.
constexpr int kPause = 150;
/// How often a file that cannot be read is tried again: it may be half written.
constexpr int kAttempts = 5;

} // namespace

CLibraryWatcher::CLibraryWatcher(std::shared_ptr<CLibrary> library, QObject* parent)
    : QObject(parent)
    , m_Library(std::move(library))
{
    m_Pause.setSingleShot(true);
    m_Pause.setInterval(kPause);
    connect(&m_Watcher, &QFileSystemWatcher::directoryChanged, &m_Pause,
            qOverload<>(&QTimer::start));
    connect(&m_Pause, &QTimer::timeout, this, &CLibraryWatcher::Check);
    // A host may run without windows.
    if (auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        connect(application, &QGuiApplication::applicationStateChanged, this,
                &CLibraryWatcher::OnApplicationStateChanged);
    WatchFolders();
    for (DataSourcePtr const& source : m_Library->GetSources())
        m_Stamps[source->GetDescription().folder] = ReadStamps(source);
}

void CLibraryWatcher::OnApplicationStateChanged(Qt::ApplicationState state)
{
    if (state == Qt::ApplicationActive)
        m_Pause.start();
}

CLibraryWatcher::Stamp CLibraryWatcher::GetStamp(QString const& path)
{
    QFileInfo const info(path);
    Stamp stamp;
    if (info.exists()) {
        stamp.size = info.size();
        stamp.modified = info.lastModified();
    }
    return stamp;
}

CLibraryWatcher::Stamps CLibraryWatcher::ReadStamps(DataSourcePtr const& source) const
{
    // What is odd about the folders was said when the library was opened.
    CMessageChannel unheard;
    Stamps stamps;
    QStringList const paths =
        ListJsonFiles(m_Library->GetFolder(), source->GetDescription().folder,
                      FaultReporter(unheard));
    for (QString const& path : paths)
        stamps[path] = GetStamp(path);
    return stamps;
}

void CLibraryWatcher::WatchFolders()
{
    QStringList folders;
    for (DataSourcePtr const& source : m_Library->GetSources()) {
        QString const folder = source->GetDescription().folder;
        if (QFileInfo(folder).isDir())
            folders << folder;
        QDirIterator below(folder, QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                           QDirIterator::Subdirectories);
        while (below.hasNext())
            folders << below.next();
    }
    QStringList const watched = m_Watcher.directories();
    for (QString const& folder : watched)
        folders.removeAll(folder);
    if (!folders.isEmpty())
        m_Watcher.addPaths(folders);
}

QStringList CLibraryWatcher::FindTouchedFiles(DataSourcePtr const& source)
{
    Stamps& before = m_Stamps[source->GetDescription().folder];
    Stamps const now = ReadStamps(source);
    QStringList gone;
    QStringList touched;
    for (auto stamp = before.cbegin(); stamp != before.cend(); ++stamp) {
        if (!now.contains(stamp.key()))
            gone << stamp.key();
    }
    for (auto stamp = now.cbegin(); stamp != now.cend(); ++stamp) {
        if (!before.contains(stamp.key()) || !(before[stamp.key()] == stamp.value()))
            touched << stamp.key();
    }
    before = now;
    // An object that went from one file to another must leave before it can come.
    return gone + touched;
}

void CLibraryWatcher::Check()
{
    QPointer<CLibraryWatcher> const self(this);
    std::shared_ptr<CLibrary> const library = m_Library;
    WatchFolders();
    std::vector<DataSourcePtr> const sources = library->GetSources();
    for (DataSourcePtr const& source : sources) {
        QStringList const touched = FindTouchedFiles(source);
        for (QString const& path : touched) {
            Reconcile(source, path);
            // A listener may have closed the library, and this with it.
            if (!self)
                return;
        }
        TakeInLeftOutEntries(*library);
        if (!self)
            return;
        if (!touched.isEmpty())
            Q_EMIT FilesTouched();
    }
}

void CLibraryWatcher::Reconcile(DataSourcePtr const& source, QString const& path)
{
    QPointer<CLibraryWatcher> const self(this);
    QString fault;
    eReconciled const result = ReconcileFile(m_Library, source, path, &fault);
    if (!self || result == eReconciled::kClosed)
        return;
    if (result == eReconciled::kUnreadable) {
        RetryOrReport(path, fault);
        return;
    }
    m_Attempts.remove(path);
    if (result == eReconciled::kConflict)
        Report(path, QStringLiteral("another program changed the file while it has changes that "
                                    "are not saved. They are kept; take the file from disk or "
                                    "overwrite it."));
}

void CLibraryWatcher::RetryOrReport(QString const& path, QString const& fault)
{
    if (++m_Attempts[path] >= kAttempts) {
        m_Attempts.remove(path);
        Report(path, QStringLiteral("another program changed the file, and it cannot be read: %1")
                         .arg(fault));
        return;
    }
    // Touched once more as far as the next look is concerned.
    for (Stamps& stamps : m_Stamps) {
        if (stamps.contains(path))
            stamps[path] = Stamp();
    }
    m_Pause.start();
}

void CLibraryWatcher::Report(QString const& path, QString const& text)
{
    m_Library->GetMessages().Post(eSeverity::kWarning,
                                  GetShownPath(m_Library->GetFolder(), path)
                                      + QStringLiteral(": ") + text);
}

} // namespace embeddedhost
