#ifndef EMBEDDEDHOST_GITWORKERS_H
#define EMBEDDEDHOST_GITWORKERS_H

#include "sourcecontrol/gitthread.h"
#include "sourcecontrol/mailbox.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <memory>

namespace embeddedhost {

/// The threads that ask git on behalf of one library. The library may be closed, and the program
/// may end, while they hang.
class CGitWorkers : public QObject
{
    Q_OBJECT

public:
    enum eTask
    {
        kStates,  ///< a pass over the work tree
        kHistory, ///< a search through the commits
        kActions, ///< jobs that are short unless git hangs
        kTaskCount
    };

    CGitWorkers();
    /// Waits for a moment, so that no thread is at work while the process ends, unless it hangs.
    ~CGitWorkers() override;

    /// The folder of the library.
    void Open(QString const& folder);
    /// Nothing is delivered any more. Jobs that are not cancelled are done nevertheless.
    void Close();
    /// Waits like the destructor, for a process that ends without calling it.
    void Finish();

    /// Runs `work` on the thread of the task, then, even when it has raised something, `deliver`
    /// through the event loop, if there is something to do. Nothing happens when no library is
    /// open.
    void Run(eTask task, CancelFlagPtr const& cancel, CGitThread::Work const& work,
             CMailbox::Result const& deliver);
    /// Holds the calling thread for some time at the longest, and not at all when git does not
    /// answer anyway. Nothing when there is no answer.
    std::optional<QString> Ask(eTask task, CGitThread::Question const& question);

    /// False while a job has given no sign of life for some seconds.
    bool IsAnswering() const;

Q_SIGNALS:
    void StoppedAnswering();

private:
    void Watch();
    void LookForLife();

    /// Null when no library is open.
    std::array<std::shared_ptr<CGitThread>, kTaskCount> m_Threads;
    std::unique_ptr<CMailbox> m_Mailbox;
    QTimer m_Watch;
    bool m_IsAnswering = true;
};

} // namespace embeddedhost

#endif
