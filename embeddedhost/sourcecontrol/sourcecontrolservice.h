#ifndef EMBEDDEDHOST_SOURCECONTROLSERVICE_H
#define EMBEDDEDHOST_SOURCECONTROLSERVICE_H

#include "sourcecontrol/filehistory.h"
#include "sourcecontrol/gitactions.h"
#include "sourcecontrol/libraryobserver.h"
#include "sourcecontrol/revisioncontrolproperties.h"
#include "sourcecontrol/stateannouncer.h"
#include "sourcecontrol/statedelivery.h"
#include "sourcecontrol/statereader.h"
#include "sourcecontrol/staterequests.h"
#include "sourcecontrol/worktreelookup.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace embeddedhost {

class CLibrary;

/// Source control of the open library: collects requests for states, has them read on another
/// thread, and notifies the library's listeners. It never waits for git without a limit, and says
/// on the message channel when git does not answer.
///
/// One pass over the work tree runs at a time; requests made meanwhile wait for the next.
class CSourceControlService : public QObject
{
    Q_OBJECT

public:
    explicit CSourceControlService(QObject* parent = nullptr);
    ~CSourceControlService() override;

    /// Null when there is none.
    static CSourceControlService* GetInstance();

    /// The library must be closed here before it goes.
    void Open(CLibrary& library);
    void Close();

    /// The library lies in a git work tree. Answered from memory: true a moment after opening.
    bool IsActive() const;
    CRevisionControlProperties& GetProperties();
    CGitActions& GetActions();
    /// Switches source control off for the user, and on again.
    void SetEnabled(bool isEnabled);

    /// Looks up the work tree again, too. Requests get no answer without a work tree, or while
    /// source control is switched off.
    void Request(CStateRequests::RequestPtr const& request, std::vector<ItemKey> const& items);
    /// A request is gone.
    void OnRequestDropped();
    /// Reads the states of the items again, for listeners that requested them before.
    void Refresh(std::vector<ItemKey> const& items);
    void RefreshAll();

    /// The item's object was looked up, possibly by a rebuild; see CStateAnnouncer.
    void NoteLookUp(ItemKey item);
    /// For the tool tip; holds the thread for some milliseconds at most. Nothing when the answer
    /// is not there yet.
    std::optional<FileFacts> FindFacts(QString const& file);

private:
    bool IsShown() const;
    void Stop();
    void Quit();
    void LookUpWorkTree();
    void OnLookedUp();
    void OnMoveFollowed(QString const& fault);
    void OnSilence();
    void Warn(QString const& text);
    void OnItemAppeared(tarno::datamodel::ItemID const& id);

    void StartWithin(int milliseconds);
    void StartPass();
    void OnPassFinished(std::vector<ItemState> const& states);
    void Announce(std::vector<ItemKey> const& items);
    void Deliver(CStateDelivery::Entry const& entry);
    void StartNextPass();

    /// For calls from timers and deliveries, where no caller catches exceptions.
    void Guard(std::function<void()> const& call);

    CLibrary* m_Library = nullptr;

    CGitWorkers m_Workers;
    CWorkTreeLookUp m_WorkTree;
    CGitActions m_Actions;
    CRevisionControlProperties m_Properties;
    CLibraryObserver m_Observer;
    CStateRequests m_Requests;
    CStateRequests::RequestPtr const m_Refresh;
    QTimer m_StartTimer;
    CStateAnnouncer m_Announcer;
    CStateDelivery m_Delivery;
    CStateReader m_Reader;
    CFileHistory m_History;
};

} // namespace embeddedhost

#endif
