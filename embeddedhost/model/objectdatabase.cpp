#include "model/objectdatabase.h"

#include "base/text8.h"
#include "model/itemkinds.h"
#include "model/library.h"
#include "objects/query.h"

#include <algorithm>

namespace embeddedhost {

using namespace qorm;
using tarno::datamodel::ItemIdentity;

namespace {

/// The databases of all open libraries, newest last.
std::vector<CObjectDatabase*> gOpenDatabases;
/// Incremented when these or their components change, to invalidate cached successors.
unsigned gOpenDatabasesVersion = 0;

} // namespace

CObjectDatabase::CObjectDatabase(CLibrary& library)
    : m_Library(&library)
{
    gOpenDatabases.push_back(this);
    ++gOpenDatabasesVersion;
}

CObjectDatabase::~CObjectDatabase()
{
    Close();
}

CObjectDatabase* CObjectDatabase::From(QormPtr<IQormInstance> const& instance)
{
    return From(instance.Get());
}

void CObjectDatabase::AddResource(DataSourcePtr const& source)
{
    AddFixed({source->GetDescription().uid, source, true});
}

void CObjectDatabase::AddComponent(DataSourcePtr const& home, std::string const& uid)
{
    AddFixed({uid, home, false});
}

void CObjectDatabase::AddFixed(FixedObject const& object)
{
    Q_ASSERT(m_Fixed.size() == m_Cache.size());
    m_Fixed.push_back(object);
    m_Cache.push_back({nullptr, nullptr});
    ++gOpenDatabasesVersion;
}

int CObjectDatabase::AddItem(ItemIdentity const& identity)
{
    if (!identity.hasUid)
        return -1;
    m_Cache.push_back({&identity, nullptr});
    return int(m_Cache.size()) - 1;
}

bool CObjectDatabase::HasFixedObject(char const* uid) const
{
    return FindFixed(uid) >= 0;
}

int CObjectDatabase::FindFixed(char const* uid) const
{
    for (std::size_t i = 0; i < m_Fixed.size(); ++i) {
        // The cheap comparison first; DbObjectId decides.
        char const* const fixed = m_Fixed[i].uid.c_str();
        if (EqualIgnoringAsciiCase(fixed, uid) && DbObjectId(fixed) == DbObjectId(uid))
            return int(i);
    }
    return -1;
}

CObjectDatabase::Successor const& CObjectDatabase::GetSuccessor(FixedObject const& object)
{
    // Panels keep the handles of components of the first library, and compare each item's with
    // them.
    if (object.successorVersion != gOpenDatabasesVersion) {
        object.successorVersion = gOpenDatabasesVersion;
        bool const isMoved = !object.isResource && !gOpenDatabases.empty();
        object.successor =
            isMoved ? gOpenDatabases.back()->FindComponent(object.uid.c_str()) : Successor();
    }
    return object.successor;
}

CObjectDatabase::Successor CObjectDatabase::FindComponent(char const* uid)
{
    int const position = FindFixed(uid);
    bool const isComponent = position >= 0 && !m_Fixed[std::size_t(position)].isResource;
    return isComponent ? Successor{this, position} : Successor();
}

CLibrary* CObjectDatabase::GetLibrary() const
{
    return m_Library;
}

void CObjectDatabase::Close()
{
    m_Library = nullptr;
    gOpenDatabases.erase(std::remove(gOpenDatabases.begin(), gOpenDatabases.end(), this),
                         gOpenDatabases.end());
    ++gOpenDatabasesVersion;
    for (CacheEntry const& entry : m_Cache) {
        if (entry.object)
            entry.object->Close();
    }
}

bool CObjectDatabase::IsTypeAsset(int cacheIndex) const
{
    CLibraryItem const* const item = GetItem(cacheIndex);
    return item && hostkit::FindKind(item->GetIdentity().kind)->isType;
}

bool CObjectDatabase::IsResource(int cacheIndex) const
{
    FixedObject const* const fixed = GetFixed(cacheIndex);
    return fixed && fixed->isResource;
}

DbObjectId CObjectDatabase::GetId(int cacheIndex) const
{
    if (FixedObject const* const fixed = GetFixed(cacheIndex))
        return DbObjectId(fixed->uid.c_str());
    CLibraryItem const* const item = GetItem(cacheIndex);
    return DbObjectId(item ? item->GetIdentity().uid : "");
}

char const* CObjectDatabase::GetName(int cacheIndex) const
{
    if (FixedObject const* const fixed = GetFixed(cacheIndex))
        return fixed->home->GetDescription().name.c_str();
    CLibraryItem const* const item = GetItem(cacheIndex);
    return item ? item->GetName() : "";
}

CDbObject* CObjectDatabase::GetObject(int cacheIndex)
{
    if (!Exists(cacheIndex))
        return nullptr;
    if (!m_Library) {
        auto const [successor, position] = GetSuccessor(m_Fixed[std::size_t(cacheIndex)]);
        return successor->GetObject(position);
    }
    DbObjectPtr& object = m_Cache[std::size_t(cacheIndex)].object;
    if (!object)
        object = new CDbObject(*this, cacheIndex);
    return object.get();
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
    if (!(parsed->type == UID_Resource()))
        return true;
    for (FixedObject const& object : m_Fixed) {
        if (object.isResource)
            results.emplace_back(DbObjectId(object.uid.c_str()));
    }
    return true;
}

CLibraryItem* CObjectDatabase::FindItem(DbObjectId const& objectId) const
{
    return m_Library ? FindItemByUid(objectId.GetStr()) : nullptr;
}

QormHandle<IDbObject> CObjectDatabase::FindObject(DbObjectId const& objectId)
{
    if (!m_Library)
        return QormHandle<IDbObject>();
    CLibraryItem const* const item = FindItem(objectId);
    int const index = item ? item->GetCacheIndex() : FindFixed(objectId.GetStr());
    return index < 0 ? QormHandle<IDbObject>() : QormHandle<IDbObject>(GetInstance(), index);
}

QormPtr<IQormInstance> CObjectDatabase::GetInstance()
{
    return QormPtr<IQormInstance>(this);
}

} // namespace embeddedhost
