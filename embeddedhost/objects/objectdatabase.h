#ifndef EMBEDDEDHOST_OBJECTDATABASE_H
#define EMBEDDEDHOST_OBJECTDATABASE_H

#include "objects/dbobject.h"
#include "objects/refcounted.h"
#include "objects/uidmap.h"

#include <qorm.h>

#include <vector>

namespace embeddedhost {

class CLibrary;

/// The database over a library: every item whose uid is a well-formed UID, a resource for each
/// data source, and the application components. It is the database instance and its manager in
/// one; handles and pointers keep it, and find nothing any more, after the library is closed.
class CObjectDatabase final : public CRefCounted<qorm::IQormInstance, qorm::IDataModelMgr>
{
public:
    explicit CObjectDatabase(CLibrary& library);

    /// Whether an object other than an item has the uid.
    bool HasFixedObject(char const* uid) const;
    void AddResource(DataSourcePtr const& source);
    void AddComponent(DataSourcePtr const& home, std::string const& uid);

    /// The object at the place in the cache; null when it is gone.
    CDbObject* GetObject(int cacheIndex) const;
    /// Null once the library is closed.
    CLibrary* GetLibrary() const;
    void Close();

    bool RunQuery(char const* query, qorm::Vector<qorm::CQueryResult>& results) override;
    qorm::QormHandle<qorm::IDbObject> FindObject(qorm::DbObjectId const& objectId) override;
    qorm::QormPtr<qorm::IQormInstance> GetInstance() override;

private:
    typedef boost::intrusive_ptr<CDbObject> DbObjectPtr;

    int NextCacheIndex() const;
    int CacheItem(char const* uid);

    CLibrary* m_Library;
    /// Items come in when they are asked for first; nothing leaves before the end.
    std::vector<DbObjectPtr> m_Cache;
    UidMap<int> m_CacheIndexes;
};

typedef boost::intrusive_ptr<CObjectDatabase> ObjectDatabasePtr;

} // namespace embeddedhost

#endif
