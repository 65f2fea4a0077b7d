#include "framework/commandmanager.h"

#include "base/text8.h"

#include <QString>

#include <utility>

namespace embeddedhost {

/// While one exists, commands that are executed stay off the stack.
class CCommandManager::RunningScope
{
public:
    explicit RunningScope(CCommandManager& manager)
        : m_Manager(manager)
    {
        ++m_Manager.m_Running;
    }
    ~RunningScope()
    {
        --m_Manager.m_Running;
    }

private:
    CCommandManager& m_Manager;
};

/// A command on the stack. It has been run already when it is pushed.
class CCommandManager::StackEntry : public QUndoCommand
{
public:
    StackEntry(CCommandManager& manager, CommandPtr const& command)
        : QUndoCommand(embeddedhost::FromText8(command->GetText()))
        , m_Manager(manager)
        , m_Command(command)
    {}

    void redo() override
    {
        if (m_IsFresh) {
            m_IsFresh = false;
            return;
        }
        RunningScope const running(m_Manager);
        m_Command->Do();
    }

    void undo() override
    {
        RunningScope const running(m_Manager);
        m_Command->Undo();
    }

private:
    CCommandManager& m_Manager;
    CommandPtr m_Command;
    bool m_IsFresh = true;
};

CCommandManager::CCommandManager()
{
    // The stack is in order again once it tells its new index: commands that were executed
    // during an undo or a redo can be put on it.
    QObject::connect(&m_Stack, &QUndoStack::indexChanged, &m_Stack, [this] { PushFinished(); });
}

CCommandManager::~CCommandManager()
{
    m_Stack.disconnect();
}

void CCommandManager::Execute(wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> const& command)
{
    if (!command.Get())
        return;
    // The caller's pointer may go while the command runs.
    CommandPtr const kept(command); // NOLINT(performance-unnecessary-copy-initialization)
    auto const place = m_Finished.insert(m_Finished.end(), kept);
    try {
        RunningScope const running(*this);
        kept->Do();
    } catch (...) {
        m_Finished.erase(place);
        PushFinished();
        throw;
    }
    PushFinished();
}

void CCommandManager::PushFinished()
{
    if (m_Running > 0)
        return;
    if (std::exchange(m_ClearWanted, false))
        Clear();
    while (!m_Finished.empty())
        PushNext();
}

void CCommandManager::PushNext()
{
    {
        RunningScope const running(*this);
        CommandPtr const next = m_Finished.front();
        m_Finished.pop_front();
        m_Stack.push(new StackEntry(*this, next));
    }
    // A listener to the stack may have wanted it.
    if (std::exchange(m_ClearWanted, false))
        Clear();
}

QUndoStack& CCommandManager::GetUndoStack()
{
    return m_Stack;
}

void CCommandManager::Clear()
{
    // The stack may be in the middle of one of its commands.
    m_ClearWanted = m_Running > 0;
    if (m_ClearWanted)
        return;
    m_Finished.clear();
    m_Stack.clear();
}

} // namespace embeddedhost
