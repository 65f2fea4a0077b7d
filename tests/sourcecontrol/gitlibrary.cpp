#include "gitlibrary.h"

using namespace tarno::datamodel;

GitLibrary::GitLibrary(int count)
    : m_Count(count)
{
    folder.Write("library.json", kManifest);
    for (int i = 0; i < count; ++i)
        Change(i, "");
    folder.Write("factory/shipped.json", Object(0, "compound", "shipped"));
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

ItemID GitLibrary::GetItem(int number) const
{
    return host->FindItem(GetUid(number));
}

ObjectList GitLibrary::GetObjects() const
{
    ObjectList objects;
    for (int i = 0; i < m_Count; ++i)
        objects.push_back(GetObject(i));
    return objects;
}

void GitLibrary::Change(int number, char const* more) const
{
    QByteArray const name = 'c' + QByteArray::number(number);
    folder.Write(GetFile(number), Object(number + 1, "compound", name, more));
}

unsigned StateRecorder::GetState(ItemID const& id) const
{
    return states.count(id) == 0 ? 0 : states.at(id);
}

void StateRecorder::ItemAccessStateChanged(ItemLibraryAccessor&, ItemID const& id, long state)
{
    ++count;
    ++counts[id];
    states[id] = unsigned(state);
    if (onState)
        onState();
}
