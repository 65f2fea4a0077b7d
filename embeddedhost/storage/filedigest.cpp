#include "storage/filedigest.h"

#include <QCryptographicHash>
#include <QFile>

namespace embeddedhost {

QByteArray GetDigest(QByteArray const& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha1);
}

QByteArray GetDigestOnDisk(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? GetDigest(file.readAll()) : QByteArray();
}

} // namespace embeddedhost
