#include "base/text8.h"

#include <QString>

#include <simdjson.h>

#include <algorithm>

namespace embeddedhost {

namespace {

bool gAreTexts8Utf8 = false;

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

void SetTexts8Utf8(bool areUtf8)
{
    gAreTexts8Utf8 = areUtf8;
}

std::string ToText8(std::string const& utf8)
{
    return gAreTexts8Utf8 || IsAscii(utf8) ? utf8 : ToText8(QString::fromStdString(utf8));
}

std::string ToText8(QString const& text)
{
    return gAreTexts8Utf8 ? text.toStdString() : text.toLatin1().toStdString();
}

QString FromText8(char const* text8)
{
    return gAreTexts8Utf8 ? QString::fromUtf8(text8) : QString::fromLatin1(text8);
}

std::string ToUtf8(std::string const& text8)
{
    if (gAreTexts8Utf8 && IsUtf8(text8))
        return text8;
    return FromText8(text8.c_str()).toStdString();
}

std::string ToKeptText8(std::string const& text8)
{
    return ToText8(ToUtf8(text8));
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
