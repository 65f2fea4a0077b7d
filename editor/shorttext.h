#ifndef EDITOR_SHORTTEXT_H
#define EDITOR_SHORTTEXT_H

#include <QString>
#include <QStringList>

/// The first 2000 letters of a text that is longer, and how many more there are. A name out of a
/// file may be so long that no window can show it in a reasonable time.
QString ShortenText(QString const& text);

/// Up to 200 lines, and how many more there are.
QString ListSome(QStringList const& lines);

/// For menus and buttons: no letter of the text, a name say, is a mnemonic.
QString EscapeMnemonics(QString text);

#endif
