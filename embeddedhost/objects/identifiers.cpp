#include "model/text8.h"
#include "objects/uidmap.h"

#include <qorm.h>

#include <QByteArray>

#include <array>
#include <random>

namespace embeddedhost {

namespace {

constexpr std::size_t kUidLength = 36;

/// The values of hexadecimal digits by character, -1 for all other characters.
std::array<signed char, 256> MakeDigitValues()
{
    std::array<signed char, 256> values;
    values.fill(-1);
    for (int i = 0; i < 10; ++i)
        values[std::size_t('0' + i)] = static_cast<signed char>(i);
    for (int i = 0; i < 6; ++i) {
        values[std::size_t('A' + i)] = static_cast<signed char>(10 + i);
        values[std::size_t('a' + i)] = static_cast<signed char>(10 + i);
    }
    return values;
}

bool HasUidForm(char const* text)
{
    return text && qstrnlen(text, kUidLength + 1) == kUidLength && text[8] == '-' && text[13] == '-'
           && text[18] == '-' && text[23] == '-';
}

/// Each bit of the number decides on all bits of the result (the finalizer of splitmix64).
std::uint64_t Mix(std::uint64_t number)
{
    number = (number ^ number >> 30) * 0xBF58476D1CE4E5B9u;
    number = (number ^ number >> 27) * 0x94D049BB133111EBu;
    return number ^ number >> 31;
}

} // namespace

bool ParseUid(char const* text, UidKey& key)
{
    static auto const digitValues = MakeDigitValues();
    if (!HasUidForm(text))
        return false;
    // Digits are looked up and summed up without a branch for each: this is asked for every
    // item of a library at each rebuild of a list.
    int all = 0;
    auto const read = [&](int begin, int end, std::uint64_t value) {
        for (int i = begin; i < end; ++i) {
            int const digit = digitValues[static_cast<unsigned char>(text[i])];
            all |= digit;
            value = value << 4 | std::uint64_t(digit & 0xF);
        }
        return value;
    };
    key.high = read(14, 18, read(9, 13, read(0, 8, 0)));
    key.low = read(24, 36, read(19, 23, 0));
    return all >= 0;
}

std::uint64_t GetUidSeed()
{
    static std::uint64_t const seed = [] {
        std::random_device random;
        return std::uint64_t(random()) << 32 | random();
    }();
    return seed;
}

std::uint64_t HashUid(UidKey const& key, std::uint64_t seed)
{
    // One half after the other: halves that are equal, or change places, do not cancel out.
    return Mix(Mix(key.high ^ seed) + key.low);
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
    return a == b
           || (DbObjectId::IsUID(a.c_str())
               && embeddedhost::EqualIgnoringAsciiCase(a.c_str(), b.c_str()));
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

UID const& UID_Resource()
{
    static UID const resource("8F07CBAF-E884-4FC7-A749-46011EE6C329");
    return resource;
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

bool DbObjectId::IsUID(char const* text)
{
    embeddedhost::UidKey key;
    return embeddedhost::ParseUid(text, key);
}

CQueryResult::CQueryResult(DbObjectId const& objectId)
    : m_ObjectId(objectId)
{}

DbObjectId CQueryResult::GetObjectId() const
{
    return m_ObjectId;
}

} // namespace qorm
