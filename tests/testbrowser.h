#ifndef NODEBROWSER_TESTS_TESTBROWSER_H
#define NODEBROWSER_TESTS_TESTBROWSER_H

#include "nodebrowser.h"

#include <QImage>
#include <QStringList>

/// The panel with its inside open to tests.
class TestBrowser : public CNodeBrowser
{
public:
    explicit TestBrowser(eConfigType config = eConfigNodes)
        : CNodeBrowser(config)
    {
        resize(300, 400);
    }

    using CNodeBrowser::BuildAllItemList;
    using CNodeBrowser::ClearButton;
    using CNodeBrowser::CompareToFilter;
    using CNodeBrowser::EnterPressed;
    using CNodeBrowser::GetItemIndexAt;
    using CNodeBrowser::OnCheckOutItem;
    using CNodeBrowser::OnDatasourceChange;
    using CNodeBrowser::OnDeleteItem;
    using CNodeBrowser::OnEditItemTags;
    using CNodeBrowser::OnMakeItemWritable;
    using CNodeBrowser::OnNewCompound;
    using CNodeBrowser::OnNewLoopCompound;
    using CNodeBrowser::OnNewSignature;
    using CNodeBrowser::OnRenameItem;
    using CNodeBrowser::OnSaveGraphLibrary;
    using CNodeBrowser::OnShowItemFiles;
    using CNodeBrowser::paintEvent;
    using CNodeBrowser::PopContexMenu;
    using CNodeBrowser::SearchTextChange;
    using CNodeBrowser::TabChanged;
    using CNodeBrowser::UpdateScrollbar;
    using CNodeBrowser::UpdateVisibleItems;

    using CNodeBrowser::m_BrowserConfig;
    using CNodeBrowser::m_ClearButton;
    using CNodeBrowser::m_CommandManager;
    using CNodeBrowser::m_ConfigType;
    using CNodeBrowser::m_ContentHeight;
    using CNodeBrowser::m_HeaderHeight;
    using CNodeBrowser::m_ItemLibrary;
    using CNodeBrowser::m_ItemListDirty;
    using CNodeBrowser::m_Items;
    using CNodeBrowser::m_ItemTOC;
    using CNodeBrowser::m_PressPos;
    using CNodeBrowser::m_ScrollBar;
    using CNodeBrowser::m_ScrollOffset;
    using CNodeBrowser::m_ScStatesStale;
    using CNodeBrowser::m_SearchEdit;
    using CNodeBrowser::m_SearchText;
    using CNodeBrowser::m_SearchTextLower;
    using CNodeBrowser::m_SelectedIndex;
    using CNodeBrowser::m_SourceControlEnabled;
    using CNodeBrowser::m_TabBar;
    using CNodeBrowser::m_TagsRegistry;
    using CNodeBrowser::m_VisibleItems;
    using CNodeBrowser::m_VisibleListDirty;

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
    QStringList GetNames() const
    {
        QStringList names;
        for (Item const& item : m_Items)
            names << GetName(item);
        return names;
    }

    /// Names of the rows after a paint.
    QStringList GetRows()
    {
        Paint();
        QStringList names;
        for (unsigned long position : m_VisibleItems)
            names << GetName(m_Items.at(position));
        return names;
    }

    /// The item of that name; throws when there is none.
    Item& GetItem(QString const& name)
    {
        return m_Items.at(static_cast<std::size_t>(GetNames().indexOf(name)));
    }

    /// A point in the middle of a row.
    QPoint GetRowCenter(int row) const
    {
        return QPoint(width() / 2, m_HeaderHeight - m_ScrollOffset + row * 24 + 12);
    }
};

#endif
