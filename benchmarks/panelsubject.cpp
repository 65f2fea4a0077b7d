#include "panelsubject.h"

#include <QLayout>
#include <QScrollBar>
#include <QTabBar>

using namespace tarno::datamodel;

PanelSubject::PanelSubject(ItemLibraryAccessor const& library, std::vector<ListedItem> const& items)
    : m_Library(library)
    , m_Items(items)
    , m_NextItem(0)
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

void PanelSubject::NotifyTags()
{
    m_NextItem = (m_NextItem + 1) % m_Items.size();
    m_Browser.ItemTagsChanged(m_Library, m_Items[m_NextItem].id, "ApplicationTags");
}
