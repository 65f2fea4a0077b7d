#ifndef EMBEDDEDHOST_MANIFEST_H
#define EMBEDDEDHOST_MANIFEST_H

#include "model/newlibrary.h"
#include "objects/datasource.h"
#include "storage/faults.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace embeddedhost {

/// The name of the file that makes a folder a library.
extern QString const kManifestName;

QString GetManifestPath(QString const& folder);
bool HasManifest(QString const& folder);

/// The content of a library folder's manifest.
struct Manifest
{
    QString name;
    std::vector<CDataSource::Description> sources;
};

/// Reads the manifest of the folder, given by its canonical path. Data sources that cannot be
/// used are reported and left out; nothing when the manifest as a whole cannot.
std::optional<Manifest> ReadManifest(QString const& folder, FaultReporter const& faults);

/// The text of the manifest of a new library.
QByteArray MakeManifest(NewLibrary const& library);

} // namespace embeddedhost

#endif
