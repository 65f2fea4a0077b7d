#include "peersubject.h"

#include <QLayout>
#include <QScrollBar>

PeerSubject::PeerSubject(std::vector<ListedItem> const& items)
    : m_Items(items)
    , m_NextItem(0)
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

void PeerSubject::NotifyTags()
{
    m_NextItem = (m_NextItem + 1) % m_Items.size();
    m_Model.SetTags(m_NextItem, m_Items[m_NextItem].tags);
}
