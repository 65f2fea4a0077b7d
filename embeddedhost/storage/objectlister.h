#ifndef EMBEDDEDHOST_OBJECTLISTER_H
#define EMBEDDEDHOST_OBJECTLISTER_H

#include "model/listedobject.h"

#include <QByteArray>

#include <memory>
#include <vector>

namespace embeddedhost {

/// Lists the objects of a file without making trees of them, which is many times faster. It takes
/// a text as a whole or not at all: what has a fault to report, or is written in a rare way, is
/// left to ParseJson and CheckObject, which know places and reasons.
class CObjectLister
{
public:
    CObjectLister();
    ~CObjectLister();

    /// False unless the text is an object, or an array of objects, that all make items unless their
    /// uids are taken, and of which CheckObject has nothing to report.
    bool Read(QByteArray const& text);

    bool IsArray() const;
    /// Valid until the next call of Read.
    std::vector<ListedObject> const& GetObjects() const;

private:
    class Private;
    std::unique_ptr<Private> const m_Private;
};

} // namespace embeddedhost

#endif
