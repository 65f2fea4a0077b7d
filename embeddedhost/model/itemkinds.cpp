#include "model/itemkinds.h"

#include <datamodel.h>

#include <algorithm>

namespace embeddedhost {

using namespace tarno::datamodel;

std::array<char const*, kKindCount> const& GetItemKinds()
{
    static std::array<char const*, kKindCount> const kinds = {
        TarnoType::gSolver, TarnoType::gPolymorphicSolver, TarnoType::gCompound,
        TarnoType::gGlobalConstant, LibType::gType};
    return kinds;
}

KindIndex GetKindIndex(char const* kind)
{
    auto const& kinds = GetItemKinds();
    auto const found = std::find(kinds.begin(), kinds.end(), kind);
    return found == kinds.end() ? kNoKind : KindIndex(found - kinds.begin());
}

char const* FindItemKind(std::string_view text)
{
    for (char const* kind : GetItemKinds()) {
        if (text == kind)
            return kind;
    }
    return nullptr;
}

} // namespace embeddedhost
