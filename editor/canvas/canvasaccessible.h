#ifndef EDITOR_CANVAS_CANVASACCESSIBLE_H
#define EDITOR_CANVAS_CANVASACCESSIBLE_H

class CCanvas;

// The canvas for screen readers: a list of its nodes, which are made on demand and describe their
// ports and connections. While no screen reader runs, it costs next to nothing.

/// Canvases of the process are accessible from now on.
void InstallCanvasAccessible();

/// Nodes or connections came, went or changed.
void AnnounceGraph(CCanvas& canvas);
/// Other nodes are selected. One that is selected alone is spoken while the canvas has the focus.
void AnnounceSelectedNodes(CCanvas& canvas);

#endif
