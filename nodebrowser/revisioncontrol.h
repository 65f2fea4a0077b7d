#ifndef NODEBROWSER_REVISIONCONTROL_H
#define NODEBROWSER_REVISIONCONTROL_H

#include "hostapi/datamodel.h"
#include "hostapi/qorm.h"

namespace nodebrowser {

/// The host's source-control service, or null.
qorm::IRevisionControlUIHelper* FindRevisionControlHelper();

/// The database object behind the item; an invalid handle without the service, for an item
/// without a database UID, and when there is no such object.
qorm::QormHandle<qorm::IDbObject> FindDbObject(qorm::IRevisionControlUIHelper* helper,
                                               tarno::datamodel::ItemID const& id);

} // namespace nodebrowser

#endif
