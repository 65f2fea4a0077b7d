#ifndef EMBEDDEDHOST_LIBRARYWATCHER_H
#define EMBEDDEDHOST_LIBRARYWATCHER_H

#include "model/library.h"

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <memory>

namespace embeddedhost {

/// Notices what other programs do to an open library's folders, and brings the library up to it.
///
/// Only folders are watched: a watch on a file dies when the file is replaced. A change within a
/// file that stays in its place is noticed when the application becomes active, and by Check().
class CLibraryWatcher : public QObject
{
    Q_OBJECT

public:
    explicit CLibraryWatcher(std::shared_ptr<CLibrary> library, QObject* parent = nullptr);

    /// Looks at the folders now.
    void Check();

Q_SIGNALS:
    /// Files have changed on disk, whether or not this changed the library.
    void FilesTouched();

private Q_SLOTS:
    void OnApplicationStateChanged(Qt::ApplicationState state);

private:
    /// Enough to tell that a file was touched.
    struct Stamp
    {
        qint64 size = -1;
        QDateTime modified;

        bool operator==(Stamp const& other) const
        {
            return size == other.size && modified == other.modified;
        }
    };
    typedef QMap<QString, Stamp> Stamps;

    static Stamp GetStamp(QString const& path);
    Stamps ReadStamps(DataSourcePtr const& source) const;
    void WatchFolders();
    QStringList FindTouchedFiles(DataSourcePtr const& source);
    void Reconcile(DataSourcePtr const& source, QString const& path);
    void RetryOrReport(QString const& path, QString const& fault);
    void Report(QString const& path, QString const& text);

    std::shared_ptr<CLibrary> const m_Library;
    QFileSystemWatcher m_Watcher;
    /// Gathers a burst of changes.
    QTimer m_Pause;
    /// By the folder of the data source.
    QMap<QString, Stamps> m_Stamps;
    /// How often a file was found unreadable in a row.
    QHash<QString, int> m_Attempts;
};

} // namespace embeddedhost

#endif
