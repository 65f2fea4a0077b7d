#include "sourcecontrol/revisioncontrolhelper.h"

namespace embeddedhost {

using namespace qorm;

CRevisionControlHelper::CRevisionControlHelper(CMessageChannel& messages)
    : m_Messages(messages)
{
}

void CRevisionControlHelper::SetDatabase(ObjectDatabasePtr const& database)
{
    m_Database = database;
}

QormHandle<IDbObject> CRevisionControlHelper::FindObject(DbObjectId const& objectId)
{
    return m_Database ? m_Database->FindObject(objectId) : QormHandle<IDbObject>();
}

void CRevisionControlHelper::CheckOut(QormHandle<IDbObject> const&, bool& checkedOut, bool)
{
    checkedOut = false;
    Refuse();
}

void CRevisionControlHelper::MakeWritable(QormHandle<IDbObject> const&, bool)
{
    Refuse();
}

void CRevisionControlHelper::ShowFiles(QormHandle<IDbObject> const&, bool)
{
    Refuse();
}

void CRevisionControlHelper::Refuse()
{
    m_Messages.Post(eSeverity::kWarning,
                    QStringLiteral("The library is not under version control."));
}

} // namespace embeddedhost
