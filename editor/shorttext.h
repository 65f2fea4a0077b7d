#ifndef EDITOR_SHORTTEXT_H
#define EDITOR_SHORTTEXT_H

#include <QString>
#include <QStringList>

/// The first 2000 letters of a text that is longer, and how many more there are. A name out of a
/// file may be so long that no window can show it in a reasonable time.
QString ShortenText(QString const& text);

/// Up to 200 lines, and how many more there are.
QString ListSome(QStringList const& lines);

/// Escapes a text such as a name for menus and buttons, so that no letter of it becomes a mnemonic.
QString EscapeMnemonics(QString text);

#endif
