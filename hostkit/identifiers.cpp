#include <qorm.h>

namespace qorm {

namespace {

/// The text, empty for null.
std::string Text(char const* text)
{
    return text ? text : "";
}

bool IsSameDigit(char a, char b)
{
    // Upper and lower case of a UID's letters differ in this bit only.
    return (a | 0x20) == (b | 0x20);
}

/// The same UID in either case, or else the same text.
bool IsSame(std::string const& a, std::string const& b)
{
    if (a == b)
        return true;
    if (a.size() != b.size() || !DbObjectId::IsUID(a.c_str()) || !DbObjectId::IsUID(b.c_str()))
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!IsSameDigit(a[i], b[i]))
            return false;
    }
    return true;
}

} // namespace

UID::UID(char const* text)
    : m_Text(Text(text))
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

DbObjectId::DbObjectId(char const* text)
    : m_Text(Text(text))
{}

char const* DbObjectId::GetStr() const
{
    return m_Text.c_str();
}

bool DbObjectId::operator==(DbObjectId const& other) const
{
    return IsSame(m_Text, other.m_Text);
}

CQueryResult::CQueryResult(DbObjectId const& objectId)
    : m_ObjectId(objectId)
{}

DbObjectId CQueryResult::GetObjectId() const
{
    return m_ObjectId;
}

} // namespace qorm
