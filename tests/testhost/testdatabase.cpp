#include "testdatabase.h"

#include "testhost.h"
#include "testtext.h"

using namespace qorm;

namespace {

/// The manager of all objects.
class TestManager : public hostkit::CRefCounted<IDataModelMgr>
{
public:
    TestManager()
    {
        // It lives as long as the process.
        AddRef();
    }

    bool RunQuery(char const* query, qorm::Vector<CQueryResult>& results) override
    {
        TestHost::Get().Record("RunQuery", {Quoted(query)});
        for (TestObject* resource : TestDatabase::Get().GetResources())
            results.push_back(CQueryResult(resource->GetDbObjectId()));
        return true;
    }

    QormHandle<IDbObject> FindObject(DbObjectId const& objectId) override
    {
        TestHost::Get().Query("Manager.FindObject", {QString::fromLatin1(objectId.GetStr())});
        TestDatabase& database = TestDatabase::Get();
        return database.GetHandle(database.Find(objectId.GetStr()));
    }

    QormPtr<IQormInstance> GetInstance() override
    {
        return QormPtr<IQormInstance>(&TestDatabase::Get());
    }
};

QormPtr<IDataModelMgr> GetTestManager()
{
    static TestManager* const manager = new TestManager;
    return QormPtr<IDataModelMgr>(manager);
}

} // namespace

TestDataSource::TestDataSource(std::string const& uri, int accessMode)
    : m_Uri(uri)
    , m_AccessMode(accessMode)
{}

int TestDataSource::GetAccessMode() const
{
    TestHost::Get().Query("GetAccessMode", {Quoted(m_Uri)});
    return m_AccessMode;
}

TestObject::TestObject(std::string const& uid, int cacheIndex, TestDataSource* source)
    : m_Uid(uid)
    , m_CacheIndex(cacheIndex)
    , m_Source(source)
{}

QormPtr<IDataModelMgr> TestObject::GetDataModelMgr() const
{
    return m_HasManager ? GetTestManager() : QormPtr<IDataModelMgr>();
}

bool TestObject::IsLoaded() const
{
    TestHost::Get().Query("IsLoaded", {QString::fromStdString(m_Uid)});
    return m_IsLoaded;
}

bool TestObject::IsReadOnly() const
{
    TestHost::Get().Query("IsReadOnly", {QString::fromStdString(m_Uid)});
    return m_IsReadOnly;
}

char const* TestObject::GetName() const
{
    return m_ResourceName.c_str();
}

QormHandle<IValueAsset> TestObject::GetAssetHandle() const
{
    return QormHandle<IValueAsset>(QormPtr<IQormInstance>(&TestDatabase::Get()), m_CacheIndex);
}

DbObjectId TestObject::GetDbObjectId() const
{
    return DbObjectId(m_Uid.c_str());
}

TestDatabase& TestDatabase::Get()
{
    static TestDatabase* const database = new TestDatabase;
    return *database;
}

TestDatabase::TestDatabase()
{
    AddRef();
    char const* const components[] = {"D2BA853A-8668-704A-A121-1F7DE917B664",
                                      "34F315D3-58CF-4019-9BE3-381FCED0E983"};
    for (int index = 0; index < 2; ++index) {
        m_ComponentSources[index] = AddSource("component:" + std::to_string(index + 1));
        AddObject(components[index], m_ComponentSources[index]);
    }
}

void TestDatabase::Clear()
{
    for (std::size_t index = 2; index < m_Cache.size(); ++index) {
        if (m_Cache[index])
            Remove(*m_Cache[index]);
    }
    m_Cache.resize(2);
    for (std::size_t index = 2; index < m_Sources.size(); ++index)
        m_Sources[index]->Release();
    m_Sources.resize(2);
    for (TestDataSource* source : m_ComponentSources)
        source->m_AccessMode = 0;
}

TestDataSource* TestDatabase::AddSource(std::string const& uri, int accessMode)
{
    m_Sources.push_back(new TestDataSource(uri, accessMode));
    m_Sources.back()->AddRef();
    return m_Sources.back();
}

TestObject& TestDatabase::AddObject(std::string const& uid, TestDataSource* source)
{
    m_Cache.push_back(new TestObject(uid, static_cast<int>(m_Cache.size()), source));
    m_Cache.back()->AddRef();
    return *m_Cache.back();
}

TestObject& TestDatabase::AddResource(std::string const& uid, std::string const& name,
                                      TestDataSource* represents)
{
    TestObject& resource = AddObject(uid, nullptr);
    resource.m_IsResource = true;
    resource.m_ResourceName = name;
    resource.m_Represents = represents;
    return resource;
}

void TestDatabase::Remove(TestObject& object)
{
    m_Cache[object.m_CacheIndex] = nullptr;
    object.Release();
}

TestObject* TestDatabase::Find(std::string const& uid) const
{
    for (TestObject* object : m_Cache) {
        if (object && object->m_Uid == uid)
            return object;
    }
    return nullptr;
}

TestObject* TestDatabase::At(int cacheIndex) const
{
    bool const exists = cacheIndex >= 0 && cacheIndex < static_cast<int>(m_Cache.size());
    return exists ? m_Cache[cacheIndex] : nullptr;
}

QormHandle<IDbObject> TestDatabase::GetHandle(TestObject const* object) const
{
    if (!object)
        return QormHandle<IDbObject>();
    return QormHandle<IDbObject>(QormPtr<IQormInstance>(&Get()), object->m_CacheIndex);
}

std::vector<TestObject*> TestDatabase::GetResources() const
{
    std::vector<TestObject*> resources;
    for (TestObject* object : m_Cache) {
        if (object && object->m_IsResource)
            resources.push_back(object);
    }
    return resources;
}
