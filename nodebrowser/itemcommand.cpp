#include "itemcommand.h"

using namespace tarno::datamodel;

CNodeBrowser::ItemCommand::ItemCommand(CNodeBrowser* browser)
    : m_Browser(browser)
    , m_ItemLibrary(browser->m_ItemLibrary)
    , m_MenuCommand(browser->ChosenMenu())
    , m_Item(m_MenuCommand.m_Menu ? browser->FindMenuItem(*m_MenuCommand.m_Menu)
                                  : browser->AccessorAtRow(browser->m_SelectedIndex))
    , m_ItemID(AskItemID(m_Item))
{}

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
