// The kind constants. Kinds are compared by address, so a program may define them only once.

#include <datamodel.h>

namespace tarno {
namespace datamodel {

namespace TarnoType {
char const* const gSolver = "solver";
char const* const gPolymorphicSolver = "polymorphicSolver";
char const* const gCompound = "compound";
char const* const gGlobalConstant = "constant";
} // namespace TarnoType

namespace LibType {
char const* const gType = "type";
}

} // namespace datamodel
} // namespace tarno
