#include "kindtable.h"

#include <datamodel.h>

#include <algorithm>

namespace hostkit {

using namespace tarno::datamodel;

std::array<Kind, kKindCount> const& GetKinds()
{
    // Made at the first call: the constants may be initialised after this file's statics.
    static std::array<Kind, kKindCount> const kinds = {{
        {TarnoType::gSolver, false, true, false},
        {TarnoType::gPolymorphicSolver, false, true, false},
        {TarnoType::gCompound, true, true, false},
        {TarnoType::gGlobalConstant, false, false, false},
        {LibType::gType, false, false, true},
    }};
    return kinds;
}

Kind const* FindKind(char const* constant)
{
    auto const& kinds = GetKinds();
    auto const found = std::find_if(kinds.begin(), kinds.end(), [constant](Kind const& kind) {
        return kind.constant == constant;
    });
    return found == kinds.end() ? nullptr : &*found;
}

} // namespace hostkit
