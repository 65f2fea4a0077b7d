#include "sourcecontrol/gitthread.h"

#include "framework/guardedcall.h"

#include <algorithm>
#include <condition_variable>
#include <future>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

namespace embeddedhost {

using std::chrono::milliseconds;

struct CGitThread::Registry
{
    bool IsAnyBusy() const
    {
        return std::any_of(threads.begin(), threads.end(), [](auto const& entry) {
            auto const thread = entry.second.lock();
            return thread && thread->m_IsBusy && !thread->m_IsGivenUp;
        });
    }

    std::mutex mutex;
    std::condition_variable idle;
    /// A thread that is busy keeps itself alive.
    std::map<std::string, std::weak_ptr<CGitThread>> threads;
};

// Never destroyed: a thread may return from git while the process ends.
CGitThread::Registry& CGitThread::GetRegistry()
{
    static Registry& registry = *new Registry;
    return registry;
}

std::shared_ptr<CGitThread> CGitThread::Get(std::string const& name)
{
    Registry& registry = GetRegistry();
    std::lock_guard<std::mutex> const lock(registry.mutex);
    for (auto entry = registry.threads.begin(); entry != registry.threads.end();)
        entry = entry->second.expired() ? registry.threads.erase(entry) : std::next(entry);
    std::shared_ptr<CGitThread> thread = registry.threads[name].lock();
    if (!thread) {
        thread.reset(new CGitThread);
        registry.threads[name] = thread;
    }
    return thread;
}

void CGitThread::WaitForAll(milliseconds patience)
{
    Registry& registry = GetRegistry();
    std::unique_lock<std::mutex> lock(registry.mutex);
    if (registry.idle.wait_for(lock, patience, [&registry] { return !registry.IsAnyBusy(); }))
        return;
    for (auto const& entry : registry.threads) {
        if (auto const thread = entry.second.lock())
            thread->m_IsGivenUp = thread->m_IsBusy;
    }
}

void CGitThread::Run(CancelFlagPtr const& cancel, Work const& work)
{
    std::lock_guard<std::mutex> const lock(GetRegistry().mutex);
    // Otherwise cancelled jobs would pile up behind one that hangs.
    m_Waiting.erase(std::remove_if(m_Waiting.begin(), m_Waiting.end(),
                                   [](Job const& job) { return job.cancel->IsSet(); }),
                    m_Waiting.end());
    m_Waiting.push_back({cancel, work});
    if (!m_IsBusy)
        Start();
}

std::optional<QString> CGitThread::Ask(Question const& question, milliseconds patience)
{
    // Shared, because the question may still run after this wait has timed out.
    auto const cancel = std::make_shared<CancelFlag>();
    auto const answer = std::make_shared<std::promise<QString>>();
    std::future<QString> result = answer->get_future();
    Run(cancel, [=] { answer->set_value(question(*cancel)); });
    if (result.wait_for(patience) == std::future_status::ready) {
        try {
            return result.get();
        } catch (std::future_error const&) {
            return std::nullopt; // the question has raised something, which is in the log
        }
    }
    cancel->Cancel();
    return std::nullopt;
}

bool CGitThread::IsBusy() const
{
    std::lock_guard<std::mutex> const lock(GetRegistry().mutex);
    return m_IsBusy;
}

milliseconds CGitThread::GetSilence() const
{
    std::lock_guard<std::mutex> const lock(GetRegistry().mutex);
    if (!m_Running.cancel)
        return milliseconds(0);
    return std::chrono::duration_cast<milliseconds>(CancelFlag::Clock::now()
                                                    - m_Running.cancel->GetLastLook());
}

void CGitThread::Start()
{
    try {
        std::thread([self = shared_from_this()] { self->RunJobs(); }).detach();
        m_IsBusy = true;
    } catch (std::system_error const&) {
        // The system has no thread left; the next job tries again.
    }
}

void CGitThread::RunJobs()
{
    while (TakeJob())
        RunGuarded(nullptr, QStringLiteral("Source control"), m_Running.work);
}

/// False when there is none, and the thread ends.
bool CGitThread::TakeJob()
{
    Registry& registry = GetRegistry();
    // Destroyed after the mutex is released: its destructor may run any code.
    Job done;
    std::lock_guard<std::mutex> const lock(registry.mutex);
    std::swap(done, m_Running);
    while (!m_Waiting.empty()) {
        m_Running = m_Waiting.front();
        m_Waiting.pop_front();
        if (!m_Running.cancel->IsCancelled())
            return true;
    }
    m_Running = Job();
    m_IsBusy = false;
    m_IsGivenUp = false;
    registry.idle.notify_all();
    return false;
}

} // namespace embeddedhost
