#ifndef FUZZ_STATELISTENER_H
#define FUZZ_STATELISTENER_H

#include "librarystate.h"

/// Follows the items of the open library by its notifications, as a panel does. Has to be
/// destroyed before the library is closed.
class StateListener final : public tarno::datamodel::IItemTOCNotification,
                            public tarno::datamodel::IItemLibraryNotification
{
public:
    explicit StateListener(CEmbeddedHost& host);
    ~StateListener();

    /// Requires that notifications told everything a panel shows, which excludes bodies.
    void RequireEverythingTold() const;

    void ItemAdded(tarno::datamodel::ItemAccessor& item) override;
    void ItemRemoved(tarno::datamodel::ItemAccessor& item) override;
    void OnBeginChanges(tarno::datamodel::ItemLibraryAccessor& library) override;
    void OnEndChanges(tarno::datamodel::ItemLibraryAccessor& library) override;
    void LibraryInvalidated(tarno::datamodel::ItemLibraryAccessor& library) override;
    void ItemNameChanged(tarno::datamodel::ItemLibraryAccessor& library,
                         tarno::datamodel::ItemID const& id) override;
    void ItemTagsChanged(tarno::datamodel::ItemLibraryAccessor& library,
                         tarno::datamodel::ItemID const& id, char const* category) override;
    void ItemAccessStateChanged(tarno::datamodel::ItemLibraryAccessor& library,
                                tarno::datamodel::ItemID const& id, long state) override;
    void OnPreCommit(tarno::datamodel::ItemLibraryAccessor& library, bool* cancel) override;
    void OnPostCommit(tarno::datamodel::ItemLibraryAccessor& library) override;

private:
    LibraryState GetShownState() const;
    void TakeMembers();
    void TakeAnswer(tarno::datamodel::ItemID const& id, char const* question);

    CEmbeddedHost& m_Host;
    tarno::datamodel::ItemLibraryAccessor const m_Library;
    tarno::datamodel::ItemTOCAccessor const m_Toc;
    LibraryState m_Told;
    /// How many changes are going on within each other.
    int m_Changes = 0;
};

#endif
