#include "base/text8.h"

#include <QString>

#include <simdjson.h>

#include <algorithm>

namespace embeddedhost {

namespace {

char ToAsciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

} // namespace

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string ToLatin1(std::string const& utf8)
{
    return IsAscii(utf8) ? utf8 : QString::fromStdString(utf8).toLatin1().toStdString();
}

std::string ToUtf8(std::string const& latin1)
{
    return QString::fromLatin1(latin1.data(), int(latin1.size())).toStdString();
}

bool IsTooLong(std::string const& utf8)
{
    // The bytes that continue a character do not count.
    return utf8.size() > kMaxTextLength && std::count_if(utf8.begin(), utf8.end(), [](char c) {
                                               return (c & 0xC0) != 0x80;
                                           }) > kMaxTextLength;
}

bool IsUtf8(std::string const& text)
{
    // Qt would take a byte order mark away.
    return simdjson::validate_utf8(text.data(), text.size());
}

bool EqualIgnoringAsciiCase(char const* a, char const* b)
{
    while (*a != '\0' && ToAsciiLower(*a) == ToAsciiLower(*b)) {
        ++a;
        ++b;
    }
    return *a == '\0' && *b == '\0';
}

} // namespace embeddedhost
