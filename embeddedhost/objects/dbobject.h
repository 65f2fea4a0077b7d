#ifndef EMBEDDEDHOST_DBOBJECT_H
#define EMBEDDEDHOST_DBOBJECT_H

#include "model/itemidentity.h"
#include "objects/datasource.h"
#include "objects/refcounted.h"

#include <qorm.h>

namespace embeddedhost {

class CObjectDatabase;

/// One object of the database and all it can be seen as. It stands for an item of the library,
/// for a data source, or for an application component that lives in a data source.
class CDbObject final
    : public CRefCounted<qorm::IDbObject, qorm::ITypeAsset, qorm::IValueAsset>
{
public:
    /// An item; it is there as long as the identity has an item.
    CDbObject(CObjectDatabase& database, int cacheIndex,
              tarno::datamodel::ItemIdentity const& identity);
    /// The resource that stands for the data source.
    CDbObject(CObjectDatabase& database, int cacheIndex, DataSourcePtr const& source);
    /// A component.
    CDbObject(CObjectDatabase& database, int cacheIndex, DataSourcePtr const& home,
              std::string const& uid);

    bool Exists() const;
    bool IsTypeAsset() const;
    bool IsResource() const;
    /// Where the object lives; for a resource this is the data source that it stands for. Null
    /// when the object does not exist.
    DataSourcePtr GetHome() const;
    /// The item; null for other objects.
    CLibraryItem* GetItem() const;

    /// The database goes away.
    void Close();

    qorm::QormPtr<qorm::IDataModelMgr> GetDataModelMgr() const override;

    bool IsLoaded() const override;
    bool IsReadOnly() const override;

    char const* GetName() const override;
    qorm::QormHandle<qorm::IValueAsset> GetAssetHandle() const override;
    qorm::DbObjectId GetDbObjectId() const override;

private:
    /// Null once the database is closed.
    CObjectDatabase* m_Database;
    int const m_CacheIndex;
    qorm::DbObjectId const m_Id;
    tarno::datamodel::ItemIdentity const* const m_Identity;
    DataSourcePtr const m_Source;
    bool const m_IsResource;
};

} // namespace embeddedhost

#endif
