#include "storage/filedigest.h"

#include "storage/systemfiles.h"

#include <QCryptographicHash>

namespace embeddedhost {

QByteArray GetDigest(QByteArray const& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha1);
}

QByteArray GetDigestOnDisk(QString const& path, QString const& folder)
{
    FileContent const content = ReadRegularFile(path, folder);
    if (!content.exists)
        return QByteArray();
    return content.fault.isEmpty() ? GetDigest(content.bytes) : QByteArray("unreadable");
}

} // namespace embeddedhost
