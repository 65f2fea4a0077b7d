#ifndef EDITOR_CANVAS_CANVASCOLORS_H
#define EDITOR_CANVAS_CANVASCOLORS_H

#include <QColor>
#include <QPalette>

#include <string>

/// A colour between two others: all of the first with a share of 0.
QColor MixColors(QColor const& ground, QColor const& ink, double share);

/// The colour by which ports and connections of a type are known, the same in each run. Grey
/// without a type.
QColor GetTypeColor(std::string const& type, std::string const& typeName, bool isDark);

/// The colours of the canvas, derived from a palette.
struct CanvasColors
{
    explicit CanvasColors(QPalette const& palette);

    bool isDark;
    QColor ground;
    QColor faintLine;
    QColor strongLine;
    QColor nodeBody;
    QColor nodeBorder;
    QColor shadow;
    QColor text;
    QColor dimText;
    QColor selection;
    QColor refusal;
    QColor compoundTint;
    QColor solverTint;
    QColor constantTint;
    QColor portsTint;
    QColor missingTint;
};

#endif
