#include "parts.h"

using namespace tarno::datamodel;

namespace {

std::function<void(Part const&)> compoundOpener;

} // namespace

std::vector<Part> const& GetParts()
{
    static std::vector<Part> const parts = {
        {TarnoType::gSolver, "add", "Add", "maths"},
        {TarnoType::gSolver, "multiply", "Multiply", "maths;scale"},
        {TarnoType::gSolver, "blur", "Blur", "image;soft"},
        {TarnoType::gPolymorphicSolver, "choose", "Choose", "logic"},
        {TarnoType::gCompound, "soft-light", "Soft Light", "image;light"},
        {TarnoType::gCompound, "wave", "Wave", "motion"},
        // Texts are Latin-1.
        {TarnoType::gCompound, "moire", "Moir\xE9", "image;pattern"},
        {TarnoType::gGlobalConstant, "pi", "Pi", "maths"},
        {LibType::gType, "number", "Number", ""},
        {LibType::gType, "image", "Image", ""},
    };
    return parts;
}

ItemLibraryAccessor GetPartsLibrary()
{
    // The accessor keeps the context.
    static ItemLibraryAccessor const library(new AccessorContext, kLibraryHandle);
    return library;
}

Part const* PartOf(UnspecifiedAccessor const& accessor)
{
    if (!accessor.IsValid() || accessor.GetHandle() < kFirstPartHandle)
        return nullptr;
    return &GetParts().at(accessor.GetHandle() - kFirstPartHandle);
}

void SetCompoundOpener(std::function<void(Part const&)> const& opener)
{
    compoundOpener = opener;
}

void Helpers::SetGlobalTarnoCompoundTarget(CompoundAccessor compound, CompoundAccessor /*context*/)
{
    if (Part const* const part = PartOf(compound))
        if (compoundOpener)
            compoundOpener(*part);
}
