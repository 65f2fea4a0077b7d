// From requests for states to their delivery.

#include "framework/guardedcall.h"
#include "model/library.h"
#include "model/librarynotifier.h"
#include "sourcecontrol/sourcecontrolservice.h"

namespace embeddedhost {

using namespace tarno::datamodel;

namespace {

/// In milliseconds. Changes of files and of the git folder come in bursts.
constexpr int kRefreshDelay = 200;

/// The contract has states requested for compounds of data sources that can be written, see
/// ScsTask::RequestObjectStates; others never get one.
bool TakesPart(CLibraryItem const& item)
{
    return item.GetIdentity().kind == TarnoType::gCompound
           && item.GetSource()->GetAccessMode() != qorm::IDataSource::kReadOnlyAccess;
}

} // namespace

void CSourceControlService::Request(CStateRequests::RequestPtr const& request,
                                    std::vector<ItemKey> const& items)
{
    m_Requests.Add(request);
    if (!m_Library)
        return;
    // They are read when it is known whether there is a work tree by now.
    if (m_Properties.IsEnabled())
        request->wanted.insert(items.begin(), items.end());
    LookUpWorkTree();
}

void CSourceControlService::OnRequestDropped()
{
    if (m_Requests.IsEmpty())
        m_Requests.Clear();
    if (!m_Requests.IsAnythingAsked())
        m_Reader.Cancel();
    StartNextPass();
}

void CSourceControlService::Refresh(std::vector<ItemKey> const& items)
{
    if (!IsShown() || m_Requests.IsEmpty() || items.empty())
        return;
    m_Refresh->wanted.insert(items.begin(), items.end());
    StartWithin(kRefreshDelay);
}

void CSourceControlService::RefreshAll()
{
    Refresh(m_Announcer.GetItems());
}

void CSourceControlService::NoteLookUp(ItemKey item)
{
    m_Announcer.NoteLookUp(item);
}

void CSourceControlService::OnItemAppeared(ItemID const& id)
{
    ItemKey const item = ItemIDUnlock::GetIdentity(id);
    if (item && item->item && TakesPart(*item->item))
        Refresh({item});
}

void CSourceControlService::StartWithin(int milliseconds)
{
    // Only ever brought forward: a delayed refresh must not hold up a request.
    if (!m_StartTimer.isActive() || m_StartTimer.remainingTime() > milliseconds)
        m_StartTimer.start(milliseconds);
}

void CSourceControlService::StartNextPass()
{
    if (IsShown() && m_Requests.IsAnythingWanted())
        StartWithin(0);
}

void CSourceControlService::StartPass()
{
    // The next pass begins when the answers of this one are out.
    if (!m_Library || m_Requests.IsAnythingAsked())
        return;
    std::vector<CStateReader::ItemFile> files;
    for (ItemKey const item : m_Requests.Ask()) {
        if (item->item)
            files.push_back({item, item->item->GetFile().path});
        else
            m_Requests.Answer(item); // it has gone meanwhile
    }
    if (!files.empty())
        m_Reader.Start(files);
}

void CSourceControlService::OnPassFinished(std::vector<ItemState> const& states)
{
    for (ItemState const& state : states)
        m_Delivery.Add({state.item, state.state});
}

void CSourceControlService::Announce(std::vector<ItemKey> const& items)
{
    if (m_Requests.IsEmpty())
        return; // no listener shows states any more
    for (ItemKey const item : items)
        m_Delivery.Add({item, std::nullopt});
}

void CSourceControlService::Deliver(CStateDelivery::Entry const& entry)
{
    if (entry.answer) {
        if (!m_Requests.Answer(entry.item))
            return;
        m_Announcer.Remember(entry.item, *entry.answer);
    } else if (m_Requests.IsAwaited(entry.item)) {
        return; // the answer is on its way
    }
    auto const state = m_Announcer.Find(entry.item);
    if (m_Library && entry.item->item && state)
        Guard([this, id = ItemID(entry.item), state] {
            m_Library->GetNotifier().AccessStateChanged(id, long(*state));
        });
}

} // namespace embeddedhost
