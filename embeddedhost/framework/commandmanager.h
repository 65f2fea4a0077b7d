#ifndef EMBEDDEDHOST_COMMANDMANAGER_H
#define EMBEDDEDHOST_COMMANDMANAGER_H

#include "../embeddedhost_export.h"

#include <nodebrowser/hostapi/framework.h>

#include <QUndoStack>

#include <memory>

namespace embeddedhost {

/// The command manager: runs commands and keeps them on an undo stack.
///
/// A listener that reacts to a change may execute further commands while one is being run,
/// undone or redone. They are run at once, and pushed onto the stack, in the order they began, when
/// the outermost one has finished. A listener may destroy the manager, too.
class EMBEDDEDHOST_EXPORT CCommandManager : public wek::fwk::ICommandManager
{
public:
    CCommandManager();
    ~CCommandManager() override;

    /// Exceptions of the command pass through; such a command does not become undoable.
    void Execute(wek::fwk::RefCountedAutoPtr<wek::fwk::ICommand> const& command) override;

    /// For undo and redo, their actions and views; lives as long as the manager.
    QUndoStack& GetUndoStack();
    /// Forgets everything that could be undone or redone.
    void Clear();

private:
    class State;

    std::shared_ptr<State> const m_State;
};

} // namespace embeddedhost

#endif
