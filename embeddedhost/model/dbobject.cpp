#include "model/dbobject.h"

#include "model/libraryitem.h"
#include "model/objectdatabase.h"

namespace embeddedhost {

using namespace qorm;

CDbObject::CDbObject(CObjectDatabase& database, int cacheIndex)
    : m_Database(&database)
    , m_CacheIndex(cacheIndex)
{}

void CDbObject::Close()
{
    m_Database = nullptr;
}

QormPtr<IDataModelMgr> CDbObject::GetDataModelMgr() const
{
    return QormPtr<IDataModelMgr>(m_Database);
}

bool CDbObject::IsReadOnly() const
{
    CLibraryItem const* const item = m_Database ? m_Database->GetItem(m_CacheIndex) : nullptr;
    return item && item->IsLocked();
}

char const* CDbObject::GetName() const
{
    return m_Database ? m_Database->GetName(m_CacheIndex) : "";
}

QormHandle<IValueAsset> CDbObject::GetAssetHandle() const
{
    if (!m_Database)
        return QormHandle<IValueAsset>();
    return QormHandle<IValueAsset>(m_Database->GetInstance(), m_CacheIndex);
}

DbObjectId CDbObject::GetDbObjectId() const
{
    return m_Database ? m_Database->GetId(m_CacheIndex) : DbObjectId("");
}

} // namespace embeddedhost
