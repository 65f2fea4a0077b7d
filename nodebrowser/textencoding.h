#ifndef NODEBROWSER_TEXTENCODING_H
#define NODEBROWSER_TEXTENCODING_H

/// @file
/// The encoding of the 8-bit texts that the panel and its host exchange, one for the whole process.

#include "nodebrowser_export.h"

#include <locale>
#include <string>

class QString;

/// The encoding of the 8-bit texts that the panel and its host exchange: whatever the headers in
/// hostapi/ call a text. One choice for the whole process.
namespace nodebrowser {

/// How texts are encoded.
enum eTextEncoding
{
    /// Each byte is a character, and '?' stands for a character that Latin-1 lacks.
    eLatin1Texts,
    /// All characters there are. A byte that is not UTF-8 is shown as one unknown character and
    /// goes back to the host as the byte it was, unless the user deletes it.
    eUtf8Texts
};

/// Has to be called on the GUI thread before the first panel or dialog is made; it is
/// eLatin1Texts otherwise. With Qt 4 this is the choice that QTextCodec::setCodecForCStrings()
/// makes: either function will do, and any other codec that is set there is used, too.
NODEBROWSER_EXPORT void SetTextEncoding(eTextEncoding encoding);
/// The choice; eLatin1Texts also for a codec of Qt 4 that is not UTF-8.
NODEBROWSER_EXPORT eTextEncoding GetTextEncoding();

/// The reverse of QStringToStdString() in stringutils.h; `text` is zero-terminated and not null.
NODEBROWSER_EXPORT QString ToQString(char const* text);

/// The 8-bit form in which a text, given in lower case, is searched and looked for. With UTF-8,
/// case is folded, letters that are written in several ways are written in one, and all white
/// space is blanks. It may be longer or shorter than the text.
NODEBROWSER_EXPORT std::string ToSearchForm(QString const& lowerText);

/// What single bytes are, such as white space: the default std::locale tells. With UTF-8 only
/// bytes of ASCII are characters, whatever that locale is.
NODEBROWSER_EXPORT std::locale GetTextLocale();

} // namespace nodebrowser

#endif
