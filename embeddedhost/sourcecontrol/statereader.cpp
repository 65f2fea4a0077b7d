#include "sourcecontrol/statereader.h"

#include "sourcecontrol/statepass.h"

namespace embeddedhost {

/// Shared by both threads: the files are not changed any more, the states belong to the worker
/// until it has finished.
struct CStateReader::Pass
{
    void Run()
    {
        states = ReadFileStates(paths, isCancelled);
    }

    std::vector<ItemKey> items;
    std::vector<QString> paths;
    std::vector<unsigned> states;
    CancelFlag isCancelled{false};
};

CStateReader::CStateReader()
{
    m_Pool.setMaxThreadCount(1);
}

CStateReader::~CStateReader()
{
    Cancel();
    Wait();
}

bool CStateReader::IsBusy() const
{
    return m_Pass != nullptr;
}

void CStateReader::Start(std::vector<ItemFile> const& files)
{
    Cancel();
    m_Pass = std::make_shared<Pass>();
    for (ItemFile const& file : files) {
        m_Pass->items.push_back(file.item);
        m_Pass->paths.push_back(file.path);
    }
    m_Pool.start([this, pass = m_Pass] {
        pass->Run();
        QMetaObject::invokeMethod(
            this, [this, pass] { Finish(*pass); }, Qt::QueuedConnection);
    });
}

void CStateReader::Cancel()
{
    if (m_Pass)
        m_Pass->isCancelled = true;
    m_Pass.reset();
}

void CStateReader::Wait()
{
    m_Pool.waitForDone();
}

void CStateReader::Finish(Pass const& pass)
{
    if (pass.isCancelled)
        return;
    m_Pass.reset();
    std::vector<ItemState> states;
    for (std::size_t i = 0; i < pass.items.size(); ++i)
        states.push_back({pass.items[i], pass.states[i]});
    Q_EMIT Finished(states);
}

} // namespace embeddedhost
