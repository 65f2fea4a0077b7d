#ifndef EMBEDDEDHOST_OBJECTLISTER_H
#define EMBEDDEDHOST_OBJECTLISTER_H

#include "model/listedobject.h"

#include <QByteArray>

#include <memory>
#include <vector>

namespace embeddedhost {

/// Lists the objects of a file without building trees, which is many times faster. It accepts or
/// rejects a text as a whole: texts with faults, or in an unusual form, are left to ParseJson and
/// CheckObject, which report places and reasons.
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
