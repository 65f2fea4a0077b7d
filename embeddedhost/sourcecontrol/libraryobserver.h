#ifndef EMBEDDEDHOST_LIBRARYOBSERVER_H
#define EMBEDDEDHOST_LIBRARYOBSERVER_H

#include <datamodel.h>

#include <QObject>

namespace embeddedhost {

class CLibraryNotifier;

/// Tells source control about the changes of a library.
class CLibraryObserver : public QObject,
                         private tarno::datamodel::IItemTOCNotification,
                         private tarno::datamodel::IItemLibraryNotification
{
    Q_OBJECT

public:
    CLibraryObserver() = default;

    void Attach(CLibraryNotifier& notifier);
    void Detach(CLibraryNotifier& notifier);

Q_SIGNALS:
    /// An item has come, gone, or got another name.
    void StructureChanged();
    void ItemAppeared(tarno::datamodel::ItemID const& id);
    /// A change is complete.
    void Changed();
    /// Files may have changed.
    void FilesChanged();

private:
    typedef tarno::datamodel::ItemAccessor ItemAccessor;
    typedef tarno::datamodel::ItemID ItemID;
    typedef tarno::datamodel::ItemLibraryAccessor ItemLibraryAccessor;

    void ItemAdded(ItemAccessor& item) override;
    void ItemRemoved(ItemAccessor& item) override;
    void OnBeginChanges(ItemLibraryAccessor& library) override;
    void OnEndChanges(ItemLibraryAccessor& library) override;
    void LibraryInvalidated(ItemLibraryAccessor& library) override;
    void ItemNameChanged(ItemLibraryAccessor& library, ItemID const& id) override;
    void ItemTagsChanged(ItemLibraryAccessor& library, ItemID const& id,
                         char const* category) override;
    void ItemAccessStateChanged(ItemLibraryAccessor& library, ItemID const& id,
                                long state) override;
    void OnPreCommit(ItemLibraryAccessor& library, bool* cancel) override;
    void OnPostCommit(ItemLibraryAccessor& library) override;
};

} // namespace embeddedhost

#endif
