#include "sourcecontrol/libraryobserver.h"

#include "model/librarynotifier.h"

namespace embeddedhost {

void CLibraryObserver::Attach(CLibraryNotifier& notifier)
{
    notifier.GetTocListeners().Add(this);
    notifier.GetLibraryListeners().Add(this);
}

void CLibraryObserver::Detach(CLibraryNotifier& notifier)
{
    notifier.GetTocListeners().Remove(this);
    notifier.GetLibraryListeners().Remove(this);
}

void CLibraryObserver::ItemAdded(ItemAccessor& item)
{
    Q_EMIT ItemAppeared(item.GetItemID());
    Q_EMIT StructureChanged();
}

void CLibraryObserver::ItemRemoved(ItemAccessor& /*item*/)
{
    Q_EMIT StructureChanged();
}

void CLibraryObserver::ItemNameChanged(ItemLibraryAccessor& /*library*/, ItemID const& /*id*/)
{
    Q_EMIT StructureChanged();
}

void CLibraryObserver::LibraryInvalidated(ItemLibraryAccessor& /*library*/)
{
    Q_EMIT StructureChanged();
    Q_EMIT FilesChanged();
}

void CLibraryObserver::OnPostCommit(ItemLibraryAccessor& /*library*/)
{
    Q_EMIT FilesChanged();
}

void CLibraryObserver::OnBeginChanges(ItemLibraryAccessor& /*library*/) {}

void CLibraryObserver::OnEndChanges(ItemLibraryAccessor& /*library*/)
{
    Q_EMIT Changed();
}

void CLibraryObserver::ItemTagsChanged(ItemLibraryAccessor& /*library*/, ItemID const& /*id*/,
                                       char const* /*category*/)
{}

void CLibraryObserver::ItemAccessStateChanged(ItemLibraryAccessor& /*library*/,
                                              ItemID const& /*id*/, long /*state*/)
{}

void CLibraryObserver::OnPreCommit(ItemLibraryAccessor& /*library*/, bool* /*cancel*/) {}

} // namespace embeddedhost

#include "moc_libraryobserver.cpp"
