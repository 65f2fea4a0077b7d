#ifndef EMBEDDEDHOST_OBJECTDATABASE_H
#define EMBEDDEDHOST_OBJECTDATABASE_H

#include "model/dbobject.h"
#include "model/itemidentity.h"
#include "model/libraryitem.h"
#include "objects/datasource.h"
#include "objects/refcounted.h"

#include <qorm.h>

#include <string>
#include <utility>
#include <vector>

namespace embeddedhost {

class CLibrary;

/// The database over a library: every item whose uid is a well-formed UID, a resource for each
/// data source, and the application components. It is the database instance and its manager in
/// one; handles and pointers keep it alive, but find nothing after the library is closed.
/// Components are the exception, since they belong to the application: their handles find them in
/// the library that is open now.
class CObjectDatabase final : public CRefCounted<qorm::IQormInstance, qorm::IDataModelMgr>
{
public:
    explicit CObjectDatabase(CLibrary& library);
    ~CObjectDatabase() override;

    /// The database behind an instance; null for an instance of another class.
    static CObjectDatabase* From(qorm::QormPtr<qorm::IQormInstance> const& instance);
    static CObjectDatabase* From(qorm::IQormInstance* instance);

    void AddResource(DataSourcePtr const& source);
    void AddComponent(DataSourcePtr const& home, std::string const& uid);
    /// The item's place in the cache; -1 when its uid is not a well-formed UID.
    int AddItem(tarno::datamodel::ItemIdentity const& identity);
    /// Whether an object other than an item has the uid.
    bool HasFixedObject(char const* uid) const;

    /// Null once the library is closed.
    CLibrary* GetLibrary() const;
    void Close();

    // Objects by their index in the cache. All return empty values for a removed object.
    bool Exists(int cacheIndex) const
    {
        return GetItem(cacheIndex) || GetFixed(cacheIndex);
    }
    bool IsTypeAsset(int cacheIndex) const;
    bool IsResource(int cacheIndex) const;
    /// Null for an object that is not an item.
    CLibraryItem* GetItem(int cacheIndex) const
    {
        // A negative index is larger than any as well.
        if (!m_Library || std::size_t(cacheIndex) >= m_Cache.size())
            return nullptr;
        tarno::datamodel::ItemIdentity const* const identity =
            m_Cache[std::size_t(cacheIndex)].identity;
        return identity ? identity->item : nullptr;
    }
    CLibraryItem* FindItem(qorm::DbObjectId const& objectId) const;
    /// The data source that holds the object, or that a resource represents. Null for a removed
    /// object.
    CDataSource* GetHome(int cacheIndex) const
    {
        if (CLibraryItem const* const item = GetItem(cacheIndex))
            return item->GetSource().get();
        FixedObject const* const fixed = GetFixed(cacheIndex);
        return fixed ? fixed->home.get() : nullptr;
    }
    qorm::DbObjectId GetId(int cacheIndex) const;
    /// 8-bit; valid as long as the object.
    char const* GetName(int cacheIndex) const;
    CDbObject* GetObject(int cacheIndex);

    bool RunQuery(char const* query, qorm::Vector<qorm::CQueryResult>& results) override;
    qorm::QormHandle<qorm::IDbObject> FindObject(qorm::DbObjectId const& objectId) override;
    qorm::QormPtr<qorm::IQormInstance> GetInstance() override;

private:
    typedef boost::intrusive_ptr<CDbObject> DbObjectPtr;

    struct CacheEntry
    {
        /// The item; null for a fixed object.
        tarno::datamodel::ItemIdentity const* identity;
        /// Created on first use.
        DbObjectPtr object;
    };

    /// The place of a closed library's component in the open library; null if that does not have
    /// it.
    struct Successor
    {
        CObjectDatabase* database = nullptr;
        int cacheIndex = -1;
    };

    /// An object that exists as long as the library is open; these come first in the cache.
    struct FixedObject
    {
        std::string uid;
        DataSourcePtr home;
        bool isResource;
        /// Cached; valid while the version is gOpenDatabasesVersion.
        mutable Successor successor = Successor();
        mutable unsigned successorVersion = 0;
    };

    void AddFixed(FixedObject const& object);
    /// -1 when there is none.
    int FindFixed(char const* uid) const;
    FixedObject const* GetFixed(int cacheIndex) const
    {
        if (std::size_t(cacheIndex) >= m_Fixed.size())
            return nullptr;
        FixedObject const& object = m_Fixed[std::size_t(cacheIndex)];
        if (m_Library)
            return &object;
        auto const [database, index] = GetSuccessor(object);
        return database ? &database->m_Fixed[std::size_t(index)] : nullptr;
    }
    static Successor const& GetSuccessor(FixedObject const& object);
    Successor FindComponent(char const* uid);

    CLibrary* m_Library;
    std::vector<FixedObject> m_Fixed;
    std::vector<CacheEntry> m_Cache;
};

typedef boost::intrusive_ptr<CObjectDatabase> ObjectDatabasePtr;

} // namespace embeddedhost

#endif
