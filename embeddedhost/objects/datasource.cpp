#include "objects/datasource.h"

namespace embeddedhost {

namespace {

constexpr int kReadWriteAccess = 0;

} // namespace

CDataSource::CDataSource(Description const& description)
    : m_Description(description)
{}

int CDataSource::GetAccessMode() const
{
    return m_Description.isReadOnly ? int(kReadOnlyAccess) : kReadWriteAccess;
}

CDataSource::Description const& CDataSource::GetDescription() const
{
    return m_Description;
}

} // namespace embeddedhost
