// Identifiers as values. The constructor of DbObjectId and IsUID are in dbobjectid.cpp, because a
// host with a database may replace them: its own texts need not be copied or parsed again.

#include <qorm.h>

#include <string_view>

namespace qorm {

namespace {

bool IsSameDigit(char a, char b)
{
    // Upper and lower case of a UID's letters differ in this bit only.
    return (a | 0x20) == (b | 0x20);
}

/// The same UID in either case, or else the same text. The texts are zero-terminated.
bool IsSame(std::string_view a, std::string_view b)
{
    if (a == b)
        return true;
    if (a.size() != b.size() || !DbObjectId::IsUID(a.data()) || !DbObjectId::IsUID(b.data()))
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!IsSameDigit(a[i], b[i]))
            return false;
    }
    return true;
}

} // namespace

UID::UID(char const* text)
    : m_Text(text ? text : "")
{}

char const* UID::GetStr() const
{
    return m_Text.c_str();
}

bool UID::operator==(UID const& other) const
{
    return IsSame(m_Text, other.m_Text);
}

UID const& UID_Null()
{
    static UID const null("00000000-0000-0000-0000-000000000000");
    return null;
}

char const* DbObjectId::GetStr() const
{
    return m_Kept ? m_Kept : m_Text.c_str();
}

bool DbObjectId::operator==(DbObjectId const& other) const
{
    return IsSame(GetStr(), other.GetStr());
}

CQueryResult::CQueryResult(DbObjectId const& objectId)
    : m_ObjectId(objectId)
{}

DbObjectId CQueryResult::GetObjectId() const
{
    return m_ObjectId;
}

} // namespace qorm
