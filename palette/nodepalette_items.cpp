// Finding the items behind the rows, and the rows of items.

#include "nodepalette_p.h"

#include "itemfacts.h"
#include "palettetext.h"

#include <algorithm>

using namespace nodepalette;
using namespace tarno::datamodel;

namespace {

/// The order of the item list: byte by byte, ignoring ASCII case.
bool IsNameBefore(std::string const& left, std::string const& right)
{
    auto const isBefore = [](char leftByte, char rightByte) {
        return static_cast<unsigned char>(ToLowerAscii(leftByte))
               < static_cast<unsigned char>(ToLowerAscii(rightByte));
    };
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        isBefore);
}

} // namespace

CNodePalette::ItemSource::ItemSource(CNodePalette const& palette)
    : m_Palette(palette)
{}

std::size_t CNodePalette::ItemSource::GetCount() const
{
    return m_Palette.m_Items.size();
}

std::string CNodePalette::ItemSource::GetName(std::size_t item) const
{
    return m_Palette.NameOfItem(item);
}

std::string CNodePalette::ItemSource::GetTags(std::size_t item) const
{
    ItemID const id = m_Palette.IdOfItem(item);
    std::string const tags = m_Palette.m_ItemLibrary.GetItemTags(id, kAppTagsCategory);
    return tags + ';' + KindTag(id);
}

std::string CNodePalette::ItemSource::GetUid(std::size_t item) const
{
    char const* const uid = ItemIDUnlock::GetItemIDUID(m_Palette.IdOfItem(item));
    return uid ? uid : "";
}

/// Null for a row that does not exist, or whose item is gone since a rebuild broke off.
CNodeBrowser::Item const* CNodePalette::ItemAt(unsigned long row) const
{
    if (row >= m_VisibleItems.size() || m_VisibleItems[row] >= m_Items.size())
        return nullptr;
    return &m_Items[m_VisibleItems[row]];
}

/// A copy, which outlives the list; invalid for a row without an item.
ItemAccessor CNodePalette::AccessorAt(int row)
{
    EnsureRows();
    Item const* const item = ItemAt(static_cast<unsigned long>(row));
    return item ? item->m_Accessor : ItemAccessor();
}

/// By position in the item list; a copy, because a host may replace the library, and with it the
/// list, whenever it is asked something. Invalid for an item that is gone.
ItemAccessor CNodePalette::AccessorOfItem(unsigned long item) const
{
    return item < m_Items.size() ? m_Items[item].m_Accessor : ItemAccessor();
}

ItemID CNodePalette::IdOfItem(unsigned long item) const
{
    return item < m_Items.size() ? m_Items[item].GetItemID() : ItemID();
}

std::string CNodePalette::NameOfItem(unsigned long item) const
{
    return m_ItemLibrary.GetItemName(IdOfItem(item), true, nullptr);
}

CNodePalette::SPlace CNodePalette::PlaceOfRow(unsigned long row) const
{
    Item const* const item = ItemAt(row);
    return item ? SPlace{item->GetItemID(), m_VisibleItems[row]} : SPlace();
}

/// Where the item stands in the item list now; kNoRow when it is not there. The list is sorted by
/// name, so that few items are looked at.
unsigned long CNodePalette::FindItem(SPlace const& place) const
{
    if (place.id.IsNull())
        return kNoRow;
    if (IdOfItem(place.item) == place.id)
        return place.item;
    std::string const name = m_ItemLibrary.GetItemName(place.id, true, nullptr);
    // Positions instead of iterators: the host is asked for each name.
    unsigned long first = 0;
    for (unsigned long end = m_Items.size(); first < end;) {
        unsigned long const middle = first + (end - first) / 2;
        if (IsNameBefore(NameOfItem(middle), name))
            first = middle + 1;
        else
            end = middle;
    }
    for (; first < m_Items.size() && !IsNameBefore(name, NameOfItem(first)); ++first) {
        if (IdOfItem(first) == place.id)
            return first;
    }
    return kNoRow;
}

/// The row that shows the item; kNoRow for none.
unsigned long CNodePalette::FindRow(SPlace const& place) const
{
    unsigned long const item = FindItem(place);
    if (item == kNoRow)
        return kNoRow;
    auto const row = std::find(m_VisibleItems.begin(), m_VisibleItems.end(), item);
    return row != m_VisibleItems.end() ? static_cast<unsigned long>(row - m_VisibleItems.begin())
                                       : kNoRow;
}

int CNodePalette::GetRowCount()
{
    EnsureRows();
    return static_cast<int>(m_VisibleItems.size());
}

ItemID CNodePalette::GetItemAt(int row)
{
    ItemAccessor const item = AccessorAt(row);
    return item.IsValid() && item.Revalidate() ? item.GetItemID() : ItemID();
}

int CNodePalette::FindRowOf(ItemID const& id)
{
    EnsureRows();
    unsigned long const row = FindRow(SPlace{id, kNoRow});
    return row < m_VisibleItems.size() ? static_cast<int>(row) : -1;
}
