#include "kindtable.h"

#include <datamodel.h>

namespace tarno {
namespace datamodel {

bool ItemID::IsValid() const
{
    return hostkit::FindKind(GetType()) != nullptr;
}

} // namespace datamodel
} // namespace tarno
