#ifndef EDITOR_CANVAS_GRAPHCLIPBOARD_H
#define EDITOR_CANVAS_GRAPHCLIPBOARD_H

#include <graphbody.h>

class QMimeData;

/// Copied nodes as they lie on the clipboard: JSON with the nodes and connections of a library
/// file, under a format of the editor's own and as a text. The caller owns the data.
QMimeData* MakeClipboardData(GraphBody const& nodes);

/// Without nodes when the clipboard holds something else.
GraphBody ReadClipboardData(QMimeData const* data);

#endif
