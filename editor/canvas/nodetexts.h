#ifndef EDITOR_CANVAS_NODETEXTS_H
#define EDITOR_CANVAS_NODETEXTS_H

#include <QFont>
#include <QHash>
#include <QStaticText>

class QPainter;
class QRectF;

/// The fonts of nodes do not follow the desktop's: positions in library files rely on the size
/// of nodes.
QFont GetNodeNameFont();
QFont GetNodeTitleFont();

/// Texts in one font, which are laid out once: nodes have many names in common.
class NodeTexts
{
public:
    explicit NodeTexts(QFont const& font);

    /// In scene units.
    double GetWidth(QString const& text);
    /// Paints the text vertically centred, at the left or the right of the rectangle, and elided if
    /// it is wider.
    void Paint(QPainter& painter, QRectF const& rect, QString const& text, bool isAtRight);

private:
    QStaticText const& Get(QString const& text);

    QFont m_Font;
    QHash<QString, QStaticText> m_Texts;
};

#endif
