#ifndef EMBEDDEDHOST_DBOBJECT_H
#define EMBEDDEDHOST_DBOBJECT_H

#include "objects/refcounted.h"

#include <qorm.h>

namespace embeddedhost {

class CObjectDatabase;

/// One object of the database, with all interfaces that a handle may request. Its kind, and whether
/// it still exists, the database knows.
class CDbObject final : public CRefCounted<qorm::IDbObject, qorm::ITypeAsset, qorm::IValueAsset>
{
public:
    CDbObject(CObjectDatabase& database, int cacheIndex);

    /// Called when the database is closed.
    void Close();

    qorm::QormPtr<qorm::IDataModelMgr> GetDataModelMgr() const override;

    bool IsReadOnly() const override;

    char const* GetName() const override;
    qorm::QormHandle<qorm::IValueAsset> GetAssetHandle() const override;
    qorm::DbObjectId GetDbObjectId() const override;

private:
    /// Null once the database is closed.
    CObjectDatabase* m_Database;
    int const m_CacheIndex;
};

} // namespace embeddedhost

#endif
