#include "gitlibrary.h"

#include <sourcecontrol.h>

#include <QTest>

using namespace tarno::datamodel;

GitLibrary::GitLibrary(int count)
    : m_Count(count)
{
    folder.Write("library.json", R"({
  "format": 1,
  "name": "Test",
  "dataSources": [
    {"uid": "10000000-0000-0000-0000-000000000001", "name": "Project", "path": "project",
     "access": "read-write"},
    {"uid": "10000000-0000-0000-0000-000000000002", "name": "Shipped", "path": "shipped",
     "access": "read-only"}
  ]
}
)");
    for (int i = 0; i < count; ++i)
        WriteCompound(GetFile(i), GetUid(i), QStringLiteral("c%1").arg(i));
    WriteCompound("shipped/shipped.json", GetUid(-1), "shipped");
    folder.Commit("the library");
    host = std::make_unique<CEmbeddedHost>();
    if (!host->OpenLibrary(folder.GetPath()))
        qFatal("the library cannot be opened");
    if (!QTest::qWaitFor(ScsUtils::IsFileVersionControlActive))
        qFatal("git does not find its work tree");
}

QString GitLibrary::GetFile(int number)
{
    return QStringLiteral("project/%1/c%2.json").arg(number / 500).arg(number);
}

std::string GitLibrary::GetUid(int number)
{
    return QStringLiteral("20000000-0000-0000-0000-%1")
        .arg(number + 1, 12, 10, QChar('0'))
        .toStdString();
}

ItemID GitLibrary::GetItem(int number) const
{
    return host->FindItem(GetUid(number));
}

qorm::QormHandle<qorm::IDbObject> GitLibrary::GetObject(int number) const
{
    auto* const service = dynamic_cast<qorm::IRevisionControlUIHelper*>(
        wekGetSystem()->GetService("RevisionControlUIHelper"));
    return service->FindObject(qorm::DbObjectId(GetUid(number).c_str()));
}

ObjectList GitLibrary::GetObjects() const
{
    ObjectList objects;
    for (int i = 0; i < m_Count; ++i)
        objects.push_back(GetObject(i));
    return objects;
}

void GitLibrary::Change(int number) const
{
    WriteCompound(GetFile(number), GetUid(number), QStringLiteral("c%1").arg(number),
                  ", \"changed\": true");
}

void GitLibrary::WriteCompound(QString const& file, std::string const& uid, QString const& name,
                               QByteArray const& more) const
{
    folder.Write(file, "{\"uid\": \"" + QByteArray::fromStdString(uid)
                           + "\", \"kind\": \"compound\", \"name\": \"" + name.toUtf8() + '"' + more
                           + "}\n");
}

unsigned StateRecorder::GetState(ItemID const& id) const
{
    auto const found = states.find(id);
    return found == states.end() ? 0 : found->second;
}

void StateRecorder::ItemAccessStateChanged(ItemLibraryAccessor&, ItemID const& id, long state)
{
    ++count;
    ++counts[id];
    states[id] = unsigned(state);
    if (onState)
        onState();
}
