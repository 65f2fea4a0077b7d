#include <datamodel.h>

#include <algorithm>
#include <iterator>

namespace tarno {
namespace datamodel {

bool ItemID::IsValid() const
{
    char const* const kinds[] = {TarnoType::gSolver, TarnoType::gPolymorphicSolver,
                                 TarnoType::gCompound, TarnoType::gGlobalConstant, LibType::gType};
    return std::find(std::begin(kinds), std::end(kinds), GetType()) != std::end(kinds);
}

} // namespace datamodel
} // namespace tarno
