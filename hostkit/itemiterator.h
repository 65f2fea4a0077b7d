#ifndef HOSTKIT_ITEMITERATOR_H
#define HOSTKIT_ITEMITERATOR_H

#include <nodebrowser/hostapi/datamodel.h>

#include <vector>

namespace hostkit {

/// For ItemTOCAccessor::GetItems: an iterator over the items with these handles, in this order.
/// Each is bound to the owner's context when the iterator comes to it. Copies advance
/// independently.
tarno::datamodel::Iterator<tarno::datamodel::ItemAccessor>
MakeItemIterator(tarno::datamodel::UnspecifiedAccessor const& owner,
                 std::vector<tarno::datamodel::ItemHandle> handles);

} // namespace hostkit

#endif
