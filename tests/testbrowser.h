#ifndef NODEBROWSER_TESTS_TESTBROWSER_H
#define NODEBROWSER_TESTS_TESTBROWSER_H

#include "nodebrowser.h"

#include <QtWidgets>

#include <algorithm>
#include <utility>

/// The panel with its inside open to tests.
class TestBrowser : public CNodeBrowser
{
public:
    explicit TestBrowser(eConfigType config = eConfigNodes)
        : CNodeBrowser(config)
    {
        resize(300, 400);
    }

    using CNodeBrowser::BuildAllItemList, CNodeBrowser::CompareToFilter,
        CNodeBrowser::GetItemIndexAt, CNodeBrowser::PopContexMenu, CNodeBrowser::SearchTextChange,
        CNodeBrowser::TabChanged, CNodeBrowser::UpdateVisibleItems;
    using CNodeBrowser::m_ContentHeight, CNodeBrowser::m_HeaderHeight, CNodeBrowser::m_ItemLibrary,
        CNodeBrowser::m_Items, CNodeBrowser::m_ItemTOC, CNodeBrowser::m_ScrollOffset,
        CNodeBrowser::m_ScStatesStale, CNodeBrowser::m_SelectedIndex,
        CNodeBrowser::m_SourceControlEnabled, CNodeBrowser::m_TagsRegistry,
        CNodeBrowser::m_VisibleItems;
    using CNodeBrowser::OnCheckOutItem, CNodeBrowser::OnDatasourceChange,
        CNodeBrowser::OnDeleteItem, CNodeBrowser::OnEditItemTags, CNodeBrowser::OnMakeItemWritable,
        CNodeBrowser::OnRenameItem, CNodeBrowser::OnShowItemFiles;

    /// What the panel looks like; a paint with all that it brings about.
    QImage Paint()
    {
        return grab().toImage();
    }

    QString GetName(Item const& item) const
    {
        return QString::fromLatin1(
            m_ItemLibrary.GetItemName(item.GetItemID(), true, nullptr).c_str());
    }

    /// Names of the item list, in its order.
    QString GetNames() const
    {
        QStringList names;
        for (Item const& item : m_Items)
            names << GetName(item);
        return names.join(' ');
    }

    /// Names of the rows as they are, without a paint.
    QString GetStaleRows() const
    {
        QStringList names;
        for (unsigned long position : m_VisibleItems)
            names << GetName(m_Items.at(position));
        return names.join(' ');
    }

    /// Names of the rows after a paint.
    QString GetRows()
    {
        Paint();
        return GetStaleRows();
    }

    /// The items that match, best first, with what the single question about each says; the rows
    /// must be these.
    QString GetRanks()
    {
        std::vector<std::pair<unsigned long, unsigned long>> matches;
        for (unsigned long position = 0; position < m_Items.size(); ++position) {
            unsigned long score = 10000;
            if (CompareToFilter(m_Items[position].m_Accessor, &score))
                matches.emplace_back(score, position);
        }
        std::sort(matches.begin(), matches.end());
        QStringList ranks;
        std::vector<unsigned long> rows;
        for (auto const& match : matches) {
            ranks << QString("%1:%2").arg(GetName(m_Items[match.second])).arg(match.first);
            rows.push_back(match.second);
        }
        return rows == m_VisibleItems ? ranks.join(' ') : "rows are not " + ranks.join(' ');
    }

    /// A point in the middle of a row.
    QPoint GetRowCenter(int row) const
    {
        return QPoint(width() / 2, m_HeaderHeight - m_ScrollOffset + row * 24 + 12);
    }

    /// How often its rows were painted since the last call, with what is due now.
    int TakePaintCount()
    {
        QEvent event(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(this, &event);
        return std::exchange(m_PaintCount, 0);
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        // A child that is painted has the panel paint what is under it.
        m_PaintCount += event->rect().contains(rect().center());
        CNodeBrowser::paintEvent(event);
    }

private:
    int m_PaintCount = 0;
};

#endif
