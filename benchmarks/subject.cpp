#include "subject.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

QSize const kWindowSize(300, 700);
/// In eighths of a degree.
int const kWheelNotch = 120;

} // namespace

Subject::Subject()
    : m_IsPainted(false)
{
    QVBoxLayout* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    resize(kWindowSize);
}

void Subject::ShowFirstFrame()
{
    GetCanvas().installEventFilter(this);
    show();
    PaintFrame();
}

void Subject::Type(QString const& text)
{
    QLineEdit& field = *findChild<QLineEdit*>();
    if (field.text() == text)
        return;
    field.setText(text);
    PaintFrame();
}

void Subject::Scroll()
{
    QScrollBar& bar = GetScrollBar();
    if (bar.value() == bar.maximum()) {
        bar.setValue(bar.minimum());
    } else {
        QPointF const position = GetCanvas().rect().center();
        QWheelEvent wheel(position, GetCanvas().mapToGlobal(position.toPoint()), QPoint(),
                          QPoint(0, -kWheelNotch), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&GetCanvas(), &wheel);
    }
    PaintFrame();
}

void Subject::Rebuild()
{
    StartRebuild();
    PaintFrame();
}

void Subject::ChangeTags()
{
    NotifyTags();
    QCoreApplication::processEvents();
}

bool Subject::eventFilter(QObject* watched, QEvent* event)
{
    m_IsPainted = m_IsPainted || event->type() == QEvent::Paint;
    return QWidget::eventFilter(watched, event);
}

/// Runs events until the canvas has been painted and nothing is left to do.
void Subject::PaintFrame()
{
    m_IsPainted = false;
    while (!m_IsPainted)
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}
