#include "storage/librarywriter.h"

#include "storage/manifest.h"
#include "storage/pendingfile.h"
#include "storage/stagingfolders.h"

#include <QFileInfo>

#include <algorithm>

namespace embeddedhost {

namespace {

/// The maximum wait for locks of other processes, and for programs that are writing a file to be
/// replaced, in milliseconds. The GUI thread is blocked meanwhile.
constexpr int kLockPatience = 3000;
constexpr int kWriterPatience = 1000;

typedef std::vector<std::unique_ptr<CPendingFile>> PendingFiles;

/// Takes a step for all of them; those that fail are dropped, with their failures.
template <typename Step>
void TakeStep(PendingFiles& pending, SaveResult& result, Step const& step)
{
    auto const failed = std::remove_if(pending.begin(), pending.end(), [&](auto const& file) {
        bool const isDone = step(*file);
        if (!isDone)
            result.failures.push_back(file->GetFailure());
        return !isDone;
    });
    pending.erase(failed, pending.end());
}

/// Why nothing can be saved: a library that is gone is not made again with half of its files.
QString FindObstacle(QString const& folder)
{
    if (QFileInfo(folder).canonicalFilePath() != folder)
        return QStringLiteral("Nothing was saved: the library folder %1 is gone. Put it back and "
                              "save again.")
            .arg(folder);
    if (!HasManifest(folder))
        return QStringLiteral("Nothing was saved: the library folder %1 has no %2 any more. Put it "
                              "back and save again.")
            .arg(folder, kManifestName);
    return QString();
}

} // namespace

SaveResult SaveFiles(CLibrary const& library, std::vector<LibraryFile*> const& files)
{
    SaveResult result;
    QString const obstacle = files.empty() ? QString() : FindObstacle(library.GetFolder());
    if (!obstacle.isEmpty()) {
        result.failures.push_back(obstacle);
        return result;
    }
    PendingFiles pending;
    for (LibraryFile* const file : files)
        pending.push_back(std::make_unique<CPendingFile>(library, *file));
    CStagingFolders stagings(library, kLockPatience);
    TakeStep(pending, result, [&](CPendingFile& file) { return file.Prepare(stagings); });
    if (pending.size() > 1) {
        for (auto const& file : pending)
            file->StartSync();
    }
    TakeStep(pending, result, [](CPendingFile& file) { return file.Sync(); });
    int patience = kWriterPatience;
    TakeStep(pending, result, [&](CPendingFile& file) { return file.PutInPlace(&patience); });
    result.writtenFiles = int(pending.size());
    result.keptFiles = stagings.DescribeKept();
    return result;
}

} // namespace embeddedhost
