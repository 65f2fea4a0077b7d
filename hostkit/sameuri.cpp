#include <qorm.h>

namespace qorm {

bool IsSameUri(QormPtr<IDataSource> const& source, QormHandle<IValueAsset> const& resource)
{
    return !source.IsNull() && source == GetDataSourceFromResource(resource);
}

} // namespace qorm
