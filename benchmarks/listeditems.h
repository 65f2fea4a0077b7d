#ifndef BENCHMARKS_LISTEDITEMS_H
#define BENCHMARKS_LISTEDITEMS_H

#include "hostapi/datamodel.h"

#include <string>
#include <vector>

/// What the panel shows of an item, as data for its peer.
struct ListedItem
{
    tarno::datamodel::ItemID id;
    std::string name;
    std::string tags;
    /// The resource.
    char const* icon;
};

/// Every item of the library.
std::vector<ListedItem> ReadListedItems(tarno::datamodel::ItemLibraryAccessor const& library);

#endif
