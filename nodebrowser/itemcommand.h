#ifndef NODEBROWSER_ITEMCOMMAND_H
#define NODEBROWSER_ITEMCOMMAND_H

#include "contextmenu.h"

#include <QPointer>

/// One run of a command on an item: on the one that the context menu names when the command was
/// chosen there, otherwise on that of the selected row. Dialogs and the host run event loops in
/// which the list, the library or the panel may go, so commands work on the copies kept here.
class CNodeBrowser::ItemCommand
{
public:
    explicit ItemCommand(CNodeBrowser* browser);

    /// False when no row is selected, and when what the menu names is gone.
    bool HasItem() const;
    /// The item is alive, and the panel is and still shows the item's library. Nothing may be
    /// asked of the host between this and what it is to protect.
    bool IsStillDue() const;

    QPointer<CNodeBrowser> const m_Browser;
    tarno::datamodel::ItemLibraryAccessor const m_ItemLibrary;

private:
    // Before the item, of which the host is asked.
    MenuCommand const m_MenuCommand;

public:
    tarno::datamodel::ItemAccessor const m_Item;
    tarno::datamodel::ItemID const m_ItemID;
};

#endif
