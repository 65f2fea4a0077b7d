#ifndef EDITOR_LOADPROGRESS_H
#define EDITOR_LOADPROGRESS_H

#include <QElapsedTimer>
#include <QProgressBar>

#include <memory>

class QStatusBar;

/// Shows the progress of a long task in a status bar; quick tasks show nothing. Windows are
/// painted meanwhile, but take no input.
class CLoadProgress
{
public:
    explicit CLoadProgress(QStatusBar& statusBar);

    void Update(int done, int total);

private:
    void ShowBar();

    QStatusBar& m_StatusBar;
    QElapsedTimer m_SinceStart;
    QElapsedTimer m_SinceUpdate;
    std::unique_ptr<QProgressBar> m_Bar;
};

#endif
