// A host may define these two itself. The linker leaves this file out then, so it must hold nothing
// else.

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
