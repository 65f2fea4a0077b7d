#include "model/library.h"
#include "model/objectdatabase.h"
#include "storage/filemove.h"

#include <datamodel.h>
#include <qorm.h>

namespace embeddedhost {

namespace {

class CHelper final : public CRefCounted<qorm::IHelper>
{
public:
    explicit CHelper(CObjectDatabase* database)
        : m_Database(database)
    {}

    void MoveToDataSource(qorm::QormHandle<qorm::IDbObject> const& object,
                          qorm::QormPtr<qorm::IDataSource> const& target,
                          bool /*withFiles*/) override
    {
        CLibrary* const library = m_Database ? m_Database->GetLibrary() : nullptr;
        CLibraryItem* const item = library ? m_Database->GetItem(object.GetCacheIndex()) : nullptr;
        if (item)
            MoveItem(*library, *item, FindSource(*library, target),
                     tarno::datamodel::GetApplicationCommandManager());
    }

private:
    /// Null for a data source of another library.
    static DataSourcePtr FindSource(CLibrary const& library,
                                    qorm::QormPtr<qorm::IDataSource> const& target)
    {
        for (DataSourcePtr const& source : library.GetSources()) {
            if (source.get() == target.Get())
                return source;
        }
        return nullptr;
    }

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
