#ifndef NODEBROWSER_HOSTSERVICES_H
#define NODEBROWSER_HOSTSERVICES_H

#include "hostapi/datamodel.h"
#include "hostapi/framework.h"
#include "hostapi/qorm.h"

namespace nodebrowser {

/// The host's service of that name and type, null when it is missing or of another type. Looked
/// up at each use: services come and go.
template <class Service>
Service* FindHostService(char const* name)
{
    return dynamic_cast<Service*>(wekGetSystem()->GetService(name));
}

/// The host's source-control service, or null.
inline qorm::IRevisionControlUIHelper* FindRevisionControlHelper()
{
    return FindHostService<qorm::IRevisionControlUIHelper>("RevisionControlUIHelper");
}

/// The database object behind the item; an invalid handle without the service, for an item
/// without a database UID, and when there is no such object.
inline qorm::QormHandle<qorm::IDbObject> FindDbObject(qorm::IRevisionControlUIHelper* helper,
                                                      tarno::datamodel::ItemID const& id)
{
    char const* const uid = tarno::datamodel::ItemIDUnlock::GetItemIDUID(id);
    if (!helper || !qorm::DbObjectId::IsUID(uid))
        return qorm::QormHandle<qorm::IDbObject>();
    return helper->FindObject(qorm::DbObjectId(uid));
}

} // namespace nodebrowser

#endif
