#include "testdatabase.h"

using namespace qorm;

namespace {

/// The manager of all objects.
class TestManager : public hostkit::CRefCounted<IDataModelMgr>
{
public:
    bool RunQuery(char const* query, qorm::Vector<CQueryResult>& results) override
    {
        Record("RunQuery", {Quoted(query)});
        for (TestObject* object : TestDatabase::Get().m_Cache) {
            if (!object->m_ResourceName.empty())
                results.push_back(CQueryResult(object->GetDbObjectId()));
        }
        return true;
    }

    QormHandle<IDbObject> FindObject(DbObjectId const& objectId) override
    {
        Query("Manager.FindObject", {QString::fromLatin1(objectId.GetStr())});
        return TestDatabase::Get().Find(objectId);
    }

    QormPtr<IQormInstance> GetInstance() override
    {
        return QormPtr<IQormInstance>(&TestDatabase::Get());
    }
};

} // namespace

QormPtr<IDataModelMgr> TestObject::GetDataModelMgr() const
{
    return QormPtr<IDataModelMgr>(new TestManager);
}

QormHandle<IValueAsset> TestObject::GetAssetHandle() const
{
    return QormHandle<IValueAsset>(QormPtr<IQormInstance>(&TestDatabase::Get()), m_CacheIndex);
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
