#include "framework/commandmanager.h"

#include "base/text8.h"

#include <QCoreApplication>
#include <QString>

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
        // When the stack signals its new index it is consistent again, so commands that were
        // executed during an undo or a redo can be pushed.
        QObject::connect(m_Stack, &QUndoStack::indexChanged, m_Stack, [this] { PushFinished(); });
    }

    ~State()
    {
        // The stack may be in the middle of undoing, or of telling a listener, that destroyed the
        // manager. The application deletes it at the latest, where no event loop runs any more.
        if (QCoreApplication* const application = QCoreApplication::instance()) {
            m_Stack->setParent(application);
            m_Stack->deleteLater();
        } else {
            delete m_Stack;
        }
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

/// A command on the stack. It has been run already when it is pushed. The stack may go on to it
/// after another command has destroyed the manager; it does nothing then.
class CCommandManager::State::StackEntry : public QUndoCommand
{
public:
    StackEntry(State& state, CommandPtr const& command)
        : QUndoCommand(FromText8(command->GetText()))
        , m_State(state.weak_from_this())
        , m_Command(command)
    {}

    void redo() override
    {
        if (m_IsFresh) {
            m_IsFresh = false;
            return;
        }
        if (auto const state = m_State.lock()) {
            RunningScope const running(*state);
            m_Command->Do();
        }
    }

    void undo() override
    {
        if (auto const state = m_State.lock()) {
            RunningScope const running(*state);
            m_Command->Undo();
        }
    }

private:
    std::weak_ptr<State> const m_State;
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
    {
        RunningScope const running(*this);
        m_Finished.clear();
        m_Stack->clear();
    }
    // A listener to the stack may have executed others.
    PushFinished();
}

void CCommandManager::State::Retire()
{
    // Does not block destroyed(), by which views and actions learn that the stack is gone.
    m_Stack->blockSignals(true);
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
