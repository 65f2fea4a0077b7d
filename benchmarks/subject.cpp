#include "subject.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

QSize const kWindowSize(300, 700);
/// In eighths of a degree.
int const kWheelNotch = 120;
/// In pixels; more than a row of either list.
int const kRowDistance = 60;

} // namespace

char const Subject::kMovedPrefix[] = "moved_";
char const Subject::kAddedName[] = "measured_item";

Subject::Subject()
    : m_IsPainted(false)
    , m_IsLowerRow(false)
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
                          QPoint(0, -kWheelNotch), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&GetCanvas(), &wheel);
    }
    PaintFrame();
}

void Subject::Rebuild()
{
    StartRebuild();
    PaintFrame();
}

void Subject::Rename()
{
    StartRename();
    PaintFrame();
}

void Subject::Add()
{
    StartAdd();
    PaintFrame();
}

void Subject::RemoveAdded()
{
    StartRemove();
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

void Subject::Press()
{
    // Each press on another row, so that the selection changes.
    m_IsLowerRow = !m_IsLowerRow;
    QPoint const point = GetCanvas().rect().center() + QPoint(0, m_IsLowerRow ? kRowDistance : 0);
    for (QEvent::Type const type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        Qt::MouseButtons const held =
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent event(type, point, GetCanvas().mapToGlobal(point), Qt::LeftButton, held,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&GetCanvas(), &event);
    }
    QCoreApplication::processEvents();
}

void Subject::Hover()
{
    QPoint const point = GetCanvas().rect().center();
    QHelpEvent event(QEvent::ToolTip, point, GetCanvas().mapToGlobal(point));
    QCoreApplication::sendEvent(&GetCanvas(), &event);
    QCoreApplication::processEvents();
}

/// Runs events until the canvas has been painted and nothing is left to do.
void Subject::PaintFrame()
{
    m_IsPainted = false;
    while (!m_IsPainted)
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}
