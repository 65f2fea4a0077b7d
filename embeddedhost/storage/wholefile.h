#ifndef EMBEDDEDHOST_WHOLEFILE_H
#define EMBEDDEDHOST_WHOLEFILE_H

#include <QByteArray>
#include <QString>

namespace embeddedhost {

/// Replaces a file that is ours alone: at any time it has its old content or the new one. True
/// when the new content is on the disk. The folder has to exist.
bool WriteWholeFile(QString const& path, QByteArray const& content);

} // namespace embeddedhost

#endif
