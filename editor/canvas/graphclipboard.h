#ifndef EDITOR_CANVAS_GRAPHCLIPBOARD_H
#define EDITOR_CANVAS_GRAPHCLIPBOARD_H

#include <embeddedhost/model/graphbody.h>

class QMimeData;
class QString;

// Copied nodes as they lie on the clipboard: JSON with the nodes and connections of a library
// file, under a format of the editor's own and as a text.

/// The caller owns the data. Null when there is more than is read again, which is 16 MB.
QMimeData* MakeClipboardData(embeddedhost::GraphBody const& nodes);

/// Looks at the format alone: another program may be slow to hand the content over.
bool HasClipboardNodes(QMimeData const* data);
/// Has no nodes if none can be read; `reason` then gets a clause that says why.
embeddedhost::GraphBody ReadClipboardData(QMimeData const* data, QString* reason = nullptr);

#endif
