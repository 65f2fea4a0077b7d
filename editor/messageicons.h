#ifndef EDITOR_MESSAGEICONS_H
#define EDITOR_MESSAGEICONS_H

#include <QIcon>
#include <QStyle>

/// The icon of a message box, plain and sharp at any size; null for any other icon.
QIcon MakeMessageIcon(QStyle::StandardPixmap kind);

#endif
