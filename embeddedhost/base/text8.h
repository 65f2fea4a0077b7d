#ifndef EMBEDDEDHOST_TEXT8_H
#define EMBEDDEDHOST_TEXT8_H

#include <string>
#include <string_view>

namespace embeddedhost {

bool IsAscii(std::string_view text);

/// The 8-bit form of a UTF-8 text: Latin-1, with '?' for other characters.
std::string ToLatin1(std::string const& utf8);

/// The UTF-8 form of an 8-bit text.
std::string ToUtf8(std::string const& latin1);

/// The maximum length, in characters, of texts of a library file that are shown or looked up, such
/// as names, tags and uids.
constexpr int kMaxTextLength = 65536;

/// The UTF-8 text has more than kMaxTextLength characters.
bool IsTooLong(std::string const& utf8);
bool IsUtf8(std::string const& text);

/// Equal, ignoring ASCII case.
bool EqualIgnoringAsciiCase(char const* a, char const* b);

} // namespace embeddedhost

#endif
