#include "itempositions.h"

#include <algorithm>
#include <limits>

using tarno::datamodel::ItemID;

void ItemPositions::Clear()
{
    m_Entries.clear();
}

std::size_t ItemPositions::GetCount() const
{
    return m_Entries.size();
}

void ItemPositions::Assign(std::vector<ItemID> const& ids)
{
    m_Entries.clear();
    m_Entries.reserve(ids.size());
    for (ItemID const& id : ids)
        m_Entries.push_back(Entry(id, m_Entries.size()));
    std::sort(m_Entries.begin(), m_Entries.end());
}

std::pair<ItemPositions::Iterator, ItemPositions::Iterator>
ItemPositions::Find(ItemID const& id) const
{
    Entry const first(id, 0);
    Entry const last(id, std::numeric_limits<std::size_t>::max());
    return std::make_pair(std::lower_bound(m_Entries.begin(), m_Entries.end(), first),
                          std::upper_bound(m_Entries.begin(), m_Entries.end(), last));
}
