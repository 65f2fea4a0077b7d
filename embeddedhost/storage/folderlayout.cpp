#include "storage/folderlayout.h"

#include "storage/manifest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>

namespace embeddedhost {

namespace {

bool Fail(QString const& path, QString const& reason, QString* fault)
{
    *fault = QStringLiteral("%1: %2").arg(path, reason);
    return false;
}

bool MakeFolder(QString const& path, QString* fault)
{
    return QDir().mkpath(path) || Fail(path, QStringLiteral("the folder cannot be made"), fault);
}

bool MakeEmptyFolder(QString const& path, QString* fault)
{
    if (QFileInfo::exists(path) && !QFileInfo(path).isDir())
        return Fail(path, QStringLiteral("is not a folder"), fault);
    if (!MakeFolder(path, fault))
        return false;
    auto const all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    return QDir(path).isEmpty(all) || Fail(path, QStringLiteral("the folder is not empty"), fault);
}

bool WriteFile(QString const& path, QByteArray const& content, QString* fault)
{
    QFile file(path);
    bool const isWritten =
        file.open(QIODevice::WriteOnly) && file.write(content) >= 0 && file.flush();
    return isWritten || Fail(path, file.errorString(), fault);
}

} // namespace

QString const kManifestName = QStringLiteral("library.json");
QString const kObjectFileSuffix = QStringLiteral(".json");

QString GetManifestPath(QString const& folder)
{
    return folder + QLatin1Char('/') + kManifestName;
}

bool MakeLibraryFolder(QString const& folder, NewLibrary const& library, QString* fault)
{
    if (!MakeEmptyFolder(folder, fault))
        return false;
    auto const& sources = library.sources;
    bool const areMade =
        std::all_of(sources.begin(), sources.end(), [&](NewLibrary::DataSource const& source) {
            return MakeFolder(folder + QLatin1Char('/') + QString::fromStdString(source.path),
                              fault);
        });
    // Last: the manifest makes the folder a library.
    return areMade && WriteFile(GetManifestPath(folder), MakeManifest(library), fault);
}

NewLibrary MakeEmptyLibrary(QString const& folder)
{
    // The folder may be given as ".".
    QString const name = QDir(QDir::cleanPath(QDir(folder).absolutePath())).dirName();
    QString const uid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    return {name.toStdString(), {{uid.toStdString(), "Project", "project"}}};
}

} // namespace embeddedhost
