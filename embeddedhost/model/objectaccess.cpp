// The queries of hostkit's handles and of the contract's functions to the database.

#include "base/text8.h"
#include "model/objectdatabase.h"

#include <hostkit/objectaccess.h>
#include <qorm.h>

#include <typeinfo>

namespace embeddedhost {

namespace {

/// Not visible outside, so that the compiler inlines it: the functions below are called for each
/// item of a rebuild.
CObjectDatabase* FindDatabase(qorm::IQormInstance* instance)
{
    // Cheaper than a dynamic cast.
    bool const isOurs = instance && typeid(*instance) == typeid(CObjectDatabase);
    return isOurs ? static_cast<CObjectDatabase*>(instance) : nullptr;
}

} // namespace

CObjectDatabase* CObjectDatabase::From(qorm::IQormInstance* instance)
{
    return FindDatabase(instance);
}

} // namespace embeddedhost

namespace hostkit {

using namespace qorm;
using embeddedhost::CObjectDatabase;
using embeddedhost::FindDatabase;

bool HasObject(IQormInstance* instance, int cacheIndex, eObjectKind kind)
{
    CObjectDatabase const* const database = FindDatabase(instance);
    if (!database)
        return false;
    switch (kind) {
    case eObjectKind::kTypeAsset:
        return database->IsTypeAsset(cacheIndex);
    case eObjectKind::kValueAsset:
        return database->IsResource(cacheIndex);
    case eObjectKind::kAnyObject:
        break;
    }
    return database->Exists(cacheIndex);
}

IDbObject* GetDbObject(IQormInstance* instance, int cacheIndex)
{
    return FindDatabase(instance)->GetObject(cacheIndex);
}

ITypeAsset* GetTypeAsset(IQormInstance* instance, int cacheIndex)
{
    return FindDatabase(instance)->GetObject(cacheIndex);
}

IValueAsset* GetValueAsset(IQormInstance* instance, int cacheIndex)
{
    return FindDatabase(instance)->GetObject(cacheIndex);
}

QormPtr<IDataSource> FindDataSource(IQormInstance* instance, int cacheIndex)
{
    CObjectDatabase const* const database = FindDatabase(instance);
    return QormPtr<IDataSource>(database ? database->GetHome(cacheIndex) : nullptr);
}

DbObjectId FindObjectId(IQormInstance* instance, int cacheIndex)
{
    CObjectDatabase const* const database = FindDatabase(instance);
    return database ? database->GetId(cacheIndex) : DbObjectId("");
}

QormPtr<IDataModelMgr> FindManager(IQormInstance* instance, int cacheIndex)
{
    CObjectDatabase* const database = FindDatabase(instance);
    return QormPtr<IDataModelMgr>(database && database->Exists(cacheIndex) ? database : nullptr);
}

/// Items are read whole.
bool IsAssetLoaded(IQormInstance* instance, int cacheIndex)
{
    return HasObject(instance, cacheIndex, eObjectKind::kTypeAsset);
}

} // namespace hostkit

namespace qorm {

UID const& UID_Resource()
{
    static UID const resource("8F07CBAF-E884-4FC7-A749-46011EE6C329");
    return resource;
}

QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource)
{
    return resource.GetDataSource();
}

std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource)
{
    auto const* const database = embeddedhost::CObjectDatabase::From(resource.GetInstance());
    int const index = resource.GetCacheIndex();
    if (!database || !database->IsResource(index))
        return std::string();
    return embeddedhost::ToText8(database->GetHome(index)->GetDescription().folder);
}

} // namespace qorm
