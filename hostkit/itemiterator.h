#ifndef HOSTKIT_ITEMITERATOR_H
#define HOSTKIT_ITEMITERATOR_H

/// @file
/// Iterators over lists of items.

#include <nodebrowser/hostapi/datamodel.h>

#include <vector>

namespace hostkit {

/// For tarno::datamodel::ItemTOCAccessor::GetItems: an iterator over the items with these handles,
/// in this order, whether they still exist or not. Each is bound to the owner's context, of which
/// the iterator takes a share, when the iterator comes to it. Copies advance independently.
tarno::datamodel::Iterator<tarno::datamodel::ItemAccessor>
MakeItemIterator(tarno::datamodel::UnspecifiedAccessor const& owner,
                 std::vector<tarno::datamodel::ItemHandle> handles);

} // namespace hostkit

#endif
