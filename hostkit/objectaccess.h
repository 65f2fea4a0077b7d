#ifndef HOSTKIT_OBJECTACCESS_H
#define HOSTKIT_OBJECTACCESS_H

/// @file
/// The queries of the kit's handles to the host's database.
///
/// The host defines these functions. A host without a database omits them, together with
/// qorm::IHelper::GetHelper, qorm::GetDataSourceFromResource, qorm::GetResourceExpandedURI and
/// qorm::UID_Resource: the kit's `without_database.cpp` has them all.
///
/// Each returns an empty value when the instance is null, closed or not the host's, and when it has
/// no object at the index (any more). They are called for each item of a rebuild.

#include <nodebrowser/hostapi/qorm.h>

namespace hostkit {

/// The interface of a handle: IDbObject, ITypeAsset or IValueAsset.
enum class eObjectKind
{
    kAnyObject, ///< IDbObject, which every object has
    kTypeAsset, ///< ITypeAsset
    kValueAsset ///< IValueAsset
};

/// There is an object at the index of the instance's cache, and it has the interface.
bool HasObject(qorm::IQormInstance* instance, int cacheIndex, eObjectKind kind);

/// @{

/// The object's interface. Called for objects that HasObject has confirmed as that kind; not owned
/// by the caller, and valid as long as the object exists.
qorm::IDbObject* GetDbObject(qorm::IQormInstance* instance, int cacheIndex);
qorm::ITypeAsset* GetTypeAsset(qorm::IQormInstance* instance, int cacheIndex);
qorm::IValueAsset* GetValueAsset(qorm::IQormInstance* instance, int cacheIndex);
/// @}

/// The data source that holds the object; null for none.
qorm::QormPtr<qorm::IDataSource> FindDataSource(qorm::IQormInstance* instance, int cacheIndex);
/// With the empty text for none.
qorm::DbObjectId FindObjectId(qorm::IQormInstance* instance, int cacheIndex);
/// Null for none.
qorm::QormPtr<qorm::IDataModelMgr> FindManager(qorm::IQormInstance* instance, int cacheIndex);
/// The object is a type asset and in memory.
bool IsAssetLoaded(qorm::IQormInstance* instance, int cacheIndex);

} // namespace hostkit

#endif
