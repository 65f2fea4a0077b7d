// The selected row, and the rows in sight.

#include "nodepalette_p.h"

#include "paletteaccessible.h"
#include "palettetext.h"

#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>

using namespace nodepalette;
using namespace tarno::datamodel;

/// As the panel's rows have one for the right mouse button.
bool CNodePalette::HasRowMenus() const
{
    return m_BrowserConfig != eConfigTypes;
}

bool CNodePalette::HasSelection() const
{
    return m_SelectedIndex < m_VisibleItems.size();
}

/// After a new search text the first row is selected, otherwise the item that was selected, if it
/// is listed. If it is not after a change of tabs during a search, the first row is.
void CNodePalette::RestoreSelection(bool isTextNew, bool isFilterNew)
{
    bool const isSearch = HasWords(m_SearchText);
    m_SelectedIndex = isSearch && isTextNew ? kNoRow : FindRow(m_Private->selected);
    bool const isBestMeant = isSearch && (isTextNew || isFilterNew);
    if (isBestMeant && m_SelectedIndex == kNoRow && !m_VisibleItems.empty())
        m_SelectedIndex = 0;
}

void CNodePalette::RestoreScrolling(bool isTextNew, bool isFilterNew)
{
    int offset = m_ScrollOffset;
    if (isTextNew || isFilterNew) {
        offset = 0;
        // An item that was selected under another text or tab is brought into view.
        if (HasSelection())
            offset = static_cast<int>(m_SelectedIndex) * kRowHeight
                     - (RowsInSight() - 1) / 2 * kRowHeight;
        if (m_SelectedIndex < static_cast<unsigned long>(RowsInSight()))
            offset = 0;
    } else {
        unsigned long const row = FindRow(m_Private->firstInSight);
        if (row != kNoRow)
            offset = static_cast<int>(row) * kRowHeight + m_Private->firstInset;
    }
    // The bar of a list that fits is hidden, and keeps its range.
    if (m_ContentHeight <= height() - m_HeaderHeight)
        offset = 0;
    QSignalBlocker const blocker(m_ScrollBar);
    m_ScrollBar->setValue(offset);
    m_ScrollOffset = m_ScrollBar->value();
}

void CNodePalette::RememberRows()
{
    m_Private->selected = PlaceOfRow(m_SelectedIndex);
    m_Private->firstInSight = PlaceOfRow(static_cast<unsigned long>(m_ScrollOffset / kRowHeight));
    m_Private->firstInset = m_ScrollOffset % kRowHeight;
}

int CNodePalette::RowsInSight() const
{
    return std::max(1, (height() - m_HeaderHeight) / kRowHeight);
}

void CNodePalette::ScrollTo(int offset)
{
    if (m_ContentHeight > height() - m_HeaderHeight)
        m_ScrollBar->setValue(offset);
}

void CNodePalette::ShowRow(unsigned long row)
{
    int const top = static_cast<int>(row) * kRowHeight;
    int const rowArea = height() - m_HeaderHeight;
    if (top < m_ScrollOffset || rowArea < kRowHeight)
        ScrollTo(top);
    else if (top + kRowHeight > m_ScrollOffset + rowArea)
        ScrollTo(top + kRowHeight - rowArea);
}

/// Selects the row for the user or a screen reader, and announces it.
void CNodePalette::ChangeSelection(unsigned long row)
{
    if (row >= m_VisibleItems.size())
        return;
    m_SelectedIndex = row;
    ShowRow(row);
    update();
    QPointer<CNodePalette> const self(this);
    TellSelection();
    if (self)
        AnnounceFocusedRow(*this);
}

/// Notifies listeners of the selected item unless they have been notified of it already.
void CNodePalette::TellSelection()
{
    if (PlaceOfRow(m_SelectedIndex).id == m_Private->toldSelection)
        return;
    QPointer<CNodePalette> const self(this);
    Q_EMIT SelectionChanged();
    if (self)
        AnnounceSelection(*this);
}

int CNodePalette::GetSelectedRow()
{
    EnsureRows();
    return HasSelection() ? static_cast<int>(m_SelectedIndex) : -1;
}

void CNodePalette::SelectRow(int row)
{
    EnsureRows();
    ChangeSelection(static_cast<unsigned long>(row));
}

void CNodePalette::ActivateRow(int row)
{
    EnsureRows();
    if (static_cast<unsigned long>(row) >= m_VisibleItems.size())
        return;
    m_SelectedIndex = static_cast<unsigned long>(row);
    ConfirmRow();
}

void CNodePalette::ShowRowMenu(int row)
{
    EnsureRows();
    QPointer<CNodePalette> const self(this);
    ChangeSelection(static_cast<unsigned long>(row));
    if (!self || !HasRowMenus() || static_cast<unsigned long>(row) >= m_VisibleItems.size())
        return;
    PopContexMenu(mapToGlobal(GetRowRect(row).center()), static_cast<unsigned long>(row));
    if (self)
        update();
}

/// As the panel's Enter key, and then the item is activated.
void CNodePalette::ConfirmRow()
{
    EnsureRows();
    if (!HasSelection())
        m_SelectedIndex = 0;
    // Read before EnterPressed, whose listeners may start another search.
    ItemID const id = PlaceOfRow(m_SelectedIndex).id;
    ShowRow(m_SelectedIndex);
    QPointer<CNodePalette> const self(this);
    EnterPressed();
    if (self && !id.IsNull())
        Q_EMIT ItemActivated(id, eByKey);
}
