#ifndef EMBEDDEDHOST_REVISIONCONTROLHELPER_H
#define EMBEDDEDHOST_REVISIONCONTROLHELPER_H

#include "framework/messagechannel.h"
#include "objects/objectdatabase.h"

#include <qorm.h>

namespace embeddedhost {

/// The service "RevisionControlUIHelper" over the library that is open.
class CRevisionControlHelper : public qorm::IRevisionControlUIHelper
{
public:
    explicit CRevisionControlHelper(CMessageChannel& messages);

    /// Null when no library is open.
    void SetDatabase(ObjectDatabasePtr const& database);

    qorm::QormHandle<qorm::IDbObject> FindObject(qorm::DbObjectId const& objectId) override;
    void CheckOut(qorm::QormHandle<qorm::IDbObject> const& object, bool& checkedOut,
                  bool askUser) override;
    void MakeWritable(qorm::QormHandle<qorm::IDbObject> const& object, bool askUser) override;
    void ShowFiles(qorm::QormHandle<qorm::IDbObject> const& object,
                   bool withDependencies) override;

private:
    void Refuse();

    CMessageChannel& m_Messages;
    ObjectDatabasePtr m_Database;
};

} // namespace embeddedhost

#endif
