// A host without an object database: no handle is ever valid. All in one file, so that a host which
// defines only some of these functions gets a link error instead of a mixture.

#include "objectaccess.h"

using namespace qorm;

namespace hostkit {

bool HasObject(IQormInstance* /*instance*/, int /*cacheIndex*/, eObjectKind /*kind*/)
{
    return false;
}

IDbObject* GetDbObject(IQormInstance* /*instance*/, int /*cacheIndex*/)
{
    return nullptr;
}

ITypeAsset* GetTypeAsset(IQormInstance* /*instance*/, int /*cacheIndex*/)
{
    return nullptr;
}

IValueAsset* GetValueAsset(IQormInstance* /*instance*/, int /*cacheIndex*/)
{
    return nullptr;
}

QormPtr<IDataSource> FindDataSource(IQormInstance* /*instance*/, int /*cacheIndex*/)
{
    return QormPtr<IDataSource>();
}

DbObjectId FindObjectId(IQormInstance* /*instance*/, int /*cacheIndex*/)
{
    return DbObjectId("");
}

QormPtr<IDataModelMgr> FindManager(IQormInstance* /*instance*/, int /*cacheIndex*/)
{
    return QormPtr<IDataModelMgr>();
}

bool IsAssetLoaded(IQormInstance* /*instance*/, int /*cacheIndex*/)
{
    return false;
}

} // namespace hostkit

namespace qorm {

UID const& UID_Resource()
{
    return UID_Null();
}

QormPtr<IHelper> IHelper::GetHelper(QormPtr<IQormInstance> const& /*instance*/)
{
    return QormPtr<IHelper>();
}

QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& /*resource*/)
{
    return QormPtr<IDataSource>();
}

std::string GetResourceExpandedURI(QormHandle<IDbObject> const& /*resource*/)
{
    return std::string();
}

} // namespace qorm
