#include "nodetexts.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPainter>

namespace {

int const kFontPixels = 12;
/// Widths are fractions, and added up in another order they differ a little.
double const kWidthTolerance = 0.5;

} // namespace

QFont GetNodeNameFont()
{
    QFont font = QApplication::font();
    font.setPixelSize(kFontPixels);
    return font;
}

QFont GetNodeTitleFont()
{
    QFont font = GetNodeNameFont();
    font.setBold(true);
    return font;
}

NodeTexts::NodeTexts(QFont const& font)
    : m_Font(font)
{}

QStaticText const& NodeTexts::Get(QString const& text)
{
    auto found = m_Texts.find(text);
    if (found == m_Texts.end()) {
        QStaticText prepared(text);
        prepared.setTextFormat(Qt::PlainText);
        prepared.setPerformanceHint(QStaticText::AggressiveCaching);
        prepared.prepare(QTransform(), m_Font);
        found = m_Texts.insert(text, prepared);
    }
    return *found;
}

double NodeTexts::GetWidth(QString const& text)
{
    return Get(text).size().width();
}

void NodeTexts::Paint(QPainter& painter, QRectF const& rect, QString const& text, bool isAtRight)
{
    if (GetWidth(text) > rect.width() + kWidthTolerance) {
        QString const cut = QFontMetricsF(m_Font).elidedText(text, Qt::ElideRight, rect.width());
        // If nothing could be cut, this would recurse without end.
        if (cut != text)
            Paint(painter, rect, cut, isAtRight);
        return;
    }
    QStaticText const& prepared = Get(text);
    QSizeF const size = prepared.size();
    painter.setFont(m_Font);
    painter.drawStaticText(QPointF(isAtRight ? rect.right() - size.width() : rect.left(),
                                   rect.center().y() - size.height() / 2),
                           prepared);
}
