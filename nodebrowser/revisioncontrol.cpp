#include "revisioncontrol.h"

#include "hostservices.h"

namespace nodebrowser {

qorm::IRevisionControlUIHelper* FindRevisionControlHelper()
{
    return FindHostService<qorm::IRevisionControlUIHelper>("RevisionControlUIHelper");
}

qorm::QormHandle<qorm::IDbObject> FindDbObject(qorm::IRevisionControlUIHelper* helper,
                                               tarno::datamodel::ItemID const& id)
{
    char const* const uid = tarno::datamodel::ItemIDUnlock::GetItemIDUID(id);
    if (!helper || !qorm::DbObjectId::IsUID(uid))
        return qorm::QormHandle<qorm::IDbObject>();
    return helper->FindObject(qorm::DbObjectId(uid));
}

} // namespace nodebrowser
