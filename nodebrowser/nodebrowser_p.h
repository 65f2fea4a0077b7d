#ifndef NODEBROWSER_NODEBROWSER_P_H
#define NODEBROWSER_NODEBROWSER_P_H

// Not installed: what the panel keeps beside the fields that its subclasses know.

#include "itemicons.h"
#include "itemlist.h"
#include "nodebrowser.h"

struct CNodeBrowser::Private
{
    explicit Private(ItemTagsRegistry& registry)
        : list(registry)
        , builtWith(nullptr)
        , isFresh(false)
        , isDragging(false)
        , isListInUse(false)
    {}

    bool IsRebuilding() const
    {
        return !items.empty();
    }

    nodebrowser::ItemList list;
    /// The items while the list is made anew: the rows of the last time, then those that are new.
    /// Out of the way of whoever is called meanwhile; empty at other times.
    std::vector<Item> items;
    nodebrowser::ItemIcons icons;
    /// The source-control service that the item list was made with; only compared.
    qorm::IRevisionControlUIHelper const* builtWith;
    /// SetItemLibrary made the list, and no notification has come since: the first paint need
    /// not make it again.
    bool isFresh;
    /// The event loop of a drag is running.
    bool isDragging;
    /// The host is being asked about the items of the list, which is not rebuilt meanwhile.
    bool isListInUse;
};

#endif
