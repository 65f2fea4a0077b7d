#ifndef PALETTE_PALETTETEXT_H
#define PALETTE_PALETTETEXT_H

#include <QString>

#include <cstddef>
#include <string>

namespace nodepalette {

// The one place of the palette where 8-bit texts of the host and texts of the toolkit meet. The
// way back is QStringToStdString of the panel, or its ToSearchForm for search texts.

QString FromHost(std::string const& text);

/// It is not empty, and not just blanks.
bool HasWords(QString const& searchText);

/// Leaves all but the letters of ASCII as they are.
char ToLowerAscii(char character);

/// The form in which the panel searches a name: lower case, 8-bit.
std::string ToSearchForm(std::string const& name);

/// How many characters the 8-bit text has.
std::size_t CountCharacters(std::string const& text);

} // namespace nodepalette

#endif
