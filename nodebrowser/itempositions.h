#ifndef NODEBROWSER_ITEMPOSITIONS_H
#define NODEBROWSER_ITEMPOSITIONS_H

#include "hostapi/datamodel.h"

#include <cstddef>
#include <utility>
#include <vector>

/// Where the items of a list stand, by identifier. One identifier may stand several times.
class ItemPositions
{
public:
    /// Identifier and position in the list; sorted by both.
    typedef std::pair<tarno::datamodel::ItemID, std::size_t> Entry;
    typedef std::vector<Entry>::const_iterator Iterator;

    void Clear();
    std::size_t GetCount() const;
    /// Takes the identifiers of the whole list, in its order.
    void Assign(std::vector<tarno::datamodel::ItemID> const& ids);

    /// The entries of one identifier, first position first.
    std::pair<Iterator, Iterator> Find(tarno::datamodel::ItemID const& id) const;

private:
    std::vector<Entry> m_Entries;
};

#endif
