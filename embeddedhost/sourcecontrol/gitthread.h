#ifndef EMBEDDEDHOST_GITTHREAD_H
#define EMBEDDEDHOST_GITTHREAD_H

#include "sourcecontrol/cancelflag.h"

#include <QString>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace embeddedhost {

/// Runs jobs that ask git, one after another, on a thread of its own.
///
/// A job may hang, as one that opens a pipe or a file on a dead network mount, and nothing can end
/// it then. So the thread is detached: it shares the ownership of all that it uses, every wait for
/// it has a limit, and the process may end meanwhile. When the job returns after all, the jobs
/// behind it have their turn.
class CGitThread : public std::enable_shared_from_this<CGitThread>
{
public:
    typedef std::function<void()> Work;
    /// A job with a result, encoded as a text by caller and job.
    typedef std::function<QString(CancelFlag const& cancel)> Question;

    /// The thread of that name. As long as a job hangs in it this is the same one, so no more
    /// than one job of a name ever hangs.
    static std::shared_ptr<CGitThread> Get(std::string const& name);
    /// Holds the calling thread until no job runs or waits, at the longest for that time. Jobs
    /// for which a wait has timed out before are not waited for again.
    static void WaitForAll(std::chrono::milliseconds patience);

    /// Jobs that are cancelled before they begin are left out. Exceptions of jobs are logged.
    void Run(CancelFlagPtr const& cancel, Work const& work);
    /// Holds the calling thread at the longest for that time; nothing, and the question is
    /// cancelled, when there is no answer by then.
    std::optional<QString> Ask(Question const& question, std::chrono::milliseconds patience);

    bool IsBusy() const;
    /// How long the running job has given no sign of life; zero when none runs.
    std::chrono::milliseconds GetSilence() const;

private:
    struct Job
    {
        CancelFlagPtr cancel;
        Work work;
    };
    struct Registry;

    static Registry& GetRegistry();

    CGitThread() = default;
    void Start();
    void RunJobs();
    bool TakeJob();

    // All of it is guarded by the registry's mutex.
    std::deque<Job> m_Waiting;
    Job m_Running;
    bool m_IsBusy = false;
    /// A wait for it has timed out.
    bool m_IsGivenUp = false;
};

} // namespace embeddedhost

#endif
