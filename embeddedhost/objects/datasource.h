#ifndef EMBEDDEDHOST_DATASOURCE_H
#define EMBEDDEDHOST_DATASOURCE_H

#include "objects/refcounted.h"

#include <qorm.h>

#include <QString>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <string>

namespace embeddedhost {

/// A folder that objects are read from and, unless it is read-only, written to.
class CDataSource final : public CRefCounted<qorm::IDataSource>
{
public:
    /// A data source as the library's manifest describes it.
    struct Description
    {
        std::string uid;
        /// 8-bit.
        std::string name;
        /// Absolute and canonical.
        QString folder;
        bool isReadOnly;
        /// The application component that lives in the data source; empty for none.
        std::string component;
        /// How the names of new files end.
        QString fileSuffix;
    };

    explicit CDataSource(Description const& description);

    int GetAccessMode() const override;
    Description const& GetDescription() const;

private:
    Description const m_Description;
};

typedef boost::intrusive_ptr<CDataSource> DataSourcePtr;

} // namespace embeddedhost

#endif
