#ifndef NODEBROWSER_HOSTAPI_FRAMEWORK_H
#define NODEBROWSER_HOSTAPI_FRAMEWORK_H

/// @file
/// The contract's application framework: the system object with its named services, commands, and
/// slots whose connections are tracked.
///
/// These are declarations only; the host's library defines them. Everything runs on the GUI thread.
/// Only commands may run an event loop. Texts are 8-bit, in the encoding described in datamodel.h.
/// Pointers are not null and own nothing unless a declaration says so.

#include <string>
#include <vector>

#ifdef __GNUC__
// In a shared library of the host everything declared here is visible, whatever it hides else.
#pragma GCC visibility push(default)
#endif

namespace tarno {
namespace datamodel {
class ItemLibraryAccessor;
}
} // namespace tarno

/// The host's system object and what it hands out.
namespace wek {

/// Root of everything the system object can hand out. The panel narrows it with dynamic_cast, so
/// services derive from it publicly and are compiled with type information.
class IBase
{
public:
    virtual ~IBase();
};

/// The application framework. The rules that hold for all of it stand in framework.h.
namespace fwk {

/// The system object: services by name. It does not own the services.
class ISystem
{
public:
    virtual ~ISystem();

    /// The service registered under the name, or null. A missing service is never an error, and
    /// one of an unexpected type counts as missing. The panel looks services up at each use and
    /// caches none. Names it looks up: "RevisionControlUIHelper" (qorm.h),
    /// "RevisionControlPropertiesMgr" (sourcecontrol.h), "QormDBProxy".
    virtual IBase* GetService(char const* name) = 0;
};

/// One change of the library, reference-counted intrusively. The host's modifiers pass it to the
/// command manager; the panel never sees one.
class ICommand
{
public:
    /// Takes a reference.
    virtual void AddRef() = 0;
    /// Gives one back; the command is destroyed with the last.
    virtual void Release() = 0;

    /// Makes the change; called once when the command is run and again at each redo.
    virtual void Do() = 0;
    /// Reverts the change. Do() and Undo() send the same notifications as any other change.
    virtual void Undo() = 0;
    /// The change's name in an undo menu; valid as long as the command.
    virtual char const* GetText() const = 0;

protected:
    virtual ~ICommand();
};

/// Owning, reference-counted pointer. The host's library instantiates it for ICommand.
template <class T>
class RefCountedAutoPtr
{
public:
    /// Empty.
    RefCountedAutoPtr();
    /// Adds a reference; the caller keeps its own. Null makes an empty one.
    explicit RefCountedAutoPtr(T* object);
    /// @{

    /// Shares the object of the other one, if it has one.
    RefCountedAutoPtr(RefCountedAutoPtr const& other);
    RefCountedAutoPtr& operator=(RefCountedAutoPtr const& other);
    /// @}

    /// Gives the reference back.
    ~RefCountedAutoPtr();

    /// @{

    /// The object, valid as long as the pointer; null when empty, which is not tested.
    T* Get() const;
    T* operator->() const;
    /// @}

private:
    T* m_Object;
};

/// Runs commands and records them for undo. The panel passes the manager from SetCommandManager on
/// to the data model's modifiers and never calls it; with a null manager, changes are not recorded.
/// It is not owned and has to outlive the panel.
class ICommandManager
{
public:
    virtual ~ICommandManager();

    /// Runs the command and records it; keeps a reference as long as it can be undone.
    virtual void Execute(RefCountedAutoPtr<ICommand> const& command) = 0;
};

/// Listener for changes of the database proxy.
class IQormDBProxy_Signal
{
public:
    /// The proxy shows another item library from now on.
    virtual void OnItemLibraryChange() = 0;

protected:
    ~IQormDBProxy_Signal();
};

/// The service "QormDBProxy": the application's current item library.
class IQormDBProxy : public IBase
{
public:
    /// The current item library; an invalid accessor when none is open. Asked when a type selector
    /// is made, which stays empty without one.
    virtual tarno::datamodel::ItemLibraryAccessor GetItemLibrary() = 0;

    /// For the host's own use: the panel gets its library with SetItemLibrary. Listeners are not
    /// owned and must be removed before they die.
    virtual void AddListener(IQormDBProxy_Signal* listener) = 0;
    /// Does nothing for one that was not added.
    virtual void RemoveListener(IQormDBProxy_Signal* listener) = 0;
};

} // namespace fwk
} // namespace wek

/// The system object of the process, which the host owns; never null, from the first panel to the
/// last.
wek::fwk::ISystem* wekGetSystem();

class KvTrackedSlot;

/// The sending end of a tracked connection.
class IKvTrackedSignal
{
public:
    /// Drops the connection: its entry is being destroyed. Must not call back into the entry.
    virtual void Disconnect(KvTrackedSlot* entry) = 0;

protected:
    ~IKvTrackedSignal();
};

/// One connection of a slot. The panel makes the entry and hands it to the sender, which connects
/// it. Either end may be destroyed first: the destructor calls the sender's Disconnect(), and a
/// sender that is destroyed calls Reset() on its remaining entries.
class KvTrackedSlot
{
public:
    /// Not connected.
    KvTrackedSlot();
    /// Tells the sender, if there is one, that the connection is gone.
    ~KvTrackedSlot();

    /// Called by the sender when it accepts the connection; it is not owned, and not null. An entry
    /// that is connected to another sender leaves that one.
    void Connect(IKvTrackedSignal* signal);
    /// Called by the sender when it is destroyed first; it is not called any more.
    void Reset();
    /// There is a sender.
    bool IsConnected() const;

private:
    KvTrackedSlot(KvTrackedSlot const&);
    KvTrackedSlot& operator=(KvTrackedSlot const&);

    IKvTrackedSignal* m_Signal;
};

/// The live connections of one slot; destroying the list disconnects and frees each of them.
class KvTrackedSlotList
{
public:
    KvTrackedSlotList();
    ~KvTrackedSlotList();

    /// A new, unconnected entry, owned by the list and valid as long as it.
    KvTrackedSlot* Add();

private:
    KvTrackedSlotList(KvTrackedSlotList const&);
    KvTrackedSlotList& operator=(KvTrackedSlotList const&);

    std::vector<KvTrackedSlot*> m_Entries;
};

#ifdef __GNUC__
#pragma GCC visibility pop
#endif

#endif
