#include "sourcecontrol/statereader.h"

#include "sourcecontrol/statebits.h"
#include "sourcecontrol/statepass.h"

namespace embeddedhost {

/// Shared by both threads: the files are not changed any more, the states belong to the worker
/// until it has finished.
struct CStateReader::Pass
{
    std::vector<ItemKey> items;
    std::vector<QString> paths;
    std::vector<unsigned> states;
    CancelFlagPtr const cancel = std::make_shared<CancelFlag>();
};

CStateReader::CStateReader(CGitWorkers& workers)
    : m_Workers(workers)
{}

void CStateReader::Start(std::vector<ItemFile> const& files)
{
    Cancel();
    m_Pass = std::make_shared<Pass>();
    for (ItemFile const& file : files) {
        m_Pass->items.push_back(file.item);
        m_Pass->paths.push_back(file.path);
    }
    // The states that are delivered if reading them throws.
    m_Pass->states.assign(files.size(), StateBits::kUnknown);
    m_Workers.Run(
        CGitWorkers::kStates, m_Pass->cancel,
        [pass = m_Pass] { pass->states = ReadFileStates(pass->paths, *pass->cancel); },
        [this, pass = m_Pass] { Finish(*pass); });
}

void CStateReader::Cancel()
{
    if (m_Pass)
        m_Pass->cancel->Cancel();
    m_Pass.reset();
}

void CStateReader::Finish(Pass const& pass)
{
    if (pass.cancel->IsSet())
        return;
    m_Pass.reset();
    std::vector<ItemState> states;
    for (std::size_t i = 0; i < pass.items.size(); ++i)
        states.push_back({pass.items[i], pass.states[i]});
    Q_EMIT Finished(states);
}

} // namespace embeddedhost

#include "moc_statereader.cpp"
