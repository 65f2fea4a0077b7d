#ifndef EMBEDDEDHOST_FILETEXT_H
#define EMBEDDEDHOST_FILETEXT_H

#include "model/objectsource.h"

#include <QByteArray>

#include <vector>

namespace embeddedhost {

/// The text of a file as it was read: JSON that has been found good.
class CFileText : public ObjectSource
{
public:
    explicit CFileText(QByteArray const& text);

    /// Of the entries of an array, or of the one object around everything.
    std::vector<ObjectPlace> FindPlaces(bool isArray) const;

    nlohmann::ordered_json Read(ObjectPlace const& place) const override;

private:
    QByteArray const m_Text;
};

} // namespace embeddedhost

#endif
