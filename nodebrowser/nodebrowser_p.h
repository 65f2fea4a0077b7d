#ifndef NODEBROWSER_NODEBROWSER_P_H
#define NODEBROWSER_NODEBROWSER_P_H

// Not installed: the parts of the panel that its subclasses do not know.

#include "itemicons.h"
#include "itemlist.h"
#include "nodebrowser.h"

#include <QMenu>

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
    /// The items during a rebuild: first those of the previous list, then the new ones. Kept here
    /// so that code that is called meanwhile does not see them; empty at other times.
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

/// The context menu of one item. It keeps the item that its entries name, because the row may
/// show another one by the time that an entry is chosen.
class CNodeBrowser::ContextMenu : public QMenu
{
public:
    ContextMenu(tarno::datamodel::ItemLibraryAccessor const& library,
                tarno::datamodel::ItemID const& id)
        : m_ItemLibrary(library)
        , m_ItemID(id)
        , m_IsCommandRunning(false)
    {}

    /// The menu that the object is an entry of, at any depth; null when there is none.
    static ContextMenu* FindAbove(QObject* object)
    {
        while (object && !dynamic_cast<ContextMenu*>(object))
            object = object->parent();
        return static_cast<ContextMenu*>(object);
    }

    tarno::datamodel::ItemLibraryAccessor const m_ItemLibrary;
    tarno::datamodel::ItemID const m_ItemID;
    /// An entry was chosen, and its command has not returned yet.
    bool m_IsCommandRunning;
};

/// The time in which a command of the menu runs, if it was chosen there: commands that the host
/// calls meanwhile are not those of the menu.
class CNodeBrowser::MenuCommand
{
public:
    /// Null for a command that was not chosen from the context menu. Outlives the command.
    explicit MenuCommand(ContextMenu* menu)
        : m_Menu(menu)
    {
        if (m_Menu)
            m_Menu->m_IsCommandRunning = true;
    }

    ~MenuCommand()
    {
        if (m_Menu)
            m_Menu->m_IsCommandRunning = false;
    }

    ContextMenu* const m_Menu;

private:
    MenuCommand(MenuCommand const&);
    MenuCommand& operator=(MenuCommand const&);
};

#endif
