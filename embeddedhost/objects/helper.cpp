#include "model/library.h"
#include "objects/objectdatabase.h"

#include <qorm.h>

namespace embeddedhost {

namespace {

class CHelper final : public CRefCounted<qorm::IHelper>
{
public:
    explicit CHelper(CObjectDatabase* database)
        : m_Database(database)
    {
    }

    void MoveToDataSource(qorm::QormHandle<qorm::IDbObject> const&,
                          qorm::QormPtr<qorm::IDataSource> const&, bool) override
    {
        if (m_Database && m_Database->GetLibrary()) {
            m_Database->GetLibrary()->GetMessages().Post(
                eSeverity::kWarning, QStringLiteral("The library is opened for reading only."));
        }
    }

private:
    ObjectDatabasePtr const m_Database;
};

} // namespace

} // namespace embeddedhost

namespace qorm {

QormPtr<IHelper> IHelper::GetHelper(QormPtr<IQormInstance> const& instance)
{
    if (instance.IsNull())
        return QormPtr<IHelper>();
    return QormPtr<IHelper>(
        new embeddedhost::CHelper(embeddedhost::CObjectDatabase::From(instance)));
}

} // namespace qorm
