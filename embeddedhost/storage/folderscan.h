#ifndef EMBEDDEDHOST_FOLDERSCAN_H
#define EMBEDDEDHOST_FOLDERSCAN_H

#include "objects/datasource.h"
#include "storage/faults.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace embeddedhost {

/// Whether the path lies in the folder, or is it; both canonical.
bool IsWithin(QString const& folder, QString const& path);

/// Whether the folder is there, with no link on the way to it. Links to files are followed, links
/// to folders are not.
bool IsRealFolder(QString const& folder);

/// The path as messages show it: relative to the library folder.
QString GetShownPath(QString const& libraryFolder, QString const& path);

/// Whether the file, given by its canonical path, lies in a data source that is not to be written.
bool LiesInReadOnlySource(std::vector<DataSourcePtr> const& sources, QString const& realPath);

/// The files of objects below a data source's folder, sub-folders included, in the order of their
/// names. Links to folders are not followed, nor links to files outside the library. Only regular
/// files are listed.
QStringList ListObjectFiles(QString const& libraryFolder, QString const& sourceFolder,
                            FaultReporter const& faults);

} // namespace embeddedhost

#endif
