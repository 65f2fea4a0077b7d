#ifndef PALETTE_PALETTEACCESSIBLE_H
#define PALETTE_PALETTEACCESSIBLE_H

#include "nodepalette.h"

namespace nodepalette {

// The palette for screen readers: a list whose rows are made on demand. It costs nothing while no
// screen reader runs.

/// Palettes of the process are accessible from now on.
void InstallPaletteAccessible();

/// Another row is selected.
void AnnounceSelection(CNodePalette& palette);
/// The user moved to the selected row: it is spoken, though the search field keeps the focus.
void AnnounceFocusedRow(CNodePalette& palette);
/// Rows came, went or moved.
void AnnounceRows(CNodePalette& palette);

} // namespace nodepalette

#endif
