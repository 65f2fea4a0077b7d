#include "storage/folderlayout.h"

#include "storage/folderscan.h"
#include "storage/manifest.h"

#include <qorm.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QUuid>

#include <algorithm>
#include <filesystem>
#include <vector>

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
    // The toolkit lists no names that it cannot make a text of, and nothing of a folder that cannot
    // be read.
    std::error_code error;
    bool const isEmpty = std::filesystem::is_empty(QFile::encodeName(path).toStdString(), error);
    if (error)
        return Fail(path, QStringLiteral("the folder cannot be read"), fault);
    return isEmpty || Fail(path, QStringLiteral("the folder is not empty"), fault);
}

/// Looks for data sources that would be left out when the library is opened.
class NewSourcesCheck
{
public:
    /// Empty if there is none so far.
    QString FindFault(NewLibrary::DataSource const& source)
    {
        QString fault = FindUidFault(source.uid);
        if (fault.isEmpty() && !source.component.empty())
            fault = FindUidFault(source.component);
        return fault.isEmpty() ? FindPathFault(QString::fromStdString(source.path)) : fault;
    }

private:
    QString FindUidFault(std::string const& text)
    {
        QString const shown = QString::fromStdString(text);
        if (!qorm::DbObjectId::IsUID(text.c_str()))
            return QStringLiteral("\"%1\" is no UID").arg(shown);
        qorm::UID const uid(text.c_str());
        if (std::find(m_Uids.begin(), m_Uids.end(), uid) != m_Uids.end())
            return QStringLiteral("the UID %1 is used more than once").arg(shown);
        m_Uids.push_back(uid);
        return QString();
    }

    QString FindPathFault(QString const& path)
    {
        QString const clean = QDir::cleanPath(path);
        if (clean.isEmpty() || QDir::isAbsolutePath(clean) || IsWithin("..", clean))
            return QStringLiteral("the path \"%1\" does not lead into the library folder")
                .arg(path);
        if (IsWithin(kManifestName, clean))
            return QStringLiteral("the path \"%1\" is the manifest's").arg(path);
        // The library folder itself may be one, as ".".
        QString const place = QDir::cleanPath('/' + clean);
        for (QString const& other : m_Places) {
            if (IsWithin(other, place) || IsWithin(place, other))
                return QStringLiteral("the path \"%1\" overlaps with another").arg(path);
        }
        m_Places << place;
        return QString();
    }

    std::vector<qorm::UID> m_Uids;
    QStringList m_Places;
};

bool CheckSources(QString const& folder, NewLibrary const& library, QString* fault)
{
    NewSourcesCheck check;
    int number = 0;
    for (NewLibrary::DataSource const& source : library.sources) {
        ++number;
        QString const reason = check.FindFault(source);
        if (!reason.isEmpty())
            return Fail(folder, QStringLiteral("data source %1: %2").arg(number).arg(reason),
                        fault);
    }
    return true;
}

bool WriteFile(QString const& path, QByteArray const& content, QString* fault)
{
    QFile file(path);
    bool const isWritten =
        file.open(QIODevice::WriteOnly) && file.write(content) >= 0 && file.flush();
    return isWritten || Fail(path, file.errorString(), fault);
}

} // namespace

bool MakeLibraryFolder(QString const& folder, NewLibrary const& library, QString* fault)
{
    if (!CheckSources(folder, library, fault) || !MakeEmptyFolder(folder, fault))
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
