#ifndef EMBEDDEDHOST_FILEDIGEST_H
#define EMBEDDEDHOST_FILEDIGEST_H

#include <QByteArray>
#include <QString>

namespace embeddedhost {

/// A hash that identifies the content of a file.
QByteArray GetDigest(QByteArray const& content);
/// The digest of the file on disk; empty if there is none. A file that cannot be read, or lies
/// outside `folder` (see ReadRegularFile), has the digest of an empty file.
QByteArray GetDigestOnDisk(QString const& path, QString const& folder);

} // namespace embeddedhost

#endif
