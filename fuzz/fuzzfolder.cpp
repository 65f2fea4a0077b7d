#include "fuzzfolder.h"

#include "require.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <algorithm>

namespace {

char const* const kOutside =
    R"({"uid": "outside", "kind": "compound", "name": "Outside", "tags": {}})";

char const* const kFuzzManifest = R"({
  "format": 1,
  "name": "Library",
  "dataSources": [
    {"uid": "00000000-0000-0000-0000-0000000000A1", "name": "Project", "path": "project",
     "access": "read-write"},
    {"uid": "00000000-0000-0000-0000-0000000000A2", "name": "Shared", "path": "shared",
     "access": "read-write"},
    {"uid": "00000000-0000-0000-0000-0000000000A3", "name": "Factory", "path": "factory",
     "access": "read-only", "component": "D2BA853A-8668-704A-A121-1F7DE917B664"}
  ]
}
)";

QByteArray MustRead(QString const& path)
{
    QFile file(path);
    Require(file.open(QIODevice::ReadOnly), "a file of the library can be read");
    return file.readAll();
}

void MustWrite(QString const& path, QByteArray const& content)
{
    QFile file(path);
    Require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "the library can be written");
}

/// A file that is replaced has another number, one that is written in its place another time.
quint64 GetVersion(QString const& path)
{
    struct stat status = {};
    ::lstat(QFile::encodeName(path).constData(), &status);
    return quint64(status.st_ino) * 1000003u + quint64(status.st_mtim.tv_sec) * 1000000007u
           + quint64(status.st_mtim.tv_nsec);
}

template <class IsSame>
bool AreSame(FuzzFolder::Files const& left, FuzzFolder::Files const& right, IsSame const& isSame)
{
    return left.keys() == right.keys()
           && std::equal(left.begin(), left.end(), right.begin(), isSame);
}

} // namespace

FuzzFolder::FuzzFolder()
{
    Require(m_Folder.isValid(), "there is a place for the library");
    MustWrite(m_Folder.filePath(QStringLiteral("outside.json")), kOutside);
}

QString FuzzFolder::GetPath() const
{
    return m_Folder.filePath(QStringLiteral("library"));
}

QString FuzzFolder::GetPath(QString const& file) const
{
    return GetPath() + QLatin1Char('/') + file;
}

void FuzzFolder::Clear()
{
    QDir(GetPath()).removeRecursively();
    for (char const* const folder : {"project/below", "shared", "factory"})
        QDir().mkpath(GetPath(QLatin1String(folder)));
    Write(QStringLiteral("library.json"), kFuzzManifest);
}

void FuzzFolder::Write(QString const& file, QByteArray const& content)
{
    Remove(file);
    MustWrite(GetPath(file), content);
    QFile written(GetPath(file));
    written.open(QIODevice::ReadWrite);
    written.setFileTime(QDateTime::fromSecsSinceEpoch(++m_Time), QFileDevice::FileModificationTime);
}

void FuzzFolder::Remove(QString const& file) const
{
    QFile::remove(GetPath(file));
}

void FuzzFolder::Link(QString const& file) const
{
    Remove(file);
    QFile::link(m_Folder.filePath(QStringLiteral("outside.json")), GetPath(file));
}

void FuzzFolder::MakePipe(QString const& file) const
{
    Remove(file);
    ::mkfifo(QFile::encodeName(GetPath(file)).constData(), 0600);
}

FuzzFolder::Files FuzzFolder::Read() const
{
    Files files;
    QDirIterator all(GetPath(), QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        QString const path = all.next();
        files[path.mid(GetPath().size() + 1)] = {MustRead(path), GetVersion(path)};
    }
    return files;
}

bool FuzzFolder::IsOutsideKept() const
{
    return MustRead(m_Folder.filePath(QStringLiteral("outside.json"))) == kOutside;
}

bool AreSameContents(FuzzFolder::Files const& left, FuzzFolder::Files const& right)
{
    return AreSame(left, right, [](FuzzFolder::File const& a, FuzzFolder::File const& b) {
        return a.content == b.content;
    });
}

bool AreUntouched(FuzzFolder::Files const& left, FuzzFolder::Files const& right)
{
    return AreSame(left, right, [](FuzzFolder::File const& a, FuzzFolder::File const& b) {
        return a.version == b.version && a.content == b.content;
    });
}
