#include "model/text8.h"
#include "objects/objectdatabase.h"

#include <qorm.h>

namespace qorm {

QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource)
{
    return resource.GetDataSource();
}

std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource)
{
    auto const* const database = embeddedhost::CObjectDatabase::From(resource.GetInstance());
    int const index = resource.GetCacheIndex();
    if (!database || !database->IsResource(index))
        return std::string();
    return embeddedhost::ToLatin1(database->GetHome(index)->GetDescription().folder.toStdString());
}

bool IsSameUri(QormPtr<IDataSource> const& source, QormHandle<IValueAsset> const& resource)
{
    return !source.IsNull() && source == GetDataSourceFromResource(resource);
}

} // namespace qorm
