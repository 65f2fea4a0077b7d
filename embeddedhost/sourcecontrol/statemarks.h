#ifndef EMBEDDEDHOST_STATEMARKS_H
#define EMBEDDEDHOST_STATEMARKS_H

#include <QPixmap>

namespace embeddedhost {

/// The icon with an empty strip at its left.
QPixmap AddStateStrip(QPixmap const& icon);

/// Draws the marks of the state bits into the strip of an icon that has one. Every state but
/// clean, which has no mark, has a shape of its own.
void PaintStateMarks(QPixmap& icon, unsigned state);

} // namespace embeddedhost

#endif
