#include "palettetext.h"

#include <nodebrowser/textencoding.h>

#include <algorithm>

namespace nodepalette {

QString FromHost(std::string const& text)
{
    // Texts of the contract end at their first zero.
    return nodebrowser::ToQString(text.c_str());
}

bool HasWords(QString const& searchText)
{
    return !searchText.trimmed().isEmpty();
}

char ToLowerAscii(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
}

std::string ToSearchForm(std::string const& name)
{
    std::string lower = name.c_str();
    bool const isAscii = std::all_of(lower.begin(), lower.end(), [](char character) {
        return static_cast<unsigned char>(character) < 0x80;
    });
    if (!isAscii)
        return nodebrowser::ToSearchForm(FromHost(name).toLower());
    // What the toolkit does, without its detour over 16-bit characters.
    std::transform(lower.begin(), lower.end(), lower.begin(), ToLowerAscii);
    return lower;
}

std::size_t CountCharacters(std::string const& text)
{
    if (nodebrowser::GetTextEncoding() != nodebrowser::eUtf8Texts)
        return text.size();
    // The bytes that continue a character do not count.
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char character) { return (character & 0xC0) != 0x80; }));
}

} // namespace nodepalette
