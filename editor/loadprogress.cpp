#include "loadprogress.h"

#include <QApplication>
#include <QEvent>
#include <QStatusBar>

namespace {

// In milliseconds.
int const kPatience = 300;
int const kUpdateInterval = 50;

bool IsInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

} // namespace

CLoadProgress::CLoadProgress(QStatusBar& statusBar)
    : m_StatusBar(statusBar)
{
    m_SinceStart.start();
    qApp->installEventFilter(this);
}

void CLoadProgress::Update(int done, int total)
{
    // The first call processes events at once, so that windows can show the hint about reading.
    if (m_SinceUpdate.isValid() && m_SinceUpdate.elapsed() < kUpdateInterval)
        return;
    m_SinceUpdate.start();
    if (!m_Bar && m_SinceStart.elapsed() >= kPatience)
        ShowBar();
    if (m_Bar) {
        m_Bar->setRange(0, total);
        m_Bar->setValue(done);
    }
    // Without user input, some platforms hold back that a window is to be closed, too.
    QCoreApplication::processEvents();
}

/// Discards input, unless a modal dialog was opened meanwhile: that has to be answered.
bool CLoadProgress::eventFilter(QObject* watched, QEvent* event)
{
    return (IsInput(event->type()) && !QApplication::activeModalWidget())
           || QObject::eventFilter(watched, event);
}

void CLoadProgress::ShowBar()
{
    m_Bar = std::make_unique<QProgressBar>();
    m_StatusBar.addPermanentWidget(m_Bar.get());
}
