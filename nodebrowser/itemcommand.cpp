#include "itemcommand.h"

#include "contextmenu.h"

using namespace tarno::datamodel;

CNodeBrowser::ItemCommand::ItemCommand(CNodeBrowser* browser)
    : ItemCommand(browser, browser->ChosenMenu())
{}

CNodeBrowser::ItemCommand::ItemCommand(CNodeBrowser* browser, ContextMenu* menu)
    : m_Browser(browser)
    , m_ItemLibrary(browser->m_ItemLibrary)
    , m_Item(menu ? browser->FindMenuItem(*menu) : browser->AccessorAtRow(browser->m_SelectedIndex))
    , m_ItemID(AskItemID(m_Item))
    , m_Menu(menu)
{
    // Commands that the host calls meanwhile are not those of the menu.
    if (m_Menu)
        m_Menu->m_IsCommandRunning = true;
}

CNodeBrowser::ItemCommand::~ItemCommand()
{
    if (m_Menu)
        m_Menu->m_IsCommandRunning = false;
}

bool CNodeBrowser::ItemCommand::HasItem() const
{
    return m_Item.IsValid();
}

bool CNodeBrowser::ItemCommand::IsStillDue() const
{
    // The host is asked first: it may delete the panel even then.
    return m_Item.Revalidate() && m_ItemLibrary.Revalidate() && m_Browser
           && m_Browser->IsShown(m_ItemLibrary);
}
