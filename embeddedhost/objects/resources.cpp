#include "model/text8.h"
#include "objects/objectdatabase.h"

#include <qorm.h>

namespace qorm {

namespace {

embeddedhost::CDbObject const* FindObject(QormPtr<IQormInstance> const& instance, int cacheIndex)
{
    auto const* const database
        = dynamic_cast<embeddedhost::CObjectDatabase const*>(instance.Get());
    return database ? database->GetObject(cacheIndex) : nullptr;
}

} // namespace

QormPtr<IDataSource> GetDataSourceFromResource(QormHandle<IValueAsset> const& resource)
{
    return resource.GetDataSource();
}

std::string GetResourceExpandedURI(QormHandle<IDbObject> const& resource)
{
    auto const* const object = FindObject(resource.GetInstance(), resource.GetCacheIndex());
    if (!object || !object->IsResource())
        return std::string();
    return embeddedhost::ToLatin1(object->GetHome()->GetDescription().folder.toStdString());
}

bool IsSameUri(QormPtr<IDataSource> const& source, QormHandle<IValueAsset> const& resource)
{
    return !source.IsNull() && source == GetDataSourceFromResource(resource);
}

} // namespace qorm
