#ifndef NODEBROWSER_ITEMKINDS_H
#define NODEBROWSER_ITEMKINDS_H

#include "hostapi/datamodel.h"

/// The tag that every item of the kind carries: "node", "constant" or "type"; empty for other
/// kinds and for null.
char const* GetKindTag(char const* type);

/// Icon resource of the kind, null for a kind that has none. A signature is a compound that is
/// an abstract function.
char const* GetKindIcon(char const* type, bool isSignature);

/// The kind filters that let the item pass: bit n stands for the filter eConfigType(n).
unsigned char GetKindFilters(tarno::datamodel::ItemAccessor& item);
/// Whether the filter is among them; false for a filter that does not exist.
bool PassesKindFilter(unsigned char kindFilters, int filter);

#endif
