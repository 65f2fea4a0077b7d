#ifndef EMBEDDEDHOST_LIBRARYNOTIFIER_H
#define EMBEDDEDHOST_LIBRARYNOTIFIER_H

#include <datamodel.h>
#include <hostkit/listenerlist.h>

#include <functional>
#include <string>

namespace embeddedhost {

/// Notifies the listeners of a library and of its table of contents. A listener may do anything,
/// even close the library. Its exceptions are reported on the message channel; the other listeners
/// are notified nevertheless, and the change stays.
class CLibraryNotifier
{
public:
    explicit CLibraryNotifier(tarno::datamodel::AccessorContext& context);

    hostkit::ListenerList<tarno::datamodel::IItemTOCNotification>& GetTocListeners();
    hostkit::ListenerList<tarno::datamodel::IItemLibraryNotification>& GetLibraryListeners();

    void ItemAdded(tarno::datamodel::ItemID id);
    void ItemRemoved(tarno::datamodel::ItemID id);

    void BeginChanges();
    void EndChanges();
    void Invalidated();
    void NameChanged(tarno::datamodel::ItemID id);
    void TagsChanged(tarno::datamodel::ItemID id, std::string const& category);
    void AccessStateChanged(tarno::datamodel::ItemID id, long state);
    /// False when a listener cancels the commit; every listener is asked.
    bool PreCommit();
    void PostCommit();

private:
    void Guard(std::function<void()> const& call) const;

    template <class Call>
    void TellToc(tarno::datamodel::ItemID id, Call const& call);
    template <class Call>
    void TellLibrary(Call const& call);

    tarno::datamodel::AccessorContext& m_Context;
    hostkit::ListenerList<tarno::datamodel::IItemTOCNotification> m_TocListeners;
    hostkit::ListenerList<tarno::datamodel::IItemLibraryNotification> m_LibraryListeners;
};

} // namespace embeddedhost

#endif
