#include "loadprogress.h"

#include <QCoreApplication>
#include <QStatusBar>

namespace {

// In milliseconds.
int const kPatience = 300;
int const kUpdateInterval = 50;

} // namespace

CLoadProgress::CLoadProgress(QStatusBar& statusBar)
    : m_StatusBar(statusBar)
{
    m_SinceStart.start();
}

void CLoadProgress::Update(int done, int total)
{
    if (!m_Bar && m_SinceStart.elapsed() < kPatience)
        return;
    if (!m_Bar)
        ShowBar();
    else if (m_SinceUpdate.elapsed() < kUpdateInterval)
        return;
    m_SinceUpdate.start();
    m_Bar->setRange(0, total);
    m_Bar->setValue(done);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void CLoadProgress::ShowBar()
{
    m_Bar = std::make_unique<QProgressBar>();
    m_StatusBar.addPermanentWidget(m_Bar.get());
}
