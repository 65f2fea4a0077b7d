#include "libraryfolder.h"

#include <QDirIterator>

char const* const kProjectUid = "AAAAAAAA-0000-0000-0000-000000000001";
char const* const kFactoryUid = "AAAAAAAA-0000-0000-0000-000000000002";
char const* const kFactoryComponent = "D2BA853A-8668-704A-A121-1F7DE917B664";

char const* const kManifest = R"({"format": 1, "name": "Test", "dataSources": [
    {"uid": "AAAAAAAA-0000-0000-0000-000000000001", "name": "Project", "path": "project",
     "access": "read-write"},
    {"uid": "AAAAAAAA-0000-0000-0000-000000000002", "name": "Factory", "path": "factory",
     "access": "read-only", "component": "D2BA853A-8668-704A-A121-1F7DE917B664"}]})";

TestFolder::TestFolder(QString const& name)
    : m_Path(QFileInfo(m_Parent.path()).canonicalFilePath())
{
    if (!name.isEmpty())
        m_Path += QLatin1Char('/') + name;
    QDir().mkpath(m_Path);
}

QString TestFolder::GetPath(QString const& file) const
{
    return file.isEmpty() ? m_Path : m_Path + QLatin1Char('/') + file;
}

void TestFolder::Write(QString const& file, QByteArray const& content) const
{
    QString const path = GetPath(file);
    QDir().mkpath(QFileInfo(path).path());
    if (!WriteFile(path, content))
        qFatal("%s cannot be written", qPrintable(path));
}

QByteArray TestFolder::Read(QString const& file) const
{
    return ReadFile(GetPath(file));
}

QMap<QString, QByteArray> TestFolder::Read() const
{
    QMap<QString, QByteArray> contents;
    QDirIterator files(GetPath(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QString const path = files.next();
        contents[path] = ReadFile(path);
    }
    return contents;
}

LibraryFolder::LibraryFolder()
{
    for (char const* folder : {"project", "factory"})
        QDir(GetPath()).mkdir(folder);
    Write(QStringLiteral("library.json"), kManifest);
}

std::string Uid(int number)
{
    return QStringLiteral("BBBBBBBB-0000-0000-0000-%1")
        .arg(number, 12, 10, QLatin1Char('0'))
        .toStdString();
}

QByteArray Object(int uid, char const* kind, char const* name, char const* more)
{
    return "{\"uid\": \"" + QByteArray::fromStdString(Uid(uid)) + "\", \"kind\": \"" + kind
           + "\", \"name\": \"" + name + '"' + more + '}';
}

QByteArray ReadFile(QString const& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteFile(QString const& path, QByteArray const& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
           && file.write(content) == content.size();
}

QStringList GetMessages(CEmbeddedHost& host)
{
    QStringList texts;
    for (embeddedhost::CMessageChannel::Message const& message : host.GetMessages().GetLog())
        texts << message.text;
    return texts;
}
