#ifndef NODEBROWSER_HOSTAPI_SOURCECONTROL_H
#define NODEBROWSER_HOSTAPI_SOURCECONTROL_H

// The host's source-control utilities: states of objects, their icons and tool tips, and the
// switch that turns the display of states on. Declarations only; the host's library defines
// them. Everything is called on the GUI thread.

#include "framework.h"
#include "qorm.h"

#include <QPixmap>
#include <QString>

#include <list>

/// Asks for source-control states in the background. The answers arrive later, on the GUI
/// thread, as ItemAccessStateChanged notifications of the item library.
class ScsTask
{
public:
    explicit ScsTask(QString const& name);

    /// A request for no objects is allowed.
    void RequestObjectStates(std::list<qorm::QormHandle<qorm::IDbObject> > const& objects);
    /// Instead of delete: the task frees itself when it is safe to, and delivers nothing more.
    void DeleteMe();

private:
    class Private;

    ScsTask(ScsTask const&);
    ScsTask& operator=(ScsTask const&);
    ~ScsTask();

    Private* m_Private;
};

namespace ScsUtils {

/// True when the files of the library are under version control at all.
bool IsFileVersionControlActive();

/// The base pixmap with the overlay of the state bits. `active` tells whether states are shown;
/// `plain` is true for a plain icon and false for a factory composite, which already carries a
/// 7-pixel strip at its left. Sizes are device-independent pixels.
QPixmap getAssetStateIcon(QPixmap& base, unsigned int state, bool active, bool plain);

/// Tool-tip text for the object; `icon` is the resource name of an icon it may show.
QString GetToolTip(qorm::QormHandle<qorm::IDbObject> object, QString const& icon);

} // namespace ScsUtils

class IRevisionControlPropertiesMgr;

/// A listener for changes of the revision-control properties.
class IRevisionControlPropertiesMgr_Slot
{
public:
    /// `manager` is null when the manager goes away.
    virtual void OnRevisionControlPropertiesChange(IRevisionControlPropertiesMgr* manager) = 0;

protected:
    IRevisionControlPropertiesMgr_Slot();
    ~IRevisionControlPropertiesMgr_Slot();

    /// The slot's live connections.
    KvTrackedSlotList m_TrackedSlots;
};

/// The service "RevisionControlPropertiesMgr": whether the user wants to see source control.
class IRevisionControlPropertiesMgr : public wek::IBase
{
public:
    /// Connects the slot through an entry of its own list. Calls follow at each change until
    /// either end goes away.
    virtual void Connect(IRevisionControlPropertiesMgr_Slot* slot, KvTrackedSlot* entry) = 0;

    /// Whether the property below has a value at all.
    virtual bool HasRevisionControlEnabled() = 0;
    /// Writes whether revision control is switched on.
    virtual void GetRevisionControlEnabled(bool* enabled) = 0;
};

#endif
