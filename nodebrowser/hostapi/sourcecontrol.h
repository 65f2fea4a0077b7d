#ifndef NODEBROWSER_HOSTAPI_SOURCECONTROL_H
#define NODEBROWSER_HOSTAPI_SOURCECONTROL_H

/// @file
/// The contract's source-control utilities: states of objects, their icons and tool tips, and the
/// switch that turns the display of states on.
///
/// These are declarations only; the host's library defines them. Everything is called on the GUI
/// thread, most of it while the panel paints, and must not run an event loop. The texts are the
/// toolkit's own, so no encoding is involved. Pointers are not null unless a declaration says so.

#include "framework.h"
#include "qorm.h"

#include <QPixmap>
#include <QString>

#include <list>

#ifdef __GNUC__
// In a shared library of the host everything declared here is visible, whatever it hides else.
#pragma GCC visibility push(default)
#endif

/// Asks for source-control states in the background. The answers arrive later, on the GUI
/// thread, as ItemAccessStateChanged notifications of the item library. Each panel has a task.
class ScsTask
{
public:
    /// `name` identifies the caller: "NodeBrowser".
    explicit ScsTask(QString const& name);

    /// Requests the states of compounds: all that the panel lists, except those from read-only data
    /// sources. Called by the first paint after a library was set or states were switched on, also
    /// while no states are shown. The list may be empty, and handles in it may be invalid: these
    /// are left out. Returns at once. Items that get no answer keep ScsUtils::kWaitingState.
    void RequestObjectStates(std::list<qorm::QormHandle<qorm::IDbObject>> const& objects);
    /// Called instead of delete, when the panel is destroyed: the task deletes itself when it is
    /// safe to, and delivers nothing more.
    void DeleteMe();

private:
    class Private;

    ScsTask(ScsTask const&);
    ScsTask& operator=(ScsTask const&);
    ~ScsTask();

    Private* m_Private;
};

/// States of source control, in bits: the panel sets kNoState and kWaitingState itself, all other
/// bits are the host's. The rules that hold for all of it stand in sourcecontrol.h.
namespace ScsUtils {

/// No state: all items have it after a rebuild of the panel's list and after states are switched
/// off. A state such as "up to date" needs a bit, therefore, and after a rebuild that did not ask
/// RequestObjectStates the host announces the states again.
int const kNoState = 0;
/// Requested, no answer yet: the panel sets it on the items that it passes to
/// ScsTask::RequestObjectStates, before the call, and passes it to getAssetStateIcon like any other
/// state. The host leaves the bit free, and may mark such icons or not.
int const kWaitingState = 0x400000;

/// Width of the strip at the left of an icon that carries a badge or a mark, in device-independent
/// pixels.
int const kStateStripWidth = 7;

/// True when the files of the library are under version control at all. Called for each icon while
/// states are switched on, and before they are switched on; false shows no states.
bool IsFileVersionControlActive();

/// The base pixmap with the overlay of the state bits, as it is painted in a row. `active` is
/// whether states are shown; if not, the result is the base. `plain` is true for a plain icon and
/// false for a factory composite, which already carries the strip at its left. Sizes are
/// device-independent pixels. `base` is null when the program lacks the image; it may be painted
/// on, because the panel uses the result only. The panel caches the result for all items with the
/// same arguments, until its next rebuild.
///
/// `state` has the bits that the host sent with ItemAccessStateChanged for the item, or is kNoState
/// or kWaitingState, which the panel passes by itself.
///
/// While states are switched on, the panel paints the icon of a compound further left by the width
/// of the strip, unless its data source is read-only. So the answer for a state other than kNoState
/// has the strip at its left, with the mark in it, to keep the icons of all rows in one column. For
/// kNoState the answer is the base: items that take no part in source control have that state, too.
QPixmap getAssetStateIcon(QPixmap& base, unsigned int state, bool active, bool plain);

/// Tool-tip text for the object, plain or rich; empty, as for an invalid handle, shows none. Called
/// when the mouse rests on a compound whose object is valid. `icon` is the resource name of an icon
/// that it may show, ":compound.png".
QString GetToolTip(qorm::QormHandle<qorm::IDbObject> object, QString const& icon);

} // namespace ScsUtils

class IRevisionControlPropertiesMgr;

/// A listener for changes of the revision-control properties; each panel is one.
class IRevisionControlPropertiesMgr_Slot
{
public:
    /// `manager` is null when the manager goes away. The panel asks it the two questions below and
    /// switches the states on or off.
    virtual void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* manager) = 0;

protected:
    IRevisionControlPropertiesMgr_Slot();
    /// Disconnects the slot.
    ~IRevisionControlPropertiesMgr_Slot();

    /// The slot's live connections, which it owns.
    KvTrackedSlotList m_TrackedSlots;
};

/// The service "RevisionControlPropertiesMgr": whether the user wants to see source control. It is
/// looked up once, when a panel is made.
class IRevisionControlPropertiesMgr : public wek::IBase
{
public:
    /// Connects the slot through an entry of its own list; neither is null. Calls follow at each
    /// change until either end goes away. The panel asks for the present values by itself.
    virtual void Connect(IRevisionControlPropertiesMgr_Slot* slot, KvTrackedSlot* entry) = 0;

    /// Whether the property below has a value at all; false shows no states.
    virtual bool HasRevisionControlEnabled() = 0;
    /// Writes whether revision control is switched on; called only when there is a value, and never
    /// with null. `*enabled` is false at first.
    virtual void GetRevisionControlEnabled(bool* enabled) = 0;
};

#ifdef __GNUC__
#pragma GCC visibility pop
#endif

#endif
