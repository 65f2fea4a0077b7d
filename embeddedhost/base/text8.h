#ifndef EMBEDDEDHOST_TEXT8_H
#define EMBEDDEDHOST_TEXT8_H

#include <string>
#include <string_view>

class QString;

namespace embeddedhost {

bool IsAscii(std::string_view text);

/// Whether 8-bit texts, those of the contract, are UTF-8; Latin-1 otherwise, and at first.
void SetTexts8Utf8(bool areUtf8);

/// The 8-bit form of a text: '?' for what Latin-1 lacks.
std::string ToText8(std::string const& utf8);
std::string ToText8(QString const& text);

QString FromText8(char const* text8);

/// The UTF-8 form of an 8-bit text. What should be UTF-8 and is not becomes U+FFFD.
std::string ToUtf8(std::string const& text8);

/// The 8-bit text as it comes back from the UTF-8 form in which items keep it.
std::string ToKeptText8(std::string const& text8);

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
