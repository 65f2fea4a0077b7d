#ifndef NODEBROWSER_STRINGUTILS_H
#define NODEBROWSER_STRINGUTILS_H

/// @file
/// Words and tags of texts, and texts of the toolkit as those of the contract.

#include "nodebrowser_export.h"

#include <set>
#include <string>

class QString;

/// Adds the words of the text, cut at white space, to the set, which keeps its previous words.
/// White space is what the default std::locale says at the time of the call; with UTF-8 texts
/// (textencoding.h) it is that of ASCII.
NODEBROWSER_EXPORT void SplitString(std::string const& text, std::set<std::string>& words);

/// Adds the pieces of the text, cut at any of the delimiter characters and trimmed of white
/// space, to the set; empty pieces are dropped. Tag strings use ";".
NODEBROWSER_EXPORT void SplitString(std::string const& text, std::string const& delimiters,
                                    std::set<std::string>& words);

/// The 8-bit form of the text, up to its first zero, in the encoding that textencoding.h tells. In
/// Latin-1, '?' stands for each character that it lacks. The reverse is nodebrowser::ToQString().
NODEBROWSER_EXPORT std::string QStringToStdString(QString const& text);

#endif
