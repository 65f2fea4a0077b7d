#ifndef EMBEDDEDHOST_MANIFEST_H
#define EMBEDDEDHOST_MANIFEST_H

#include "objects/datasource.h"
#include "storage/faults.h"

#include <optional>
#include <vector>

namespace embeddedhost {

/// What a library folder's library.json says.
struct Manifest
{
    QString name;
    std::vector<CDataSource::Description> sources;
};

/// Reads the manifest of the folder, given by its canonical path. Data sources that cannot be
/// used are reported and left out; nothing is returned when the manifest as a whole cannot.
std::optional<Manifest> ReadManifest(QString const& folder, FaultReporter const& faults);

} // namespace embeddedhost

#endif
