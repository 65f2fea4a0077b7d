#ifndef NODEBROWSER_ITEMCOMMAND_H
#define NODEBROWSER_ITEMCOMMAND_H

#include "nodebrowser.h"

#include <QPointer>

/// One run of a command on an item: on the one that the context menu names when the command was
/// chosen there, otherwise on that of the selected row. Dialogs and the host run event loops in
/// which the list, the library or the panel may go, so commands work on the copies kept here.
class CNodeBrowser::ItemCommand
{
public:
    explicit ItemCommand(CNodeBrowser* browser);
    ~ItemCommand();

    /// False when no row is selected, and when what the menu names is gone.
    bool HasItem() const;
    /// The item is alive, and the panel is and still shows the item's library. Nothing may be
    /// asked of the host between this and what it is to protect.
    bool IsStillDue() const;

    QPointer<CNodeBrowser> const m_Browser;
    tarno::datamodel::ItemLibraryAccessor const m_ItemLibrary;
    tarno::datamodel::ItemAccessor const m_Item;
    tarno::datamodel::ItemID const m_ItemID;

private:
    ItemCommand(CNodeBrowser* browser, ContextMenu* menu);
    ItemCommand(ItemCommand const&);
    ItemCommand& operator=(ItemCommand const&);

    /// Null for a command that was not chosen from the context menu.
    ContextMenu* const m_Menu;
};

#endif
