#include "storage/wholefile.h"

#include "storage/heldfolder.h"

#include <QFileInfo>

namespace embeddedhost {

bool WriteWholeFile(QString const& path, QByteArray const& content)
{
    QFileInfo const info(path);
    QString const folderPath = QFileInfo(info.path()).canonicalFilePath();
    QString unsaid;
    auto const folder = CHeldFolder::Open(folderPath, folderPath, false, &unsaid);
    if (!folder)
        return false;
    QString const newName = info.fileName() + QStringLiteral(".new");
    // Left behind by a killed process.
    folder->Remove(newName);
    bool const isWritten = folder->Create(newName, content, QString()).IsDone()
                           && folder->Sync(newName).IsDone()
                           && folder->Replace(newName, *folder, info.fileName()).IsDone();
    if (!isWritten)
        folder->Remove(newName);
    return isWritten;
}

} // namespace embeddedhost
