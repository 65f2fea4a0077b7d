#include "panelsubject.h"

#include <embeddedhost/embeddedhost.h>

#include <QLayout>
#include <QScrollBar>
#include <QTabBar>
#include <QUndoStack>

#include <stdexcept>

using namespace tarno::datamodel;

namespace {

void Expect(bool isDone, char const* what)
{
    if (!isDone)
        throw std::runtime_error(what);
}

CompoundModifierAccessor Modify(ItemLibraryAccessor const& library, ListedItem const& item)
{
    CompoundModifierAccessor modifier;
    modifier.SetFrom(library.GetModel(item.id, nullptr));
    return modifier;
}

} // namespace

PanelSubject::PanelSubject(CEmbeddedHost& host, std::vector<ListedItem> const& items)
    : m_Host(host)
    , m_Library(host.GetLibrary())
    , m_Items(items)
    , m_NextItem(0)
    , m_RenamedItem(items.begin())
    , m_IsRenamed(false)
    , m_Browser(CNodeBrowser::eConfigNodes)
{
    layout()->addWidget(&m_Browser);
    // As the view of the peer does by itself.
    m_Browser.setAutoFillBackground(true);
    m_Browser.findChild<QTabBar*>()->setCurrentIndex(CNodeBrowser::eConfigAll);
    m_Browser.SetItemLibrary(m_Library);
}

QWidget& PanelSubject::GetCanvas()
{
    return m_Browser;
}

QScrollBar& PanelSubject::GetScrollBar()
{
    return *m_Browser.findChild<QScrollBar*>();
}

void PanelSubject::StartRebuild()
{
    m_Browser.LibraryInvalidated(m_Library);
}

/// The host notifies the panel, here and below.
void PanelSubject::StartRename()
{
    // The first compound that can be changed.
    while (m_RenamedItem != m_Items.end()
           && !Modify(m_Library, *m_RenamedItem).CanModifyCompound(true))
        ++m_RenamedItem;
    Expect(m_RenamedItem != m_Items.end(), "no item can be renamed");
    m_IsRenamed = !m_IsRenamed;
    std::string const name = (m_IsRenamed ? kMovedPrefix : "") + m_RenamedItem->name;
    CompoundModifierAccessor compound = Modify(m_Library, *m_RenamedItem);
    Expect(compound.RenameCompound(name.c_str(), nullptr), "the item cannot be renamed");
}

void PanelSubject::StartAdd()
{
    CompoundModifierAccessor compound;
    compound.CreateAndSetFromNewCompound(m_Library, kAddedName, false, "", "",
                                         &m_Host.GetCommandManager());
    Expect(compound.IsValid(), "no item can be added");
}

void PanelSubject::StartRemove()
{
    m_Host.GetCommandManager().GetUndoStack().undo();
}

void PanelSubject::NotifyTags()
{
    m_NextItem = (m_NextItem + 1) % m_Items.size();
    m_Browser.ItemTagsChanged(m_Library, m_Items[m_NextItem].id, "ApplicationTags");
}
