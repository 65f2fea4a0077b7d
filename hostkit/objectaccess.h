#ifndef HOSTKIT_OBJECTACCESS_H
#define HOSTKIT_OBJECTACCESS_H

#include <qorm.h>

namespace hostkit {

// What the handles of the kit ask of the host's database. The host defines these functions. One
// without a database leaves them out, and with them IHelper::GetHelper, GetDataSourceFromResource,
// GetResourceExpandedURI and UID_Resource: the kit's without_database.cpp has them all.
//
// Each answers with nothing when the instance is null, closed or not the host's, and when it has no
// object at the place (any more). They are called for each item of a rebuild.

/// What a handle sees an object as: IDbObject, ITypeAsset or IValueAsset.
enum class eObjectKind
{
    kAnyObject,
    kTypeAsset,
    kValueAsset
};

bool HasObject(qorm::IQormInstance* instance, int cacheIndex, eObjectKind kind);

// Called for objects that HasObject has confirmed as that kind, and valid as long as these exist.
qorm::IDbObject* GetDbObject(qorm::IQormInstance* instance, int cacheIndex);
qorm::ITypeAsset* GetTypeAsset(qorm::IQormInstance* instance, int cacheIndex);
qorm::IValueAsset* GetValueAsset(qorm::IQormInstance* instance, int cacheIndex);

/// Where the object lives; null for none.
qorm::QormPtr<qorm::IDataSource> FindDataSource(qorm::IQormInstance* instance, int cacheIndex);
/// With the empty text for none.
qorm::DbObjectId FindObjectId(qorm::IQormInstance* instance, int cacheIndex);
/// Null for none.
qorm::QormPtr<qorm::IDataModelMgr> FindManager(qorm::IQormInstance* instance, int cacheIndex);
/// The object is a type asset and in memory.
bool IsAssetLoaded(qorm::IQormInstance* instance, int cacheIndex);

} // namespace hostkit

#endif
