#ifndef EMBEDDEDHOST_FILEDIGEST_H
#define EMBEDDEDHOST_FILEDIGEST_H

#include <QByteArray>
#include <QString>

namespace embeddedhost {

/// Tells the content of a file from any other.
QByteArray GetDigest(QByteArray const& content);
/// Of what is on disk now; empty when there is nothing. What cannot be read, or lies outside
/// `folder` (see ReadRegularFile), has the digest of no content.
QByteArray GetDigestOnDisk(QString const& path, QString const& folder);

} // namespace embeddedhost

#endif
