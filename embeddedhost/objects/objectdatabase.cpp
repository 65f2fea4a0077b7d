#include "objects/objectdatabase.h"

#include "model/library.h"
#include "model/libraryitem.h"
#include "objects/query.h"

namespace embeddedhost {

using namespace qorm;

CObjectDatabase::CObjectDatabase(CLibrary& library)
    : m_Library(&library)
{
}

bool CObjectDatabase::HasFixedObject(char const* uid) const
{
    int const* const index = m_CacheIndexes.Find(uid);
    return index && !m_Cache[std::size_t(*index)]->GetItem();
}

void CObjectDatabase::AddResource(DataSourcePtr const& source)
{
    m_CacheIndexes.Insert(source->GetDescription().uid.c_str(), NextCacheIndex());
    m_Cache.push_back(new CDbObject(*this, NextCacheIndex(), source));
}

void CObjectDatabase::AddComponent(DataSourcePtr const& home, std::string const& uid)
{
    m_CacheIndexes.Insert(uid.c_str(), NextCacheIndex());
    m_Cache.push_back(new CDbObject(*this, NextCacheIndex(), home, uid));
}

CDbObject* CObjectDatabase::GetObject(int cacheIndex) const
{
    if (cacheIndex < 0 || cacheIndex >= NextCacheIndex())
        return nullptr;
    CDbObject* const object = m_Cache[std::size_t(cacheIndex)].get();
    return object->Exists() ? object : nullptr;
}

CLibrary* CObjectDatabase::GetLibrary() const
{
    return m_Library;
}

void CObjectDatabase::Close()
{
    m_Library = nullptr;
    for (DbObjectPtr const& object : m_Cache)
        object->Close();
}

bool CObjectDatabase::RunQuery(char const* query, Vector<CQueryResult>& results)
{
    if (!m_Library)
        return false;
    QueryError error;
    std::optional<TypeQuery> const parsed = ParseQuery(query, error);
    if (!parsed) {
        m_Library->GetMessages().Post(eSeverity::kWarning, DescribeQueryError(query, error));
        return false;
    }
    if (parsed->type == UID_Resource()) {
        for (DbObjectPtr const& object : m_Cache) {
            if (object->IsResource())
                results.emplace_back(object->GetDbObjectId());
        }
    }
    return true;
}

QormHandle<IDbObject> CObjectDatabase::FindObject(DbObjectId const& objectId)
{
    int const* const known = m_Library ? m_CacheIndexes.Find(objectId.GetStr()) : nullptr;
    int const index = known ? *known : CacheItem(objectId.GetStr());
    return GetObject(index) ? QormHandle<IDbObject>(GetInstance(), index)
                            : QormHandle<IDbObject>();
}

QormPtr<IQormInstance> CObjectDatabase::GetInstance()
{
    return QormPtr<IQormInstance>(this);
}

int CObjectDatabase::NextCacheIndex() const
{
    return int(m_Cache.size());
}

/// The place of an item that has not been asked for yet; -1 when there is none.
int CObjectDatabase::CacheItem(char const* uid)
{
    CLibraryItem const* const item
        = m_Library && DbObjectId::IsUID(uid) ? m_Library->FindItem(uid) : nullptr;
    if (!item)
        return -1;
    int const index = NextCacheIndex();
    m_CacheIndexes.Insert(uid, index);
    m_Cache.push_back(new CDbObject(*this, index, item->GetIdentity()));
    return index;
}

} // namespace embeddedhost
