#include "sourcecontrol/specialfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace embeddedhost {

namespace {

/// The maximum length of a path in one of git's small files.
constexpr qint64 kMaxPathLength = 8192;

bool IsSpecial(QString const& path)
{
    QFileInfo const info(path);
    return info.exists() && !info.isFile() && !info.isDir();
}

QString FindSpecial(QString const& folder, QStringList const& names)
{
    for (QString const& name : names) {
        QString const path = folder + QLatin1Char('/') + name;
        if (IsSpecial(path))
            return path;
    }
    return QString();
}

/// The folder that a small file names, relative to where the file is; empty when there is no such
/// file.
QString ReadPath(QString const& path, QString const& prefix)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return QString();
    QString const text = QFile::decodeName(file.read(kMaxPathLength)).trimmed();
    return text.startsWith(prefix)
               ? QDir(QFileInfo(path).path()).filePath(text.mid(prefix.size()).trimmed())
               : QString();
}

QString FindSpecialInGitFolder(QString const& gitFolder)
{
    QString const special = FindSpecial(
        gitFolder, {QStringLiteral("HEAD"), QStringLiteral("commondir"), QStringLiteral("index"),
                    QStringLiteral("config.worktree"), QStringLiteral("checkedout.json")});
    if (!special.isEmpty())
        return special;
    // A linked work tree shares the rest with the main one.
    QString const shared = ReadPath(gitFolder + QStringLiteral("/commondir"), QString());
    return FindSpecial(shared.isEmpty() ? gitFolder : shared,
                       {QStringLiteral("config"), QStringLiteral("packed-refs"),
                        QStringLiteral("shallow"), QStringLiteral("info/exclude"),
                        QStringLiteral("info/attributes"),
                        QStringLiteral("objects/info/alternates")});
}

QString FindSpecialInFolders(QString const& root, QString const& folder)
{
    QDir dir(folder);
    while (true) {
        QString const special =
            FindSpecial(dir.path(), {QStringLiteral(".gitignore"), QStringLiteral(".gitattributes"),
                                     QStringLiteral(".gitmodules")});
        if (!special.isEmpty() || dir.path() == root || !dir.cdUp())
            return special;
    }
}

} // namespace

QString FindGitRoot(QString const& folder)
{
    QDir root(folder);
    while (!root.exists(QStringLiteral(".git")) && root.cdUp()) {
    }
    return root.path();
}

QString FindSpecialGitFile(QString const& folder)
{
    QString const root = FindGitRoot(folder);
    QString const git = QDir(root).filePath(QStringLiteral(".git"));
    if (!QFileInfo::exists(git))
        return QString();
    if (IsSpecial(git))
        return git;
    QString const gitFolder =
        QFileInfo(git).isDir() ? git : ReadPath(git, QStringLiteral("gitdir:"));
    QString const special = FindSpecialInGitFolder(gitFolder);
    return special.isEmpty() ? FindSpecialInFolders(root, folder) : special;
}

} // namespace embeddedhost
