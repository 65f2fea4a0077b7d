#include "objects/dbobject.h"

#include "model/libraryitem.h"
#include "objects/objectdatabase.h"

namespace embeddedhost {

using namespace qorm;
using tarno::datamodel::ItemIdentity;

CDbObject::CDbObject(CObjectDatabase& database, int cacheIndex, ItemIdentity const& identity)
    : m_Database(&database)
    , m_CacheIndex(cacheIndex)
    , m_Id(identity.uid)
    , m_Identity(&identity)
    , m_IsResource(false)
{
}

CDbObject::CDbObject(CObjectDatabase& database, int cacheIndex, DataSourcePtr const& source)
    : m_Database(&database)
    , m_CacheIndex(cacheIndex)
    , m_Id(source->GetDescription().uid.c_str())
    , m_Identity(nullptr)
    , m_Source(source)
    , m_IsResource(true)
{
}

CDbObject::CDbObject(CObjectDatabase& database, int cacheIndex, DataSourcePtr const& home,
                     std::string const& uid)
    : m_Database(&database)
    , m_CacheIndex(cacheIndex)
    , m_Id(uid.c_str())
    , m_Identity(nullptr)
    , m_Source(home)
    , m_IsResource(false)
{
}

bool CDbObject::Exists() const
{
    return m_Database && (!m_Identity || m_Identity->item);
}

bool CDbObject::IsTypeAsset() const
{
    return m_Identity && m_Identity->kind == tarno::datamodel::LibType::gType;
}

bool CDbObject::IsResource() const
{
    return m_IsResource;
}

DataSourcePtr CDbObject::GetHome() const
{
    if (!Exists())
        return nullptr;
    return m_Identity ? m_Identity->item->GetSource() : m_Source;
}

CLibraryItem* CDbObject::GetItem() const
{
    return Exists() && m_Identity ? m_Identity->item : nullptr;
}

void CDbObject::Close()
{
    m_Database = nullptr;
}

QormPtr<IDataModelMgr> CDbObject::GetDataModelMgr() const
{
    return QormPtr<IDataModelMgr>(m_Database);
}

bool CDbObject::IsLoaded() const
{
    return Exists();
}

bool CDbObject::IsReadOnly() const
{
    CLibraryItem const* const item = GetItem();
    return item && item->IsLocked();
}

char const* CDbObject::GetName() const
{
    if (m_Source)
        return m_Source->GetDescription().name.c_str();
    CLibraryItem const* const item = GetItem();
    return item ? item->GetName().c_str() : "";
}

QormHandle<IValueAsset> CDbObject::GetAssetHandle() const
{
    if (!m_Database)
        return QormHandle<IValueAsset>();
    return QormHandle<IValueAsset>(m_Database->GetInstance(), m_CacheIndex);
}

DbObjectId CDbObject::GetDbObjectId() const
{
    return m_Id;
}

} // namespace embeddedhost
