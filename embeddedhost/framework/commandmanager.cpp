#include "framework/commandmanager.h"

#include "base/text8.h"

#include <QString>
#include <QThread>

#include <list>
#include <utility>

namespace embeddedhost {

namespace {

typedef wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> CommandPtr;

} // namespace

/// Lives on while it runs a command, even when that destroys the manager.
class CCommandManager::State : public std::enable_shared_from_this<State>
{
public:
    State()
    {
        // The stack is in order again once it tells its new index: commands that were executed
        // during an undo or a redo can be put on it.
        QObject::connect(m_Stack, &QUndoStack::indexChanged, m_Stack, [this] { PushFinished(); });
    }

    ~State()
    {
        // A listener to the stack may have destroyed the manager. Without an event loop there is
        // no later, and then it is the program itself that does.
        if (QThread::currentThread()->loopLevel() > 0)
            m_Stack->deleteLater();
        else
            delete m_Stack;
    }

    QUndoStack& GetStack()
    {
        return *m_Stack;
    }

    void Execute(CommandPtr const& command);
    void Clear();
    /// The manager is gone.
    void Retire();

private:
    class RunningScope;
    class StackEntry;

    void PushFinished();
    void PushNext();

    QUndoStack* const m_Stack = new QUndoStack;
    /// The nesting depth of commands that are being run, undone or redone.
    int m_Running = 0;
    /// Not yet on the stack, in the order they began.
    std::list<CommandPtr> m_Finished;
    bool m_ClearWanted = false;
};

/// While one exists, commands that are executed stay off the stack.
class CCommandManager::State::RunningScope
{
public:
    explicit RunningScope(State& state)
        : m_State(state.shared_from_this())
    {
        ++m_State->m_Running;
    }
    ~RunningScope()
    {
        --m_State->m_Running;
    }

private:
    std::shared_ptr<State> const m_State;
};

/// A command on the stack. It has been run already when it is pushed.
class CCommandManager::State::StackEntry : public QUndoCommand
{
public:
    StackEntry(State& state, CommandPtr const& command)
        : QUndoCommand(FromText8(command->GetText()))
        , m_State(state)
        , m_Command(command)
    {}

    void redo() override
    {
        if (m_IsFresh) {
            m_IsFresh = false;
            return;
        }
        RunningScope const running(m_State);
        m_Command->Do();
    }

    void undo() override
    {
        RunningScope const running(m_State);
        m_Command->Undo();
    }

private:
    State& m_State;
    CommandPtr m_Command;
    bool m_IsFresh = true;
};

void CCommandManager::State::Execute(CommandPtr const& command)
{
    auto const self = shared_from_this();
    auto const place = m_Finished.insert(m_Finished.end(), command);
    try {
        RunningScope const running(*this);
        command->Do();
    } catch (...) {
        m_Finished.erase(place);
        PushFinished();
        throw;
    }
    PushFinished();
}

void CCommandManager::State::PushFinished()
{
    auto const self = shared_from_this();
    if (m_Running > 0)
        return;
    if (std::exchange(m_ClearWanted, false))
        Clear();
    while (!m_Finished.empty())
        PushNext();
}

void CCommandManager::State::PushNext()
{
    {
        RunningScope const running(*this);
        CommandPtr const next = m_Finished.front();
        m_Finished.pop_front();
        m_Stack->push(new StackEntry(*this, next));
    }
    // A listener to the stack may have wanted it.
    if (std::exchange(m_ClearWanted, false))
        Clear();
}

void CCommandManager::State::Clear()
{
    // The stack may be in the middle of one of its commands.
    m_ClearWanted = m_Running > 0;
    if (m_ClearWanted)
        return;
    auto const self = shared_from_this();
    m_Finished.clear();
    m_Stack->clear();
}

void CCommandManager::State::Retire()
{
    m_Stack->disconnect();
    Clear();
}

CCommandManager::CCommandManager()
    : m_State(std::make_shared<State>())
{}

CCommandManager::~CCommandManager()
{
    m_State->Retire();
}

void CCommandManager::Execute(CommandPtr const& command)
{
    // The caller's pointer may go while the command runs.
    CommandPtr const kept(command); // NOLINT(performance-unnecessary-copy-initialization)
    if (kept.Get())
        m_State->Execute(kept);
}

QUndoStack& CCommandManager::GetUndoStack()
{
    return m_State->GetStack();
}

void CCommandManager::Clear()
{
    m_State->Clear();
}

} // namespace embeddedhost
