#include "canvas.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

namespace {

// In scene units, which are pixels as long as the view is not zoomed.
int const kGridPitch = 20;
int const kStrongLineEvery = 5;

/// How much of the text colour shines through in grid lines.
double const kFaintLine = 0.05;
double const kStrongLine = 0.1;

QColor Mix(QColor const& ground, QColor const& ink, double share)
{
    auto const mix = [share](int from, int to) {
        return from + qRound(share * (to - from));
    };
    return QColor(mix(ground.red(), ink.red()), mix(ground.green(), ink.green()),
                  mix(ground.blue(), ink.blue()));
}

/// Positions of the grid lines between two coordinates, the strong ones or the others.
QVector<int> GridLines(double from, double to, bool strong)
{
    QVector<int> positions;
    int const last = static_cast<int>(std::floor(to / kGridPitch));
    for (int line = static_cast<int>(std::ceil(from / kGridPitch)); line <= last; ++line)
        if ((line % kStrongLineEvery == 0) == strong)
            positions.append(line * kGridPitch);
    return positions;
}

QVector<QLineF> GridLines(QRectF const& rect, bool strong)
{
    QVector<QLineF> lines;
    for (int const x : GridLines(rect.left(), rect.right(), strong))
        lines.append(QLineF(x, rect.top(), x, rect.bottom()));
    for (int const y : GridLines(rect.top(), rect.bottom(), strong))
        lines.append(QLineF(rect.left(), y, rect.right(), y));
    return lines;
}

QLabel* MakeLabel(QWidget* parent)
{
    QLabel* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setWordWrap(true);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

} // namespace

CCanvas::CCanvas(QWidget* parent)
    : QGraphicsView(parent)
    , m_NameLabel(MakeLabel(viewport()))
    , m_CountsLabel(MakeLabel(viewport()))
{
    setScene(&m_Scene);
    setFrameShape(QFrame::NoFrame);
    QFont font = m_NameLabel->font();
    font.setPointSizeF(1.6 * font.pointSizeF());
    m_NameLabel->setFont(font);

    QVBoxLayout* const layout = new QVBoxLayout(viewport());
    layout->addStretch();
    layout->addWidget(m_NameLabel);
    layout->addWidget(m_CountsLabel);
    layout->addStretch();
}

void CCanvas::SetSummary(QString const& libraryName, QString const& itemCounts)
{
    m_NameLabel->setText(libraryName);
    m_CountsLabel->setText(itemCounts);
}

void CCanvas::drawBackground(QPainter* painter, QRectF const& rect)
{
    QColor const ground = palette().color(QPalette::Window);
    QColor const ink = palette().color(QPalette::WindowText);
    painter->fillRect(rect, ground);
    for (bool const strong : {false, true}) {
        // A pen of width 0 is one pixel wide at any zoom.
        painter->setPen(QPen(Mix(ground, ink, strong ? kStrongLine : kFaintLine), 0));
        painter->drawLines(GridLines(rect, strong));
    }
}
