#include "libraryfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <stdexcept>

using nlohmann::ordered_json;

namespace {

[[noreturn]] void Fail(QString const& path, QString const& reason)
{
    throw std::runtime_error(QStringLiteral("%1: %2").arg(path, reason).toStdString());
}

} // namespace

void WriteFile(QString const& path, std::string const& text)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(text.data(), static_cast<qint64>(text.size())) < 0 || !file.flush())
        Fail(path, file.errorString());
}

void MakeFolder(QString const& path)
{
    if (!QDir().mkpath(path))
        Fail(path, QStringLiteral("the folder cannot be made"));
}

void MakeEmptyFolder(QString const& path)
{
    if (QFileInfo::exists(path) && !QFileInfo(path).isDir())
        Fail(path, QStringLiteral("is not a folder"));
    MakeFolder(path);
    if (!QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        Fail(path, QStringLiteral("the folder is not empty"));
}

ordered_json MakeDataSource(std::string const& uid, char const* name, char const* path,
                            char const* access)
{
    return {{"uid", uid}, {"name", name}, {"path", path}, {"access", access}};
}

void WriteManifest(QString const& folder, std::string const& name, ordered_json const& dataSources)
{
    ordered_json const manifest = {{"format", 1}, {"name", name}, {"dataSources", dataSources}};
    WriteFile(folder + QStringLiteral("/library.json"), manifest.dump(4) + '\n');
}

void MakeLibrary(QString const& folder)
{
    MakeEmptyFolder(folder);
    MakeFolder(folder + QStringLiteral("/project"));
    std::string const uid =
        QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
    // The folder may be given as ".".
    QString const name = QDir(QDir::cleanPath(QDir(folder).absolutePath())).dirName();
    WriteManifest(folder, name.toStdString(),
                  ordered_json::array({MakeDataSource(uid, "Project", "project", "read-write")}));
}
