#include "objectaccess.h"
#include "testhost.h"
#include "testtext.h"

using namespace qorm;
using hostkit::eObjectKind;

namespace {

/// The helper of the one instance.
class TestHelper : public hostkit::CRefCounted<IHelper>
{
public:
    TestHelper()
    {
        // It lives as long as the process.
        AddRef();
    }

    void MoveToDataSource(QormHandle<IDbObject> const& object, QormPtr<IDataSource> const& target,
                          bool withFiles) override
    {
        TestDataSource* const source = static_cast<TestDataSource*>(target.Get());
        TestHost::Get().Record(
            "MoveToDataSource",
            {TextOf(object), source ? Quoted(source->m_Uri) : "null", TextOf(withFiles)});
    }
};

/// The object, if it is seen as that kind.
TestObject* Find(int cacheIndex, eObjectKind kind)
{
    TestObject* const object = TestDatabase::Get().At(cacheIndex);
    switch (kind) {
    case eObjectKind::kTypeAsset:
        return object && object->m_IsTypeAsset ? object : nullptr;
    case eObjectKind::kValueAsset:
        return object && object->m_IsResource ? object : nullptr;
    case eObjectKind::kAnyObject:
        break;
    }
    return object;
}

} // namespace

namespace hostkit {

bool HasObject(IQormInstance* /*instance*/, int cacheIndex, eObjectKind kind)
{
    return Find(cacheIndex, kind);
}

IDbObject* GetDbObject(IQormInstance* /*instance*/, int cacheIndex)
{
    return Find(cacheIndex, eObjectKind::kAnyObject);
}

ITypeAsset* GetTypeAsset(IQormInstance* /*instance*/, int cacheIndex)
{
    return Find(cacheIndex, eObjectKind::kTypeAsset);
}

IValueAsset* GetValueAsset(IQormInstance* /*instance*/, int cacheIndex)
{
    return Find(cacheIndex, eObjectKind::kValueAsset);
}

QormPtr<IDataSource> FindDataSource(IQormInstance* /*instance*/, int cacheIndex)
{
    TestHost::Get().Count("GetDataSource");
    TestObject* const object = Find(cacheIndex, eObjectKind::kAnyObject);
    return QormPtr<IDataSource>(object ? object->m_Source : nullptr);
}

DbObjectId FindObjectId(IQormInstance* /*instance*/, int cacheIndex)
{
    TestObject* const object = Find(cacheIndex, eObjectKind::kAnyObject);
    return object ? object->GetDbObjectId() : DbObjectId("");
}

QormPtr<IDataModelMgr> FindManager(IQormInstance* /*instance*/, int cacheIndex)
{
    TestHost::Get().Count("GetManager");
    TestObject* const object = Find(cacheIndex, eObjectKind::kAnyObject);
    return object ? object->GetDataModelMgr() : QormPtr<IDataModelMgr>();
}

bool IsAssetLoaded(IQormInstance* /*instance*/, int cacheIndex)
{
    TestObject const* const object = Find(cacheIndex, eObjectKind::kTypeAsset);
    return object && object->IsLoaded();
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
    TestHost::Get().Count("GetHelper");
    static TestHelper* const helper = new TestHelper;
    return instance.IsNull() ? QormPtr<IHelper>() : QormPtr<IHelper>(helper);
}

QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource)
{
    TestHost::Get().Count("GetDataSourceFromResource");
    TestObject* const object = Find(resource.GetCacheIndex(), eObjectKind::kValueAsset);
    return QormPtr<IDataSource>(object ? object->m_Represents : nullptr);
}

std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource)
{
    TestHost::Get().Count("GetResourceExpandedURI");
    TestObject* const object = Find(resource.GetCacheIndex(), eObjectKind::kAnyObject);
    return object && object->m_Represents ? object->m_Represents->m_Uri : std::string();
}

void PrintDebugString(std::string const& text)
{
    TestHost::Get().Record("PrintDebugString", {Quoted(text)});
}

} // namespace qorm
