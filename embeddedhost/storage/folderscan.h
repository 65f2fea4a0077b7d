#ifndef EMBEDDEDHOST_FOLDERSCAN_H
#define EMBEDDEDHOST_FOLDERSCAN_H

#include "storage/faults.h"

#include <QString>
#include <QStringList>

namespace embeddedhost {

/// Whether the path lies in the folder, or is it; both canonical.
bool IsWithin(QString const& folder, QString const& path);

/// The path as messages show it: relative to the library folder.
QString GetShownPath(QString const& libraryFolder, QString const& path);

/// The *.json files below a data source's folder, sub-folders included, in the order of their
/// names. Links to folders are not followed, nor links to files outside the library.
QStringList ListJsonFiles(QString const& libraryFolder, QString const& sourceFolder,
                          FaultReporter const& faults);

} // namespace embeddedhost

#endif
