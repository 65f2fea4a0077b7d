#include "peersubject.h"

#include <QLayout>
#include <QScrollBar>

PeerSubject::PeerSubject(std::vector<ListedItem> const& items)
    : m_Items(items)
    , m_NextItem(0)
    , m_IsRenamed(false)
    , m_Filter(m_Model)
{
    layout()->addWidget(&m_SearchField);
    layout()->addWidget(&m_View);
    m_View.setUniformItemSizes(true);
    m_View.setIconSize(QSize(20, 20));
    m_View.setEditTriggers(QListView::NoEditTriggers);
    m_View.setFrameShape(QFrame::NoFrame);
    m_View.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_View.setModel(&m_Filter);
    connect(&m_SearchField, &QLineEdit::textChanged, &m_Filter, &PeerFilter::SetText);
    m_Model.Populate(m_Items);
}

QWidget& PeerSubject::GetCanvas()
{
    return *m_View.viewport();
}

QScrollBar& PeerSubject::GetScrollBar()
{
    return *m_View.verticalScrollBar();
}

void PeerSubject::StartRebuild()
{
    m_Model.Populate(m_Items);
}

void PeerSubject::StartRename()
{
    ListedItem item = m_Items.back();
    std::string otherName = kMovedPrefix + item.name;
    if (m_IsRenamed)
        item.name.swap(otherName);
    m_Model.Remove(item.name);
    item.name = otherName;
    m_Model.Insert(item);
    m_IsRenamed = !m_IsRenamed;
}

void PeerSubject::StartAdd()
{
    ListedItem item = m_Items.front();
    item.name = kAddedName;
    m_Model.Insert(item);
}

void PeerSubject::StartRemove()
{
    m_Model.Remove(kAddedName);
}

void PeerSubject::NotifyTags()
{
    // The last item is the one that is renamed.
    m_NextItem = (m_NextItem + 1) % (m_Items.size() - 1);
    m_Model.SetTags(m_Items[m_NextItem].name, m_Items[m_NextItem].tags);
}
