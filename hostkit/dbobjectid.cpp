#include "uidtext.h"

#include <qorm.h>

namespace qorm {

DbObjectId::DbObjectId(char const* text)
    : m_Text(text ? text : "")
{}

bool DbObjectId::IsUID(char const* text)
{
    hostkit::UidKey key;
    return text && hostkit::ParseUid(text, key);
}

} // namespace qorm
