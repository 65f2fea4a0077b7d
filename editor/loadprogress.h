#ifndef EDITOR_LOADPROGRESS_H
#define EDITOR_LOADPROGRESS_H

#include <QElapsedTimer>
#include <QObject>
#include <QProgressBar>

#include <memory>

class QStatusBar;

/// Shows the progress of a long operation in a status bar; short operations show nothing. Windows
/// are painted meanwhile, and can be closed, but take no input: keys and clicks are discarded.
class CLoadProgress : public QObject
{
public:
    explicit CLoadProgress(QStatusBar& statusBar);

    void Update(int done, int total);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowBar();

    QStatusBar& m_StatusBar;
    QElapsedTimer m_SinceStart;
    QElapsedTimer m_SinceUpdate;
    std::unique_ptr<QProgressBar> m_Bar;
};

#endif
