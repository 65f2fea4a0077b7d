#ifndef EMBEDDEDHOST_LIBRARYWATCHER_H
#define EMBEDDEDHOST_LIBRARYWATCHER_H

#include "model/library.h"
#include "storage/filereconciler.h"
#include "storage/systemfiles.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace embeddedhost {

/// Watches the folders of an open library for changes by other programs, and brings the library
/// up to date.
///
/// Only folders are watched: a watch on a file dies when the file is replaced. A change within a
/// file that stays in its place is noticed when the application becomes active, and by Check().
/// A folder that is gone is not an empty one: its items are kept until it is back.
class CLibraryWatcher : public QObject
{
    Q_OBJECT

public:
    explicit CLibraryWatcher(std::shared_ptr<CLibrary> library, QObject* parent = nullptr);

    /// Looks at the folders now. Does not throw; exceptions go to the message channel.
    void Check();

public Q_SLOTS:
    /// Looks at the folders shortly if there are conflicts: their changes may have been undone.
    void CheckConflicts();

Q_SIGNALS:
    /// Files have changed on disk, whether or not this changed the library.
    void FilesTouched();

private Q_SLOTS:
    void OnDirectoryChanged();
    void OnApplicationStateChanged(Qt::ApplicationState state);

private:
    /// Stamps of files by path.
    typedef QMap<QString, FileStamp> Stamps;

    /// How often the file of this stamp could not be read.
    struct Failure
    {
        FileStamp stamp;
        int attempts = 0;
    };

    static QStringList FindTouchedFiles(Stamps const& before, Stamps const& now);

    Stamps ReadStamps(DataSourcePtr const& source) const;
    Stamps ReadStampsWithGone(DataSourcePtr const& source) const;
    QString FindMissingFolder(DataSourcePtr const& source) const;
    QStringList ListFolders() const;
    void WatchFolders();
    void ReportMissingFolders();
    void CheckSources();
    bool CheckFiles(DataSourcePtr const& source);
    QStringList FindEndedConflicts(DataSourcePtr const& source) const;
    void CheckFile(DataSourcePtr const& source, QString const& path, Stamps const& now);
    void NoteFailure(QString const& path, FileStamp const& stamp, QString const& fault);
    void Report(QString const& path, QString const& text) const;

    std::shared_ptr<CLibrary> const m_Library;
    QFileSystemWatcher m_Watcher;
    /// Gathers a burst of changes.
    QTimer m_Pause;
    QElapsedTimer m_Burst;
    bool m_IsChecking = false;
    /// The stamps of the files when they were read, by the folder of the data source.
    QMap<QString, Stamps> m_Stamps;
    /// Failed files by path.
    QHash<QString, Failure> m_Failures;
    /// Files that were not read again because they have unsaved changes.
    QSet<QString> m_Conflicts;
    /// The missing folders that have been reported.
    QStringList m_MissingFolders;
};

} // namespace embeddedhost

#endif
