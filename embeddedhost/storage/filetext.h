#ifndef EMBEDDEDHOST_FILETEXT_H
#define EMBEDDEDHOST_FILETEXT_H

#include "model/objectsource.h"

#include <QByteArray>

#include <vector>

namespace embeddedhost {

/// The text of a file as it was read: valid JSON.
class CFileText : public ObjectSource
{
public:
    explicit CFileText(QByteArray const& text);

    /// The places of an array's entries, or of the single object.
    std::vector<ObjectPlace> FindPlaces(bool isArray) const;

    nlohmann::ordered_json Read(ObjectPlace const& place) const override;

private:
    QByteArray const m_Text;
};

} // namespace embeddedhost

#endif
