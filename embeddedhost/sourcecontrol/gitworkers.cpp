#include "sourcecontrol/gitworkers.h"

#include "framework/guardedcall.h"

#include <QFile>

#include <algorithm>

namespace embeddedhost {

using std::chrono::milliseconds;

namespace {

/// Between two looks for signs of life, in milliseconds.
constexpr int kWatchInterval = 500;

/// Git does not answer when there was no sign of life for that long.
constexpr milliseconds kSilence(3000);

/// The longest wait for an answer that is needed at once.
constexpr milliseconds kAnswerPatience(500);

/// The longest wait for cancelled jobs at the end of the process.
constexpr milliseconds kEndPatience(500);

} // namespace

CGitWorkers::CGitWorkers()
{
    m_Watch.setInterval(kWatchInterval);
    connect(&m_Watch, &QTimer::timeout, this, &CGitWorkers::LookForLife);
}

CGitWorkers::~CGitWorkers()
{
    Close();
    Finish();
}

void CGitWorkers::Open(QString const& folder)
{
    Close();
    m_Mailbox = std::make_unique<CMailbox>();
    for (std::size_t task = 0; task < m_Threads.size(); ++task)
        m_Threads[task] =
            CGitThread::Get(std::to_string(task) + ' ' + QFile::encodeName(folder).toStdString());
}

void CGitWorkers::Close()
{
    m_Watch.stop();
    m_IsAnswering = true;
    m_Mailbox.reset();
    m_Threads.fill(nullptr);
}

void CGitWorkers::Finish()
{
    CGitThread::WaitForAll(kEndPatience);
}

void CGitWorkers::Run(eTask task, CancelFlagPtr const& cancel, CGitThread::Work const& work,
                      CMailbox::Result const& deliver)
{
    if (!m_Threads[task])
        return;
    m_Threads[task]->Run(cancel, [work, deliver, slot = m_Mailbox->GetSlot()]() mutable {
        RunGuarded(nullptr, QStringLiteral("Source control"), work);
        if (deliver)
            slot.Post(deliver);
    });
    Watch();
}

std::optional<QString> CGitWorkers::Ask(eTask task, CGitThread::Question const& question)
{
    if (!m_Threads[task] || !m_IsAnswering)
        return std::nullopt;
    Watch();
    return m_Threads[task]->Ask(question, kAnswerPatience);
}

bool CGitWorkers::IsAnswering() const
{
    return m_IsAnswering;
}

void CGitWorkers::Watch()
{
    if (!m_Watch.isActive())
        m_Watch.start();
}

void CGitWorkers::LookForLife()
{
    bool const wasAnswering = m_IsAnswering;
    m_IsAnswering = std::all_of(m_Threads.begin(), m_Threads.end(),
                                [](auto const& thread) { return thread->GetSilence() < kSilence; });
    if (std::none_of(m_Threads.begin(), m_Threads.end(),
                     [](auto const& thread) { return thread->IsBusy(); }))
        m_Watch.stop();
    if (wasAnswering && !m_IsAnswering)
        Q_EMIT StoppedAnswering();
}

} // namespace embeddedhost

#include "moc_gitworkers.cpp"
