#include "model/text8.h"
#include "objects/uidmap.h"

#include <qorm.h>

namespace embeddedhost {

namespace {

/// -1 for what is no hexadecimal digit.
int DigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

} // namespace

bool ParseUid(char const* text, UidKey& key)
{
    if (!text)
        return false;
    std::uint64_t halves[2] = {0, 0};
    int digits = 0;
    for (int i = 0; i < 36; ++i) {
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            if (text[i] != '-')
                return false;
            continue;
        }
        int const value = DigitValue(text[i]);
        if (value < 0)
            return false;
        std::uint64_t& half = halves[digits++ / 16];
        half = half << 4 | std::uint64_t(value);
    }
    key = {halves[0], halves[1]};
    return text[36] == '\0';
}

} // namespace embeddedhost

namespace qorm {

namespace {

/// The text, empty for null.
std::string Text(char const* text)
{
    return text ? text : "";
}

/// The same UID in either case, or else the same text.
bool IsSame(std::string const& a, std::string const& b)
{
    return a == b || (DbObjectId::IsUID(a.c_str())
                      && embeddedhost::EqualIgnoringAsciiCase(a, b.c_str()));
}

} // namespace

UID::UID(char const* text)
    : m_Text(Text(text))
{
}

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

UID const& UID_Resource()
{
    static UID const resource("8F07CBAF-E884-4FC7-A749-46011EE6C329");
    return resource;
}

DbObjectId::DbObjectId(char const* text)
    : m_Text(Text(text))
{
}

char const* DbObjectId::GetStr() const
{
    return m_Text.c_str();
}

bool DbObjectId::operator==(DbObjectId const& other) const
{
    return IsSame(m_Text, other.m_Text);
}

bool DbObjectId::IsUID(char const* text)
{
    embeddedhost::UidKey key;
    return embeddedhost::ParseUid(text, key);
}

CQueryResult::CQueryResult(DbObjectId const& objectId)
    : m_ObjectId(objectId)
{
}

DbObjectId CQueryResult::GetObjectId() const
{
    return m_ObjectId;
}

} // namespace qorm
