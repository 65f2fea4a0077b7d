#include "model/librarynotifier.h"

#include "framework/guardedcall.h"
#include "model/accessorcontext.h"
#include "model/library.h"

// The accessor kept during a delivery keeps the context alive, and with it the lists. Each listener
// gets its own copy, because the parameters are not const.

namespace embeddedhost {

using namespace tarno::datamodel;

CLibraryNotifier::CLibraryNotifier(AccessorContext& context)
    : m_Context(context)
{}

hostkit::ListenerList<IItemTOCNotification>& CLibraryNotifier::GetTocListeners()
{
    return m_TocListeners;
}

hostkit::ListenerList<IItemLibraryNotification>& CLibraryNotifier::GetLibraryListeners()
{
    return m_LibraryListeners;
}

void CLibraryNotifier::ItemAdded(ItemID id)
{
    TellToc(id,
            [](IItemTOCNotification& listener, ItemAccessor& item) { listener.ItemAdded(item); });
}

void CLibraryNotifier::ItemRemoved(ItemID id)
{
    TellToc(id,
            [](IItemTOCNotification& listener, ItemAccessor& item) { listener.ItemRemoved(item); });
}

void CLibraryNotifier::BeginChanges()
{
    TellLibrary([](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.OnBeginChanges(library);
    });
}

void CLibraryNotifier::EndChanges()
{
    TellLibrary([](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.OnEndChanges(library);
    });
}

void CLibraryNotifier::Invalidated()
{
    TellLibrary([](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.LibraryInvalidated(library);
    });
}

void CLibraryNotifier::NameChanged(ItemID id)
{
    TellLibrary([id](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.ItemNameChanged(library, id);
    });
}

void CLibraryNotifier::TagsChanged(ItemID id, std::string const& category)
{
    TellLibrary([id, category](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.ItemTagsChanged(library, id, category.c_str());
    });
}

void CLibraryNotifier::AccessStateChanged(ItemID id, long state)
{
    TellLibrary([id, state](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.ItemAccessStateChanged(library, id, state);
    });
}

bool CLibraryNotifier::PreCommit()
{
    bool isCancelled = false;
    TellLibrary([&](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        // One flag for each listener, so that none can take back what another has refused.
        bool cancel = false;
        listener.OnPreCommit(library, &cancel);
        isCancelled = isCancelled || cancel;
    });
    return !isCancelled;
}

void CLibraryNotifier::PostCommit()
{
    TellLibrary([](IItemLibraryNotification& listener, ItemLibraryAccessor& library) {
        listener.OnPostCommit(library);
    });
}

void CLibraryNotifier::Guard(std::function<void()> const& call) const
{
    CLibrary const* const library = m_Context.GetLibrary();
    RunGuarded(library ? &library->GetMessages() : nullptr,
               QStringLiteral("A part of the program could not follow a change of the library"),
               call);
}

template <class Call>
void CLibraryNotifier::TellToc(ItemID id, Call const& call)
{
    ItemAccessor const kept(&m_Context, GetItemHandle(*ItemIDUnlock::GetIdentity(id)));
    m_TocListeners.ForEach([&](IItemTOCNotification& listener) {
        Guard([&] {
            ItemAccessor item(kept);
            call(listener, item);
        });
    });
}

template <class Call>
void CLibraryNotifier::TellLibrary(Call const& call)
{
    ItemLibraryAccessor const kept(&m_Context, kLibraryHandle);
    m_LibraryListeners.ForEach([&](IItemLibraryNotification& listener) {
        Guard([&] {
            ItemLibraryAccessor library(kept);
            call(listener, library);
        });
    });
}

} // namespace embeddedhost
