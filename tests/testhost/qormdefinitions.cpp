#include "testdatabase.h"
#include <hostkit/objectaccess.h>

using namespace qorm;
using hostkit::eObjectKind;

namespace {

/// The helper of the one instance.
class TestHelper : public hostkit::CRefCounted<IHelper>
{
public:
    void MoveToDataSource(QormHandle<IDbObject> const& object, QormPtr<IDataSource> const& target,
                          bool withFiles) override
    {
        TestDataSource* const source = static_cast<TestDataSource*>(target.Get());
        Record("MoveToDataSource",
               {TextOf(object), source ? Quoted(source->m_Uri) : "null", TextOf(withFiles)});
    }
};

/// Null when there is none.
TestObject* ObjectAt(int cacheIndex)
{
    std::vector<TestObject*> const& cache = TestDatabase::Get().m_Cache;
    bool const exists = cacheIndex >= 0 && cacheIndex < static_cast<int>(cache.size());
    return exists ? cache[cacheIndex] : nullptr;
}

} // namespace

namespace hostkit {

bool HasObject(IQormInstance* /*instance*/, int cacheIndex, eObjectKind kind)
{
    TestObject const* const object = ObjectAt(cacheIndex);
    return object && (kind != eObjectKind::kTypeAsset || object->m_IsTypeAsset)
           && (kind != eObjectKind::kValueAsset || !object->m_ResourceName.empty());
}

IDbObject* GetDbObject(IQormInstance* /*instance*/, int cacheIndex)
{
    return ObjectAt(cacheIndex);
}

ITypeAsset* GetTypeAsset(IQormInstance* /*instance*/, int cacheIndex)
{
    return ObjectAt(cacheIndex);
}

IValueAsset* GetValueAsset(IQormInstance* /*instance*/, int cacheIndex)
{
    return ObjectAt(cacheIndex);
}

QormPtr<IDataSource> FindDataSource(IQormInstance* /*instance*/, int cacheIndex)
{
    Query("GetDataSource");
    TestObject* const object = ObjectAt(cacheIndex);
    return QormPtr<IDataSource>(object ? object->m_Source : nullptr);
}

DbObjectId FindObjectId(IQormInstance* /*instance*/, int cacheIndex)
{
    TestObject* const object = ObjectAt(cacheIndex);
    return object ? object->GetDbObjectId() : DbObjectId("");
}

QormPtr<IDataModelMgr> FindManager(IQormInstance* /*instance*/, int cacheIndex)
{
    Query("GetManager");
    TestObject* const object = ObjectAt(cacheIndex);
    return object ? object->GetDataModelMgr() : QormPtr<IDataModelMgr>();
}

bool IsAssetLoaded(IQormInstance* instance, int cacheIndex)
{
    Query("IsLoaded");
    return HasObject(instance, cacheIndex, eObjectKind::kTypeAsset)
           && ObjectAt(cacheIndex)->m_IsLoaded;
}

} // namespace hostkit

namespace qorm {

UID const& UID_Resource()
{
    static UID const uid("5E50CE00-0000-4000-8000-000000000001");
    return uid;
}

QormPtr<IHelper> IHelper::GetHelper(QormPtr<IQormInstance> const& instance)
{
    Query("GetHelper");
    return QormPtr<IHelper>(instance.IsNull() ? nullptr : new TestHelper);
}

QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource)
{
    Query("GetDataSourceFromResource");
    TestObject* const object = ObjectAt(resource.GetCacheIndex());
    return QormPtr<IDataSource>(object ? object->m_Represents : nullptr);
}

std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource)
{
    Query("GetResourceExpandedURI");
    TestObject* const object = ObjectAt(resource.GetCacheIndex());
    return object && object->m_Represents ? object->m_Represents->m_Uri : std::string();
}

void PrintDebugString(std::string const& text)
{
    Record("PrintDebugString", {Quoted(text)});
}

} // namespace qorm
